// SPDX-License-Identifier: GPL-3.0-or-later
// The packets of Broadlink's Wi-Fi senders, in base64 or hexadecimal digits, on one line or more.
//
//   26 00 48 00  00 01 28 94 13 13 13 38 … 13 00 0d 05        JgBIAAABKJQTExM4…EwANBQ==
//   a  b  c      durations, mark and space in turn, then padding
//
//   a  0x26 infrared, others radio   b  further sends   c  bytes of the durations, the low one
//   first
//
// A duration is in ticks of 8192 / 269 µs (30.45 µs): one byte, or 0 and two bytes, the high one
// first. A packet that ends too early holds what is there.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr double kTickUs = 8192.0 / 269;
constexpr int kMostTicks = 0xFFFF;
constexpr uint8_t kInfrared = 0x26;
constexpr size_t kHeaderBytes = 4;
constexpr size_t kMostBytes = 0xFFFF;              // of the durations
constexpr size_t kLongestDurationBytes = 3;        // a 0 and two bytes
constexpr std::string_view kAround = " \t\r\"',";  // what stands around a packet in other texts

constexpr std::string_view kBase64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kHex = "0123456789abcdef";

constexpr char to_lower(char c) {
  return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

bool is_hex_digit(char c) {
  return kHex.find(to_lower(c)) != kHex.npos;
}

std::string_view trimmed(std::string_view line) {
  const size_t first = std::min(line.find_first_not_of(kAround), line.size());
  return line.substr(first, line.find_last_not_of(kAround) + 1 - first);
}

/// Whether every word is digits of a byte each, or the only word is digits of many.
bool is_hex(std::string_view line) {
  const auto words = split(trimmed(line), kBlanks);
  return !words.empty() && std::all_of(words.begin(), words.end(), [&](const token& word) {
    return std::all_of(word.text.begin(), word.text.end(), is_hex_digit) &&
           word.text.size() % 2 == 0 && (words.size() == 1 || word.text.size() == 2);
  });
}

bool is_base64(std::string_view line) {
  std::string_view text = trimmed(line);
  while (text.ends_with('=')) text.remove_suffix(1);
  return !text.empty() && text.find_first_not_of(kBase64) == text.npos;
}

bool begins_hex(std::string_view line) {
  constexpr size_t kFewestDigits = 2 * (kHeaderBytes + 1);
  return trimmed(line).starts_with("26") && line.size() >= kFewestDigits && is_hex(line);
}

bool begins_base64(std::string_view line) {
  constexpr size_t kFewestDigits = 8;
  return trimmed(line).starts_with("Jg") && line.size() >= kFewestDigits && is_base64(line);
}

/// A packet, digit by digit.
class bytes {
 public:
  explicit bytes(int bits_per_digit) : bits_per_digit_(bits_per_digit) {}

  void add(size_t digit) {
    pending_ = pending_ << bits_per_digit_ | static_cast<unsigned>(digit);
    bits_ += bits_per_digit_;
    if (bits_ < 8) return;
    bits_ -= 8;
    // Behind the durations only padding follows.
    if (all_.size() < kHeaderBytes + kMostBytes)
      all_.push_back(static_cast<uint8_t>(pending_ >> bits_));
    pending_ &= (1U << bits_) - 1;
  }

  [[nodiscard]] const std::vector<uint8_t>& all() const { return all_; }
  [[nodiscard]] size_t wanted() const {
    if (all_.size() < kHeaderBytes) return kHeaderBytes;
    return kHeaderBytes + all_[2] + (size_t{all_[3]} << 8);
  }
  [[nodiscard]] bool complete() const { return all_.size() >= wanted(); }

 private:
  int bits_per_digit_;
  std::vector<uint8_t> all_;
  unsigned pending_ = 0;
  int bits_ = 0;
};

/// The durations of a packet; the fault where it holds none.
std::optional<std::string> read_packet(const bytes& packet, std::vector<int>& durations) {
  const std::vector<uint8_t>& all = packet.all();
  if (all.size() <= kHeaderBytes) return "a packet of fewer than 5 bytes";
  if (all[0] != kInfrared) return "a packet that is not infrared";
  const size_t end = std::min(all.size(), packet.wanted());
  for (size_t at = kHeaderBytes; at < end;) {
    int ticks = all[at++];
    if (ticks == 0) {
      if (end - at < 2) break;
      ticks = all[at] << 8 | all[at + 1];
      at += 2;
    }
    if (ticks == 0) return "a duration of 0";
    durations.push_back(static_cast<int>(std::lround(ticks * kTickUs)));
  }
  if (durations.empty()) return "a packet without durations";
  return {};
}

template <bool (*is_digits)(std::string_view), bool (*begins)(std::string_view), bool hex>
class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view line) const override {
    return line_ > 0 && is_digits(line) && !begins(line);
  }

  void read(const text_line& line, findings& out) override {
    if (line_ == 0) line_ = line.number;
    size_t column = 0;
    for (const char c : line.text) {
      ++column;
      if (kAround.find(c) != kAround.npos || (!hex && c == '=')) continue;
      const size_t digit = hex ? kHex.find(to_lower(c)) : kBase64.find(c);
      if (digit == kHex.npos) {
        clear();
        return out.fault(line.number,
                         {column, hex ? "expected hexadecimal digits" : "expected base64"});
      }
      packet_.add(digit);
    }
    if (packet_.complete()) end(out);
  }

  void end(findings& out) override {
    if (line_ == 0) return;
    pattern found{.form = hex ? "broadlink-hex" : "broadlink"};
    if (auto fault = read_packet(packet_, found.durations)) {
      out.fault(line_, {1, std::move(*fault)});
    } else {
      out.add(line_, std::move(found));
    }
    clear();
  }

 private:
  static constexpr int kBitsPerDigit = hex ? 4 : 6;

  void clear() {
    line_ = 0;
    packet_ = bytes(kBitsPerDigit);
  }

  bytes packet_{kBitsPerDigit};
  size_t line_ = 0;  // where the packet begins; 0: between packets
};

