// SPDX-License-Identifier: GPL-3.0-or-later
// The sendir command: transmits a pattern given as Pronto hex, as a signed list or as a comma
// list, and stops a transmission.
//
// A pattern is read whole, and refused whole, before anything of it is printed or sent.
#include "src/cmds/ir_transmit.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"
#include "src/session.h"

namespace {

constexpr uint16_t kRequiredMajor = 4;
constexpr uint16_t kRequiredMinor = 7;
constexpr uint16_t kKillRequiredMinor = 8;

constexpr long kDefaultIk = 50;
constexpr long kDefaultRepeat = 1;
constexpr long kMostRepeats = 10;

// Inter-key delays up to the first limit are ms, above it µs.
constexpr long kLeastIkMs = 10;
constexpr long kMostIkMs = 1000;
constexpr long kLeastIkUs = 15000;
constexpr long kMostIkUs = 65000;

constexpr long kLongestDuration = std::numeric_limits<uint16_t>::max();
constexpr size_t kMostEntries = std::numeric_limits<int16_t>::max();  // as the device counts them
constexpr size_t kLeadingEntries = 1;                                 // the 0 that sendRaw adds

constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;

// Pronto hex: a format, a frequency and two counts, then pairs of a mark and a space.
constexpr size_t kProntoHeader = 4;
constexpr long kLearned = 0x0000;
constexpr long kLearnedUnmodulated = 0x0100;
constexpr long kLargestWord = 0xFFFF;
// The frequency word counts periods of this many Hz.
constexpr long kProntoClock = 4'145'146;
constexpr long kUsPerSecond = 1'000'000;
constexpr uint64_t kUsPerMs = 1000;

using durations = std::vector<uint16_t>;

transport::dev_t* ldev = nullptr;  // the device of the current invocation

/// The numbers of a text, separated by spaces and commas.
std::vector<long> parse_numbers(const char* text, int base) {
  constexpr std::string_view kSeparators = " ,";
  std::vector<long> numbers;
  std::string_view rest = text;
  while (true) {
    rest.remove_prefix(std::min(rest.find_first_not_of(kSeparators), rest.size()));
    if (rest.empty()) return numbers;
    numbers.push_back(std::strtol(rest.data(), nullptr, base));
    rest.remove_prefix(std::min(rest.find_first_of(kSeparators), rest.size()));
  }
}

bool is_too_long(size_t entries) {
  if (entries <= kMostEntries) return false;
  _log(1, "[E] %s(%d): Error: pattern too long, %zu entries of at most %zu\n", __func__, __LINE__,
       entries, kMostEntries);
  return true;
}

/// `numbers` as durations; nothing, with the message, when one does not fit.
std::optional<durations> to_durations(std::span<const long> numbers) {
  durations list;
  list.reserve(numbers.size());
  for (const long number : numbers) {
    if (number < 0 || number > kLongestDuration) {
      _log(1, "[E] %s(%d): Error: duration out of range: %ld\n", __func__, __LINE__, number);
      return std::nullopt;
    }
    list.push_back(static_cast<uint16_t>(number));
  }
  return list;
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
  return 0;
}

/// A signed list; a number's sign only tells a reader mark from space.
std::optional<durations> decode_raw(const char* text) {
  std::vector<long> numbers = parse_numbers(text, kDecimal);
  if (is_too_long(numbers.size() + kLeadingEntries)) return std::nullopt;
  for (long& number : numbers) {
    if (number < 0)
      number = number == std::numeric_limits<long>::min() ? kLongestDuration + 1 : -number;
  }
  return to_durations(numbers);
}

/// One of the two sequences of a Pronto text: what is sent of it, and the gap that ends it.
struct sequence {
  durations sent;
  uint64_t gap_us = 0;

