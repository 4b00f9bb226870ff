// SPDX-License-Identifier: GPL-3.0-or-later
// `decode`: patterns from the command line, from a file or from the device, through every
// decoder family.
#include "src/cmds/decode.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "lib/csv.h"
#include "lib/ir/decode_families.h"
#include "lib/libcmds/cmds.h"
#include "lib/libfile/line_reader.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/number.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"
#include "lib/pronto/pronto.h"
#include "src/cmds/decode_listen.h"
#include "src/common.h"

namespace {

constexpr size_t kMostEntries = 100;
constexpr char kComment = '#';

/// The durations of a typed pattern; what does not fit is counted but not kept.
class entry_list {
 public:
  void add(uint16_t entry) {
    if (count_ < entries_.size()) entries_[count_] = entry;
    ++count_;
  }
  [[nodiscard]] bool overflowed() const { return count_ > entries_.size(); }
  [[nodiscard]] size_t count() const { return count_; }
  [[nodiscard]] std::span<uint16_t> kept() {
    return {entries_.data(), std::min(count_, entries_.size())};
  }

 private:
  std::array<uint16_t, kMostEntries> entries_ = {};
  size_t count_ = 0;
};

// A first entry of 0 is no mark: the AnalysIR format begins with one.
ir_packet make_packet(std::span<const uint16_t> entries) {
  if (!entries.empty() && entries.front() == 0) entries = entries.subspan(1);
  ir_packet packet = {};
  std::copy(entries.begin(), entries.end(), packet.buf);
  packet.len = static_cast<uint8_t>(entries.size());
  return packet;
}

void print_and_decode(std::span<const uint16_t> entries) {
  ir_packet packet = make_packet(entries);
  print_raw(&packet);
  print_pronto(&packet);
  decodeit(&packet);
}

int decode_file(const char* path) {
  std::optional<line_reader> file = line_reader::open(path);
  while (file && output::error() == 0 && file->next()) {
    if (file->was_cut()) {
      _log(1, "[E] %s(%d): line #%d is longer than %zu characters, the rest is a new line\n",
           __func__, __LINE__, file->number(), line_reader::kLongestLine);
    }
    if (*file->line() != '\0' && *file->line() != kComment) decode_line(file->line());
  }
  return 0;
}

int decode_raw(const char* text) {
  entry_list list;
  // Each step goes over the sign of a number, or the separator before it and its sign.
  constexpr size_t kSeparatorAndSign = 2;
  for (std::string_view rest = text + 1; !rest.empty();) {
    list.add(static_cast<uint16_t>(number::take(rest)));
    const size_t separator = std::min(rest.find_first_of(" ,"), rest.size());
    rest.remove_prefix(std::min(separator + kSeparatorAndSign, rest.size()));
  }
  if (list.overflowed()) {
    _log(1, "[E] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__,
         kMostEntries);
  }
  print_and_decode(list.kept());
  return 0;
}

int decode_pronto(const char* text) {
  return pronto_buf_to_raw(text);
}

int decode_time(const char* text) {
  decode_line(text);
  return 0;
}

/// Where patterns come from, in the order in which the options are looked at.
struct source {
  const char* option;
  int (*run)(const char* text);
};

constexpr source kSources[] = {
    {"read", decode_file},
    {"raw", decode_raw},
    {"pronto", decode_pronto},
    {"time", decode_time},
};

int decode(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
           dictionary* opts) {
  if (dict_has_key(opts, "elapsed") != 0) set_elapsed_flag(1);
  if (dict_has_key(opts, "listen") != 0) {
    auto* session = static_cast<appdata_priv*>(appdata);
    if (!can_decode_live(*session)) {
      _log(1, "[E] %s(%d): Error: version >= 4.7.x required\n", __func__, __LINE__);
      return -1;
    }
    return decode_listen(*session);
  }
  const auto* found =
      std::find_if(std::begin(kSources), std::end(kSources),
                   [opts](const source& s) { return dict_has_key(opts, s.option) != 0; });
  if (found == std::end(kSources)) {
    std::puts("Error: must specify an option");
    return -1;
  }
  size_t size = 0;  // 0 without "=": there is no byte to look at
  const auto* text = static_cast<const char*>(dict_value_for_key(opts, found->option, &size));
  if (size == 0 || *text == '\0') {
    // Said of every source, whether it is a file or not.
    _log(1, "[E] %s(%d): invalide file path\n", __func__, __LINE__);
    return -1;
  }
  return found->run(text);
}

constexpr cmd_opt decode_opts[] = {
    {"listen", "open the hardware, listen, decode results", 'l', "listen"},
    {"read", "read and decode from a file", 'r', "read"},
    {"time", "comma delimited timing in microseconds", 't', "time"},
    {"raw", "+8248 -1291 +212 ...", 'x', "raw"},
    {"pronto", "pronto comma delimited pattern", 'p', "pronto"},
    {"elapsed", "show elapsed time", 'e', "elapsed"},
    {nullptr, nullptr, 0, nullptr},
};

constexpr cmd cmd_entry_decode = {
    .name = "decode",
    .handler = decode,
    .summary = "Decode IR patterns using built in decoders",
    .help = "usage: decode <opts>\n  decode --pattern=143,2123,13...",  // no such option any more
    .priv = nullptr,
    .options = decode_opts,
};

constinit cmd_mgr manager = {{}, &cmd_entry_decode};

[[gnu::constructor(startup::kCommand)]] void REGFUNC__decode() {
  _register_cmd(&manager);
}

}  // namespace

void decodeit(ir_packet* p) {
  if (!is_valid_packet(*p)) {
    std::puts("error: invalid packet");
    return;
  }
  decode_families(p);
  output::flush();
  output::print("++++\n\n");
}

void decode_line(const char* line) {
  std::array<uint16_t, kMostEntries> list = {};
  const ssize_t count = csv_to_buf(line, list.data(), sizeof list);
  if (count > 0) print_and_decode({list.data(), static_cast<size_t>(count)});
}

int pronto_buf_to_raw(const char* text) {
  const std::vector<uint16_t> words = pronto::words_of(text);
  pronto::code code;
  const pronto::result result = pronto::parse_code(words, &code);
  if (result == pronto::result::kWrongSize) {
    _log(1, "[E] %s(%d): Pronto Hex is invalid, invalid size\n", __func__, __LINE__);
  }
  if (result != pronto::result::kGood) return 0;
  if (code.once.size() + code.repeat.size() > kMostEntries) {
    _log(1, "[E] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__,
         kMostEntries);
  }

  const uint32_t period_us = pronto::period_us(code.frequency);
  std::array<uint16_t, kMostEntries> list;
  // Both sequences share the list, so a long first one leaves no room for the second.
  const auto decode_frame = [&](const pronto::sequence& sequence, size_t used) {
    const size_t room = kMostEntries - std::min(used, kMostEntries);
    const auto words_kept = sequence.frame.first(std::min(sequence.frame.size(), room));
    const auto end = std::transform(
        words_kept.begin(), words_kept.end(), list.begin(),
        [period_us](uint16_t word) { return static_cast<uint16_t>(word * period_us); });
    print_and_decode({list.begin(), end});
  };
  const bool has_repeat = code.repeat.size() > 0;
  if (code.once.size() > 0 || !has_repeat) decode_frame(code.once, 0);
  if (has_repeat) decode_frame(code.repeat, code.once.size());
  if (code.once.size() > 0 && !has_repeat) decode_frame(code.once, 0);
  return 0;
}
