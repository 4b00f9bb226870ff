// SPDX-License-Identifier: GPL-3.0-or-later
// The companion programs, run on what vantrel prints. For programs that know VANTREL_PROGRAM and
// FAKE_LIBRARY_DIR.
#pragma once

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/irp.h"
#include "tests/support/process.h"

/// The first frame of a protocol, without the space behind it.
inline std::vector<int> frame(const char* protocol, const irp::Parameters& given) {
  auto durations = irp::protocol(protocol).render(given).parts[0].durations;
  if (durations.size() % 2 == 0) durations.pop_back();
  return durations;
}

/// Runs one of the programs under its own name.
inline process_result run(const char* program, std::vector<std::string> arguments,
                          std::string_view input = {}, std::vector<std::string> env = {}) {
  process_options options{.argv = {program}, .file = program, .env = std::move(env)};
  options.argv[0] = options.argv[0].substr(options.argv[0].rfind('/') + 1);
  options.argv.insert(options.argv.end(), arguments.begin(), arguments.end());
  return run_process(options, input);
}

/// What `vantrel listen` prints in one of its forms of a signal that the device hears.
inline std::string heard(const char* form, const std::vector<int>& durations) {
  std::string script = "device\nat 2000 signal";
  for (const int us : durations) script += ' ' + std::to_string(us);
  script += "\nat 3000 sigint\n";
  const auto result =
      run(VANTREL_PROGRAM, {"listen", form, "--elapsed"}, {},
          {std::string("LD_LIBRARY_PATH=") + FAKE_LIBRARY_DIR, "FAKE_USB=" + script});
  return result.out.substr(0, result.out.find("\nCleaning"));
}

/// The lines that a record's answers would have in vantrel's output.
inline std::string lines_of(const nlohmann::json& record) {
  std::ostringstream lines;
  std::array<char, 200> line;
  const auto number = [](const nlohmann::json& value) {
    return value.is_null() ? -1U : value.get<unsigned>();
  };
  const nlohmann::json& analysis = record.at("analysis").at(0);
  std::snprintf(
      line.data(), line.size(), ":: DECODEIR :: %-13s - scancode: 0x%04X  D:0x%04X  S:0x%04X\n",
      analysis.at("protocol").get<std::string>().c_str(), number(analysis.at("hex").at(0)),
      number(analysis.at("device")), number(analysis.at("subdevice")));
  lines << line.data();
  std::snprintf(line.data(), line.size(), ":: ZARVO    :: %-13s - scancode: 0x%08X\n",
                record.at("program").at("protocol").get<std::string>().c_str(),
                number(record.at("program").at("scancode")));
  lines << line.data();
  std::snprintf(line.data(), line.size(), ":: ARDUINO  :: %-13s - scancode: 0x%08X {%d}\n",
                record.at("arduino").at("type").get<std::string>().c_str(),
                number(record.at("arduino").at("value")),
                record.at("arduino").at("bits").get<int>());
  return lines.str() + line.data();
}

/// The durations of a record as a signed list.
inline std::string raw_of(const nlohmann::json& record) {
  std::string raw;
  for (const nlohmann::json& us : record.at("durations")) {
    const int signed_us = us.get<int>();
    raw += (signed_us < 0 ? "" : "+") + std::to_string(signed_us) + ' ';
  }
  return raw;
}