  [[nodiscard]] bool empty() const { return sent.empty(); }
};

struct pronto_pattern {
  sequence once;
  sequence repeat;
};

enum class pronto_result { kGood, kForeign, kWrongSize, kUnsendable };

/// `words` end with the gap.
std::optional<sequence> to_sequence(std::span<const long> words, long unit_us) {
  sequence result;
  if (words.empty()) return result;
  std::vector<long> frame(words.begin(), words.end() - 1);
  for (long& word : frame) word *= unit_us;
  std::optional<durations> sent = to_durations(frame);
  if (!sent) return std::nullopt;
  result.sent = std::move(*sent);
  const auto gap_ms = static_cast<uint64_t>(words.back() * unit_us) / kUsPerMs;
  result.gap_us = gap_ms * kUsPerMs;
  return result;
}

pronto_result decode_pronto(const char* text, pronto_pattern* pattern) {
  std::vector<long> words = parse_numbers(text, kHexadecimal);
  const size_t count = words.size();
  words.resize(std::max(count, kProntoHeader));
  if (words[0] != kLearned && words[0] != kLearnedUnmodulated) return pronto_result::kForeign;

  const bool are_words = std::all_of(words.begin(), words.end(),
                                     [](long word) { return word >= 0 && word <= kLargestWord; });
  const size_t once_size = are_words ? 2 * static_cast<size_t>(words[2]) : 0;
  const size_t repeat_size = are_words ? 2 * static_cast<size_t>(words[3]) : 0;
  if (are_words && count != kProntoHeader + once_size + repeat_size) {
    return pronto_result::kWrongSize;
  }
  if (!are_words) {
    _log(1, "[E] %s(%d): Error: Pronto Hex is invalid, word out of range\n", __func__, __LINE__);
    return pronto_result::kUnsendable;
  }
  if (is_too_long(std::max(once_size, repeat_size))) return pronto_result::kUnsendable;

  const long unit_us = (words[1] * kUsPerSecond + kProntoClock / 2) / kProntoClock;
  const std::span<const long> bursts = std::span(words).subspan(kProntoHeader);
  std::optional<sequence> once = to_sequence(bursts.first(once_size), unit_us);
  if (!once) return pronto_result::kUnsendable;
  std::optional<sequence> repeat = to_sequence(bursts.subspan(once_size), unit_us);
  if (!repeat) return pronto_result::kUnsendable;
  *pattern = {std::move(*once), std::move(*repeat)};
  return pronto_result::kGood;
}

/// Sends a sequence and waits until its gap is over. A frame that does not get through has been
/// reported by the transport and does not keep the next ones from being tried.
void send_sequence(const sequence& frame) {
  constexpr uint64_t kLongestIk = std::numeric_limits<uint16_t>::max();
  const auto ik = static_cast<uint16_t>(std::min(frame.gap_us, kLongestIk));
  sendRaw(frame.sent, ik, 1);
  output::flush();
  pause_us(frame.gap_us);
}

/// The once sequence, then the repeat sequence (or the once sequence again) `repeats` times.
void zarvo_send_pronto(const pronto_pattern& pattern, long repeats) {
  if (!pattern.once.empty()) send_sequence(pattern.once);
  const sequence& again = pattern.repeat.empty() ? pattern.once : pattern.repeat;
  if (again.empty()) return;
  for (long i = 0; i < repeats; i++) send_sequence(again);
}

int kill_transmission() {
  std::printf("Killing IR transmitter....\n");
  if (zv_transmit_kill(ldev) < 0) std::printf("Error\n");
  std::printf("Done!\n");
  return 0;
}

void announce() {
  std::printf("Transmitting IR Pattern...\n");
  output::flush();
}

int done() {
  std::printf("Done!\n");
  return 0;
}

/// What `--key=value` gave: null when the key is absent, "" when it came without a value.
const char* option(const dictionary* opts, const char* key) {
  if (dict_has_key(opts, key) == 0) return nullptr;
  size_t size = 0;
  const void* value = dict_value_for_key(opts, key, &size);
  return size == 0 ? "" : static_cast<const char*>(value);
}

bool is_within(long value, long least, long most) {
  return value >= least && value <= most;
}

std::optional<long> parse_ik(const char* text) {
  if (text == nullptr) return kDefaultIk;
  const long ik = std::strtol(text, nullptr, kDecimal);
  if (is_within(ik, kLeastIkMs, kMostIkMs) || is_within(ik, kLeastIkUs, kMostIkUs)) return ik;
  // Other limits than the ones applied: the text is the one that users know.
  _log(1, "[E] %s(%d): interkey delay must be: 15 - 1000 (ms) or 150000 - 65000 (us)\n", "sendir",
       __LINE__);
  return std::nullopt;
}

std::optional<long> parse_repeat(const char* text) {
  if (text == nullptr) return kDefaultRepeat;
  if (*text == '\0') {
    _log(1, "[E] %s(%d): must specify a repeat count\n", "sendir", __LINE__);
    return std::nullopt;
  }
  const long repeat = std::strtol(text, nullptr, kDecimal);
  if (is_within(repeat, 0, kMostRepeats)) return repeat;
  _log(1, "[E] %s(%d): must specify a repeat <= 10\n", "sendir", __LINE__);
  return std::nullopt;
}

/// How often, and how far apart, a pattern goes out.
struct repetition {
  uint16_t ik;
  uint8_t count;
};

int send_raw_text(const char* text, repetition times) {
  const std::optional<durations> list = decode_raw(text);
  if (!list) return -1;
  announce();
  if (list->empty()) {
    _log(1, "[E] %s(%d): invalid line buffer, len = %d\n", "decode_raw", __LINE__,
         static_cast<int>(std::string_view(text).size()));
    return -1;
  }
  if (sendRaw(*list, times.ik, times.count) < 0) {
    _log(1, "[E] %s(%d): Error sending pattern\n", "sendir", __LINE__);
  }
  return done();
}

int send_csv_text(const char* text, repetition times) {
  constexpr size_t kFewestEntries = 3;
  const std::vector<long> numbers = parse_numbers(text, kDecimal);
  const bool has_leading_zero = numbers.empty() || numbers.front() == 0;
  const bool is_even = numbers.size() % 2 == 0;
  if (has_leading_zero != is_even) {
    _log(1, "[E] %s(%d): Error: invalid length, must be %s\n", "sendir", __LINE__,
         has_leading_zero ? "even" : "odd");
    return -1;
  }
  if (numbers.size() < kFewestEntries) {
    _log(1, "[E] %s(%d): Error: buffer can't be less than 4\n", "sendir", __LINE__);
    return -1;
  }
  if (is_too_long(numbers.size())) return -1;
  const std::optional<durations> list = to_durations(numbers);
  if (!list) return -1;
  announce();
  // As typed: only sendRaw puts a leading 0 in front.
  if (zv_transmit_raw(ldev, list->data(), static_cast<uint16_t>(list->size()), times.ik,
                      times.count) < 0) {
    _log(1, "[E] %s(%d): Error: could not transmit data\n", "sendir", __LINE__);
  }
  return done();
}

int send_pronto_text(const char* text, repetition times) {
  pronto_pattern pattern;
  const pronto_result result = decode_pronto(text, &pattern);
  if (result == pronto_result::kUnsendable) return -1;
  announce();
  if (result == pronto_result::kWrongSize) {
    _log(1, "[E] %s(%d): Pronto Hex is invalid, invalid size\n", "zarvo_send_pronto", __LINE__);
  }
  if (result == pronto_result::kGood) zarvo_send_pronto(pattern, times.count);
  return done();
}

int sendir(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
           dictionary* opts) {
  ldev = static_cast<appdata_priv*>(appdata)->dev;
  if (zv_version_compare(ldev, kRequiredMajor, kRequiredMinor) < 0) {
    _log(1, "[E] %s(%d): Error: version >= 4.7.x required\n", __func__, __LINE__);
    return -1;
  }
  const std::optional<long> ik = parse_ik(option(opts, "ik"));
  if (!ik) return -1;
  const std::optional<long> repeat = parse_repeat(option(opts, "repeat"));
  if (!repeat) return -1;
  const repetition times{static_cast<uint16_t>(*ik), static_cast<uint8_t>(*repeat)};

  struct source {
    const char* key;
    int (*send)(const char* text, repetition times);
  };
  constexpr source kSources[] = {
      {"raw", send_raw_text}, {"csv", send_csv_text}, {"pronto", send_pronto_text}};
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
  return chosen->send(text, times);
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
  if (code <= 0) return 0;
  constexpr long kHzPerKHz = 1000;
  const long hz = kProntoClock / code;
  return static_cast<int>((hz + kHzPerKHz / 2) / kHzPerKHz);
}