std::vector<uint8_t> packet_of(const std::vector<int>& durations) {
  std::vector<uint8_t> all = {kInfrared, 0, 0, 0};
  const auto add = [&](int byte) { all.push_back(static_cast<uint8_t>(byte & 0xFF)); };
  for (const int us : durations) {
    const auto ticks =
        static_cast<int>(std::clamp(std::lround(us / kTickUs), 1L, long{kMostTicks}));
    if (ticks > 0xFF) {
      add(0);
      add(ticks >> 8);
    }
    add(ticks);
  }
  const size_t count = all.size() - kHeaderBytes;
  all[2] = static_cast<uint8_t>(count & 0xFF);
  all[3] = static_cast<uint8_t>(count >> 8);
  return all;
}

void write_as_hex(std::ostream& out, const pattern& signal) {
  for (const uint8_t byte : packet_of(signal.durations)) write_hex(out, byte, 2);
  out << '\n';
}

void write_as_base64(std::ostream& out, const pattern& signal) {
  const std::vector<uint8_t> all = packet_of(signal.durations);
  for (size_t at = 0; at < all.size(); at += 3) {
    const size_t count = std::min<size_t>(3, all.size() - at);
    unsigned group = 0;
    for (size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? all[at + i] : 0);
    for (size_t digit = 0; digit < 4; ++digit) {
      out << (digit <= count ? kBase64[group >> (18 - 6 * digit) & 0x3F] : '=');
    }
  }
  out << '\n';
}

constexpr holdings kHolds = {.gap = true,
                             .longest_us = static_cast<int>(kMostTicks * kTickUs),
                             .most_durations = kMostBytes / kLongestDurationBytes};

}  // namespace

const form kBroadlinkForm = {.name = "broadlink",
                             .about = "Broadlink packet in base64, JgBIAAABKJQT",
                             .begins = begins_base64,
                             .reader = open<reader<is_base64, begins_base64, false>>,
                             .writer = one_by_one<write_as_base64>,
                             .holds = kHolds};

const form kBroadlinkHexForm = {.name = "broadlink-hex",
                                .about = "Broadlink packet in hexadecimal digits, 2600480000012894",
                                .begins = begins_hex,
                                .reader = open<reader<is_hex, begins_hex, true>>,
                                .writer = one_by_one<write_as_hex>,
                                .holds = kHolds};

}  // namespace companions
