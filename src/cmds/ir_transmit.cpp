// SPDX-License-Identifier: GPL-3.0-or-later
// The sendir command: transmits a pattern given as Pronto hex, as a signed list or as a comma
// list, and stops a transmission.
//
// A pattern is read whole, and refused whole, before anything of it is printed or sent.
#include "src/cmds/ir_transmit.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/interrupt.h"
#include "lib/libutil/number.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"
#include "lib/pronto/pronto.h"
#include "src/common.h"

namespace {

constexpr uint16_t kRequiredMajor = 4;
constexpr uint16_t kRequiredMinor = 7;
constexpr uint16_t kKillRequiredMinor = 8;

constexpr int64_t kDefaultIk = 50;
constexpr int64_t kDefaultRepeat = 1;
constexpr int64_t kMostRepeats = 10;

// Inter-key delays up to the first limit are ms, above it µs.
constexpr int64_t kLeastIkMs = 10;
constexpr int64_t kMostIkMs = 1000;
constexpr int64_t kLeastIkUs = 15000;
constexpr int64_t kMostIkUs = 65000;

constexpr int64_t kLongestDuration = std::numeric_limits<uint16_t>::max();
constexpr int64_t kLargestWord = std::numeric_limits<uint16_t>::max();  // of Pronto hex
constexpr size_t kMostEntries = std::numeric_limits<int16_t>::max();    // as the device counts them
constexpr size_t kLeadingEntries = 1;                                   // the 0 that sendRaw adds

constexpr std::string_view kSeparators = " ,";

using durations = std::vector<uint16_t>;

transport::dev_t* ldev = nullptr;  // the device of the current invocation

/// The numbers of a text between blanks and commas, or the first piece that is none.
struct number_list {
  std::vector<int64_t> numbers;
  std::optional<std::string_view> refused;
};

number_list parse_numbers(const char* text) {
  number_list list;
  for (const std::string_view piece : number::split(text, kSeparators)) {
    const std::optional<int64_t> value = number::whole(piece);
    if (!value) return {{}, piece};
    list.numbers.push_back(*value);
  }
  return list;
}

bool is_within(int64_t value, int64_t least, int64_t most) {
  return value >= least && value <= most;
}

/// For "%.*s".
int length_of(std::string_view text) {
  return static_cast<int>(text.size());
}

bool is_too_long(size_t entries) {
  if (entries <= kMostEntries) return false;
  _log(1, "[E] %s(%d): Error: pattern too long, %zu entries of at most %zu\n", __func__, __LINE__,
       entries, kMostEntries);
  return true;
}

/// `numbers` as durations; nothing, with the message, when one does not fit.
std::optional<durations> to_durations(std::span<const int64_t> numbers) {
  durations list;
  list.reserve(numbers.size());
  for (const int64_t value : numbers) {
    if (value < 0 || value > kLongestDuration) {
      _log(1, "[E] %s(%d): Error: duration out of range: %" PRId64 "\n", __func__, __LINE__, value);
      return std::nullopt;
    }
    list.push_back(static_cast<uint16_t>(value));
  }
  return list;
}

void announce() {
  std::printf("Transmitting IR Pattern...\n");
  output::flush();
}

int done() {
  std::printf("Done!\n");
  return 0;
}

/// Echoes and transmits `data` behind a leading 0 entry.
int sendRaw(std::span<const uint16_t> data, uint16_t ik, uint8_t repeats) {
  durations list(kLeadingEntries);
  list.insert(list.end(), data.begin(), data.end());
  for (size_t i = kLeadingEntries; i < list.size(); i++) {
    std::printf("%c%i ", i % 2 == 1 ? '+' : '-', list[i]);
  }
  std::printf("\n-%d\n", ik);
  const int result =
      zv_transmit_raw(ldev, list.data(), static_cast<uint16_t>(list.size()), ik, repeats);
  if (result < 0) return result;
  dev_flush(ldev);
  interrupt::checkpoint();
  return 0;
}

/// A signed list; a number's sign only tells a reader mark from space. Nothing, with the message,
/// for a text that is none.
std::optional<durations> decode_raw(const char* text) {
  auto [numbers, refused] = parse_numbers(text);
  if (refused) {
    _log(1, "[E] %s(%d): Error: not a number: %.*s\n", __func__, __LINE__, length_of(*refused),
         refused->data());
    return std::nullopt;
  }
  if (is_too_long(numbers.size() + kLeadingEntries)) return std::nullopt;
  for (int64_t& value : numbers) {
    constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
    if (value < 0) value = value == kLowest ? kLongestDuration + 1 : -value;
  }
  std::optional<durations> list = to_durations(numbers);
  if (!list) return std::nullopt;
  announce();
  if (list->empty()) {
    _log(1, "[E] %s(%d): invalid line buffer, len = %d\n", __func__, __LINE__, length_of(text));
    return std::nullopt;
  }
  return list;
}

/// A sequence of a Pronto text as it is sent.
struct frame {
  durations sent;
  uint64_t gap_us = 0;
};

std::optional<frame> to_frame(const pronto::sequence& sequence, uint32_t period_us) {
  constexpr uint64_t kUsPerMs = 1000;
  std::vector<int64_t> lengths;
  for (const uint16_t word : sequence.frame) lengths.push_back(int64_t{word} * period_us);
  std::optional<durations> sent = to_durations(lengths);
  if (!sent) return std::nullopt;
  return frame{std::move(*sent), sequence.gap_ms(period_us) * kUsPerMs};
}

/// Sends a frame and waits until its gap is over. A frame that does not get through has been
/// reported by the transport and does not keep the next ones from being tried.
void send_frame(const frame& one) {
  constexpr uint64_t kLongestIk = std::numeric_limits<uint16_t>::max();
  const auto ik = static_cast<uint16_t>(std::min(one.gap_us, kLongestIk));
  sendRaw(one.sent, ik, 1);
  output::flush();
  pause_us(one.gap_us);
}

/// Sends the once sequence, then the repeat sequence (or the once sequence again) `repeats` times.
/// A code without durations, or of the wrong size, is none to send, which is no failure.
int zarvo_send_pronto(std::span<const uint16_t> words, uint8_t repeats) {
  pronto::code code;
  const pronto::result result = pronto::parse_code(words, &code);
  std::optional<frame> once{std::in_place};
  std::optional<frame> repeat{std::in_place};
  if (result == pronto::result::kGood) {
    if (is_too_long(std::max(code.once.size(), code.repeat.size()))) return -1;
    const uint32_t period_us = pronto::period_us(code.frequency);
    if (period_us == 0) {
      _log(1, "[E] %s(%d): Error: Pronto Hex is invalid, carrier period is 0: %04X\n", __func__,
           __LINE__, code.frequency);
      return -1;
    }
    once = to_frame(code.once, period_us);
    if (!once) return -1;
    repeat = to_frame(code.repeat, period_us);
    if (!repeat) return -1;
  }
  announce();
  if (result == pronto::result::kWrongSize) {
    _log(1, "[E] %s(%d): Pronto Hex is invalid, invalid size\n", __func__, __LINE__);
  }
  if (!once->sent.empty()) send_frame(*once);
  const frame& again = repeat->sent.empty() ? *once : *repeat;
  for (int i = 0; i < repeats && !again.sent.empty(); i++) send_frame(again);
  return done();
}

int decode_pronto(const char* text, uint8_t repeats) {
  std::vector<uint16_t> words;
  bool fits = true;
  for (const std::string_view piece : number::split(text, pronto::kSeparators)) {
    const std::optional<int64_t> word = number::whole(piece, pronto::kBase);
    if (!word) {
      _log(1, "[E] %s(%d): Error: not a number: %.*s\n", __func__, __LINE__, length_of(piece),
           piece.data());
      return -1;
    }
    fits = fits && is_within(*word, 0, kLargestWord);
    words.push_back(
        static_cast<uint16_t>(is_within(*word, 0, kLargestWord) ? *word : kLargestWord));
  }
  if (!fits && pronto::holds_durations(words.front())) {
    _log(1, "[E] %s(%d): Error: Pronto Hex is invalid, word out of range\n", __func__, __LINE__);
    return -1;
  }
  return zarvo_send_pronto(words, repeats);
}

int kill_transmission() {
  std::printf("Killing IR transmitter....\n");
  if (zv_transmit_kill(ldev) < 0) std::printf("Error\n");
  return done();
}

/// What `--key=value` gave: null when the key is absent, "" when it came without a value.
const char* option(const dictionary* opts, const char* key) {
  if (dict_has_key(opts, key) == 0) return nullptr;
  size_t size = 0;
  const void* value = dict_value_for_key(opts, key, &size);
  return size == 0 ? "" : static_cast<const char*>(value);
}

/// The number at the start of an option's text, 0 for none; `preset` when the option is absent.
int64_t number_or(const char* text, int64_t preset) {
  if (text == nullptr) return preset;
  std::string_view rest = text;
  return number::take(rest);
}

/// How often, and how far apart, a pattern goes out.
struct repetition {
  uint16_t ik;
  uint8_t count;
};

// The overloads below are one command: its messages carry the command's name.
struct raw_text {
  const char* text;
};
struct csv_text {
  const char* text;
};

int sendir(raw_text pattern, repetition times) {
  const std::optional<durations> list = decode_raw(pattern.text);
  if (!list) return -1;
  if (sendRaw(*list, times.ik, times.count) < 0) {
    _log(1, "[E] %s(%d): Error sending pattern\n", __func__, __LINE__);
  }
  return done();
}

int sendir(csv_text pattern, repetition times) {
  constexpr size_t kFewestEntries = 3;
  const auto [numbers, refused] = parse_numbers(pattern.text);
  if (refused) {
    _log(1, "[E] %s(%d): Error: not a number: %.*s\n", __func__, __LINE__, length_of(*refused),
         refused->data());
    return -1;
  }
  const bool has_leading_zero = numbers.empty() || numbers.front() == 0;
  const bool is_even = numbers.size() % 2 == 0;
  if (has_leading_zero != is_even) {
    _log(1, "[E] %s(%d): Error: invalid length, must be %s\n", __func__, __LINE__,
         has_leading_zero ? "even" : "odd");
    return -1;
  }
  if (numbers.size() < kFewestEntries) {
    _log(1, "[E] %s(%d): Error: buffer can't be less than 4\n", __func__, __LINE__);
    return -1;
  }
  if (is_too_long(numbers.size())) return -1;
  const std::optional<durations> list = to_durations(numbers);
  if (!list) return -1;
  announce();
  // As typed: only sendRaw puts a leading 0 in front.
  if (zv_transmit_raw(ldev, list->data(), static_cast<uint16_t>(list->size()), times.ik,
                      times.count) < 0) {
    _log(1, "[E] %s(%d): Error: could not transmit data\n", __func__, __LINE__);
  }
  return done();
}

/// The options that say how to send; nothing, with the message, when they are out of range.
std::optional<repetition> sendir(const dictionary* opts) {
  const char* const ik_text = option(opts, "ik");
  const int64_t ik = number_or(ik_text, kDefaultIk);
  if (!is_within(ik, kLeastIkMs, kMostIkMs) && !is_within(ik, kLeastIkUs, kMostIkUs)) {
    // Other limits than the ones applied: the text is the one that users know.
    _log(1, "[E] %s(%d): interkey delay must be: 15 - 1000 (ms) or 150000 - 65000 (us)\n", __func__,
         __LINE__);
    return std::nullopt;
  }
  const char* const repeat_text = option(opts, "repeat");
  if (repeat_text != nullptr && *repeat_text == '\0') {
    _log(1, "[E] %s(%d): must specify a repeat count\n", __func__, __LINE__);
    return std::nullopt;
  }
  const int64_t count = number_or(repeat_text, kDefaultRepeat);
  if (!is_within(count, 0, kMostRepeats)) {
    _log(1, "[E] %s(%d): must specify a repeat <= 10\n", __func__, __LINE__);
    return std::nullopt;
  }
  return repetition{static_cast<uint16_t>(ik), static_cast<uint8_t>(count)};
}

int sendir(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
           dictionary* opts) {
  ldev = static_cast<appdata_priv*>(appdata)->dev;
  if (zv_version_compare(ldev, kRequiredMajor, kRequiredMinor) < 0) {
    _log(1, "[E] %s(%d): Error: version >= 4.7.x required\n", __func__, __LINE__);
    return -1;
  }
  const std::optional<repetition> times = sendir(opts);
  if (!times) return -1;

  struct source {
    const char* key;
    int (*send)(const char* text, repetition times);
  };
  constexpr source kSources[] = {
      {"raw", [](const char* text, repetition r) { return sendir(raw_text{text}, r); }},
      {"csv", [](const char* text, repetition r) { return sendir(csv_text{text}, r); }},
      {"pronto", [](const char* text, repetition r) { return decode_pronto(text, r.count); }},
  };
  const auto* chosen =
      std::find_if(std::begin(kSources), std::end(kSources),
                   [opts](const source& s) { return dict_has_key(opts, s.key) != 0; });
  const bool kill = dict_has_key(opts, "kill") != 0;

  if (chosen == std::end(kSources)) {
    if (!kill) {
      std::printf("Error: must specify an option\n");
      return -1;
    }
    if (zv_version_compare(ldev, kRequiredMajor, kKillRequiredMinor) < 0) {
      _log(1, "[E] %s(%d): Error: version >= 4.8.x required\n", __func__, __LINE__);
      return -1;
    }
    return kill_transmission();
  }
  if (kill) kill_transmission();
  const char* text = option(opts, chosen->key);
  if (*text == '\0') {
    _log(1, "[E] %s(%d): must specify a pattern\n", __func__, __LINE__);
    return -1;
  }
  return chosen->send(text, *times);
}

const cmd_opt sendir_opts[] = {
    {"ik", "set the interkey delay between rep. frames", 'i', "ik"},
    {"repeat", "number of times to repeat pattern", 'r', "repeat"},
    {"kill", "kill any currently running transmission", 'k', "kill"},
    {"pronto", "send a pronto pattern", 'p', "pronto"},
    {"raw", "+8248 -1291 +212 ...", 'x', "raw"},
    {"csv", "8248,1291,212,...or 0,8248...or 8248, 1291..", 'c', "csv"},
    {nullptr, nullptr, 0, nullptr},
};

const cmd cmd_entry_sendir = {
    .name = "sendir",
    .handler = sendir,
    .summary = "Send a packet over the IR transmitter",
    .help =
        "usage: sendir <opts>\n"
        "  sendir --pronto=\"0000 006D 0002 0000 0156 00AB 0016 0689\" --repeat=4\n"
        "  sendir --raw=\"+8900 -4450 +560 -560 +560\" --ik=23000 --repeat=10\n"
        "  sendir --csv=\"8900,4450,560,560,560\"\n"
        "  sendir --csv=\"0,8900,4450,560,560,560\"",
    .priv = nullptr,
    .options = sendir_opts,
};

cmd_mgr sendir_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__sendir() {
  sendir_mgr.cmd = &cmd_entry_sendir;
  _register_cmd(&sendir_mgr);
}

}  // namespace

int toFrequencyKHz(int code) {
  constexpr uint32_t kHzPerKHz = 1000;
  if (!is_within(code, 0, kLargestWord)) return 0;
  const uint32_t hz = pronto::frequency_hz(static_cast<uint16_t>(code));
  return static_cast<int>((hz + kHzPerKHz / 2) / kHzPerKHz);
}
