// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as the input of the companion programs: one JSON object a pattern or fault, and a
// picture of every pattern.
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "companions/heard.h"
#include "companions/json_record.h"
#include "companions/plot.h"
#include "fuzz/input.h"
#include "lib/irp/installed.h"
#include "lib/liblog/logging.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const irp::Protocols definitions = irp::installed_protocols();
  static const irp::MessageReader messages(definitions);
  set_loglevel(0);
  std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
  companions::pattern_reader reader(text);
  std::vector<companions::plotted> all;
  companions::histogram lengths;
  while (const auto read = reader.next()) {
    const companions::record record = companions::make_record(
        {.source = "-", .read = *read, .position = reader.position()}, messages);
    require(record.json.find('\n') == std::string::npos);
    require(nlohmann::json::parse(record.json).contains("error") == record.fault);
    const auto* found = std::get_if<companions::pattern>(&read->what);
    if (found == nullptr) continue;
    companions::heard_signal heard = companions::hear(*found);
    all.push_back({.place = "-",
                   .title = analysis_line(heard),
                   .durations = std::move(heard.durations),
                   .form = std::move(heard.form)});
    lengths.add(all.back().durations);
    require(all.back().form.roles.size() == all.back().durations.size());
  }
  std::ostringstream out;
  const companions::screen narrow = {.columns = 20, .colour = size % 2 == 0};
  for (const companions::plotted& signal : all) plot_text(out, signal, narrow);
  plot_svg(out, all);
  histogram_text(out, lengths, narrow);
  histogram_svg(out, lengths);
  bytes_text(out, all, companions::bit_order::kLsbFirst);
  return 0;
}
