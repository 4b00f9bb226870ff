// SPDX-License-Identifier: GPL-3.0-or-later
// `decode`: patterns from the command line, from a file or from the device, through every
// decoder family.
#include "src/cmds/decode.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string_view>

#include "lib/csv.h"
#include "lib/ir/decode_families.h"
#include "lib/libcmds/cmds.h"
#include "lib/libfile/getline.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"
#include "src/cmds/decode_listen.h"
#include "src/common.h"

namespace {

constexpr size_t kMostEntries = 100;
constexpr size_t kLineBufferBytes = 1024;
constexpr char kComment = '#';

/// The durations of a typed pattern; what does not fit is counted but not kept.
class EntryList {
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

struct file_closer {
  void operator()(FILE* file) const { std::fclose(file); }
};

int decode_file(const char* path) {
  const std::unique_ptr<FILE, file_closer> file(std::fopen(path, "r"));
  if (file == nullptr) {
    std::perror("could not open script file");
    return 0;
  }
  const std::unique_ptr<char[]> line(new (std::nothrow) char[kLineBufferBytes]);
  if (line == nullptr) {
    std::perror("could not allocate line buffer");
    return 0;
  }
  while (output::error() == 0 && fgetline(file.get(), line.get(), kLineBufferBytes) >= 0) {
    if (line[0] != '\0' && line[0] != kComment) decode_line(line.get());
  }
  return 0;
}

int decode_raw(const char* text) {
  EntryList list;
  // Each step goes over the sign of a number, or the separator before it and its sign.
  const char* const end = text + std::strlen(text);
  for (const char* at = text + 1; at < end;) {
    char* stop = nullptr;
    list.add(static_cast<uint16_t>(std::strtol(at, &stop, 10)));
    const char* separator = stop + std::strcspn(stop, " ,");
    at = end - separator > 2 ? separator + 2 : end;
  }
  if (list.overflowed()) {
    _log(2, "[W] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__,
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

/// A Pronto text: four header words, then the durations of both sequences as words.
struct pronto_pattern {
  std::array<uint16_t, 4> header = {};
  size_t header_words = 0;
  EntryList bursts;
};

pronto_pattern read_pronto(const char* text) {
  constexpr const char* kSeparators = ", ";
  pronto_pattern pattern;
  for (const char* at = text + std::strspn(text, kSeparators); *at != '\0';
       at += std::strspn(at, kSeparators)) {
    const auto word = static_cast<uint16_t>(std::strtol(at, nullptr, 16));
    at += std::strcspn(at, kSeparators);
    if (pattern.header_words < pattern.header.size()) {
      pattern.header[pattern.header_words++] = word;
    } else {
      pattern.bursts.add(word);
    }
  }
  return pattern;
}

// The carrier period in µs: the frequency word counts units of 1 / 4.145146 µs.
uint32_t carrier_period_us(uint16_t frequency_word) {
  constexpr uint64_t kWordScale = 1000000;
  constexpr uint64_t kWordsPerSecond = 4145146;
  return static_cast<uint32_t>((frequency_word * kWordScale + kWordsPerSecond / 2) /
                               kWordsPerSecond);
}

}  // namespace

void decodeit(ir_packet* p) {
  if (!is_valid_packet(*p)) {
    std::puts("error: invalid packet");
    return;
  }
  decode_families(p);
  output::flush();
  std::puts("++++\n");
}

void decode_line(const char* line) {
  std::array<uint16_t, kMostEntries> list = {};
  const ssize_t count = csv_to_buf(line, list.data(), sizeof list);
  if (count > 0) print_and_decode({list.data(), static_cast<size_t>(count)});
}

int pronto_buf_to_raw(const char* text) {
  constexpr uint16_t kLearned = 0x0000;
  constexpr uint16_t kUnmodulated = 0x0100;
  constexpr uint16_t kGapScale = 1000;

  pronto_pattern pattern = read_pronto(text);
  const auto [format, frequency, once_pairs, repeat_pairs] = pattern.header;
  if (format != kLearned && format != kUnmodulated) return 0;
  const size_t once = size_t{2} * once_pairs;
  const size_t total = once + size_t{2} * repeat_pairs;
  if (pattern.header_words < pattern.header.size() || pattern.bursts.count() != total) {
    _log(1, "[E] %s(%d): Pronto Hex is invalid, invalid size\n", __func__, __LINE__);
    return 0;
  }
  if (pattern.bursts.overflowed()) {
    _log(2, "[W] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__,
         kMostEntries);
  }

  const uint32_t period_us = carrier_period_us(frequency);
  const std::span<uint16_t> list = pattern.bursts.kept();
  for (size_t i = 0; i < list.size(); ++i) {
    uint32_t duration = list[i] * period_us;
    if (i + 1 == once || i + 1 == total) duration /= kGapScale;  // the final gaps, in ms
    list[i] = static_cast<uint16_t>(duration);
  }
  // Without its final gap, and as far as the list holds it.
  const auto sequence = [list](size_t from, size_t to) {
    const size_t first = std::min(from, list.size());
    return list.subspan(first, std::min(to > from ? to - 1 : from, list.size()) - first);
  };
  if (once > 0 || total == 0) print_and_decode(sequence(0, once));
  if (total == 0) return 0;
  print_and_decode(repeat_pairs > 0 ? sequence(once, total) : sequence(0, once));
  return 0;
}
