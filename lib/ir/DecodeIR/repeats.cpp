// SPDX-License-Identifier: GPL-3.0-or-later
// The repeat bookkeeping: a key press is the first frame that a recogniser names and the copies
// that follow it. Some results between the copies are by-products of the same frames and are
// absorbed; anything else ends the press and is left to the next call.
#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kLongestPauseUs = 200000;  // a longer gap ends the press
constexpr unsigned kStartMask = 0xFFFFF;
constexpr int kStartBits = 20;
constexpr int kFewestFullRepeatBursts = 7;  // a shorter repeat part holds dittos at most

// Repeat kinds of the interface's word 8.
constexpr int kKindCopies = 1;
constexpr int kKindDittos = 3;
constexpr int kKindX10 = 4;
constexpr int kKindUnknown = 8;
constexpr int kKindRcaOld = 11;

/// "%02X" of a byte.
std::string hexByte(unsigned value) {
  std::array<char, 3> text{};
  std::snprintf(text.data(), text.size(), "%02X", value & 0xFF);
  return text.data();
}

bool isSolidtekFrame(std::string_view name) {
  return name == "Solidtek16" || name == "Solidtek20";
}

bool isGap(std::string_view name) {
  return name.starts_with("Gap-");
}

}  // namespace

/// Where a result was found.
struct Signal::place {
  std::array<unsigned, 2> context;  // as setzContext left it
  int dittos;
  bool byDittoRecogniser;

  [[nodiscard]] int start() const { return static_cast<int>(context[0] & kStartMask); }
  [[nodiscard]] int end() const { return start() + static_cast<int>(context[1] >> 16) + 2; }
};

/// A result of the search.
struct Signal::result : place {
  std::string name, remark, suffix;
  int device, subDevice, obc;
  std::array<int, 4> hex;
  int repeatKind, repeatKind2;
  bool nameVariant;
};

Signal::result Signal::currentResult() const {
  return {{{context_[0], context_[1]}, dittos_, matchedRecogniser_ == kDittoRecogniser},
          protocol_,
          misc_,
          suffix_.data(),
          *device_,
          *subDevice_,
          *obc_,
          {hex_[0], hex_[1], hex_[2], hex_[3]},
          repeatKind_,
          repeatKind2_,
          nameVariant_};
}

void Signal::decode2() {
  decode();
  if (*error_ != '\0' || *protocol_ == '\0') return;

  result kept = currentResult();
  place last = kept;  // the last counted frame
  int frames = 1;     // 1 + copies
  bool endMarker = false;
  bool absorbed = false;
  for (;;) {
    if (!absorbed) endMarker |= last.dittos > 0 || trailingGap_ > kLongestPauseUs;
    decode();
    if (*protocol_ == '\0') break;
    const result next = currentResult();
    const verdict judged = judge(kept, last, next, endMarker);
    if (judged == verdict::kEnd) break;
    absorbed = judged == verdict::kAbsorbed;
    if (absorbed) continue;
    last = next;
    if (judged == verdict::kSupersedes) {
      kept = next;
      endMarker = false;
    } else {
      ++frames;
    }
    if (judged == verdict::kX10Copy && kept.nameVariant) {
      kept.nameVariant = false;
      kept.repeatKind = kKindX10;
      kept.repeatKind2 = -1;
      kept.remark.clear();
    }
  }
  restore(kept, last);
  finish(kept, last, frames);
}

Signal::verdict Signal::judge(const result& kept, const place& last, const result& next,
                              bool endMarker) const {
  const std::string_view name = next.name;
  // Counted dittos leave the recorded length one burst short.
  const bool startsAtEnd =
      last.end() == next.start() ||
      (last.byDittoRecogniser && last.dittos > 0 && last.end() == next.start() - 1);
  const bool sameNumbers = next.device == kept.device && next.subDevice == kept.subDevice &&
                           next.obc == kept.obc && next.remark == kept.remark;

  if (name == kept.name && sameNumbers && next.dittos == 0 && !next.nameVariant && startsAtEnd &&
      !endMarker) {
    return verdict::kCopy;
  }
  const int after = next.start() - last.start();  // bursts
  if (isGap(kept.name) && !isGap(name) && after == 1) return verdict::kSupersedes;
  if (isGap(name) && (after == 0 || after == 1)) return verdict::kAbsorbed;

  const bool piece =
      name.starts_with("S:") || (name.starts_with("Solidtek") && !isSolidtekFrame(name));
  if (piece && next.end() <= last.end()) return verdict::kAbsorbed;
  if (isSolidtekFrame(kept.name) && (name.starts_with("S:") || name == "Blaupunkt{prefix}" ||
                                     name == "XX" || name == "DirecTV")) {
    return belongsToSolidtek(kept, next) ? verdict::kAbsorbed : verdict::kEnd;
  }
  if (kept.name.starts_with("Sony") && name.starts_with("Async") && isSonyByProduct(next.remark)) {
    return verdict::kAbsorbed;
  }
  if (name == "X10" && kept.name.starts_with("X10") && next.obc == kept.obc &&
      next.hex[0] == kept.hex[0]) {
    return verdict::kX10Copy;
  }
  if ((kept.name == "XMP" || kept.name.starts_with("XMP-")) && xmpFlag_) {
    if (name.starts_with("XMP") && startsAtEnd && hasRepeatInfo_) return verdict::kCopy;
    if (name == "Mitsubishi" && after == 0) return verdict::kAbsorbed;
  }
  return verdict::kEnd;
}

/// Whether a result inside a Solidtek frame is a reading of that frame's own bits.
bool Signal::belongsToSolidtek(const result& kept, const result& next) {
  const int low = kept.name == "Solidtek16" ? kept.obc : kept.subDevice;
  const unsigned check =
      msb(static_cast<unsigned>(kept.device), 4) * 8 + msb(static_cast<unsigned>(low), 3);
  const std::string text = hexByte(check);
  if (text == "00" && next.name == "Blaupunkt{prefix}") return true;
  if (text == "00" && next.name == "DirecTV" && next.device == 0 && next.obc == 0) return true;
  if (next.name.starts_with("S:") && next.name.size() > 6 && next.name.substr(5, 2) == text) {
    return true;
  }
  return next.name == "XX" && next.remark.starts_with(hexByte(255 - (check & 0xFF)));
}

/// Whether the remark of an asynchronous reading shows the two pulse widths of a Sony frame.
bool Signal::isSonyByProduct(std::string_view remark) {
  if (!remark.starts_with("80")) return false;
  for (const size_t at : {3U, 6U, 9U}) {
    if (remark.size() < at + 2) return false;
    const std::string_view byte = remark.substr(at, 2);
    if (byte != "98" && byte != "E6") return false;
  }
  return true;
}

void Signal::restore(const result& kept, const place& last) {
  std::snprintf(protocol_, kMostNameChars + 1, "%s", kept.name.c_str());
  *device_ = kept.device;
  *subDevice_ = kept.subDevice;
  *obc_ = kept.obc;
  std::copy(kept.hex.begin(), kept.hex.end(), hex_);
  context_[0] = last.context[0];
  context_[1] = last.context[1];
}

/// Names the press by its repeats and writes what the interface level asks for.
void Signal::finish(const result& kept, const place& last, int frames) {
  std::string name = kept.name;
  int kind = kept.repeatKind;
  int count = frames;
  if (name == "NEC" || name == "NECx" || name == "48-NEC") {
    if (frames >= 2 || (kept.dittos == 0 && nRepeat_ >= kFewestFullRepeatBursts)) name += "2";
    name += kept.suffix;
  } else if (name == "JVC" && !kept.nameVariant) {
    name += "{2}";
    kind = kKindCopies;
  } else if (name.starts_with("RCA") && kept.nameVariant) {
    name += "(Old)";
    kind = kKindRcaOld;
  } else if (isGap(name) || name.starts_with("??")) {
    kind = kKindUnknown;
  }
  std::snprintf(protocol_, kMostNameChars + 1, "%s", name.c_str());
  if (kind == -1) {
    kind = kept.dittos > 0 ? kKindDittos : kKindCopies;
    if (kept.dittos > 0) count = kept.dittos;
  }
  if (extraStart_ > 0 && last.end() > extraStart_) context_[0] = kStartMask;

  writeLevels(kept, last, (kept.repeatKind2 + 1) << 24 | (kind + 1) << 16 | count);
  describeRepeats(kept, frames);
  *error_ = '\0';
}

/// The further words of the context, each from an interface level on.
void Signal::writeLevels(const result& kept, const place& last, int repeatWord) {
  int band = 0;  // the highest band of words that was written
  if (interfaceLevel_ > 2) {
    int first = kept.start();
    if (kept.byDittoRecogniser && first > 0) --first;
    context_[2] = static_cast<unsigned>(first) | (context_[0] & ~kStartMask);
    context_[0] &= kStartMask;
    band = 3;
  }
  if (interfaceLevel_ > 3) {
    context_[3] = kept.context[1];
    band = 4;
  }
  if (interfaceLevel_ > 5) {
    context_[4] = last.context[0];
    context_[5] = last.context[1];
    band = 6;
  }
  if (interfaceLevel_ > 7) {
    context_[6] = static_cast<unsigned>(getFreq(kept.start(), kept.end()));
    band = 8;
  }
  if (interfaceLevel_ > 8) {
    context_[8] = static_cast<unsigned>(repeatWord);
    band = 9;
  }
  if (band > 0) context_[0] |= static_cast<unsigned>(2 - band) << kStartBits;
}

/// Puts "no repeat", "+ 2 copies" and so on in front of the remark.
void Signal::describeRepeats(const result& kept, int frames) {
  std::string text;
  if (!hasRepeatInfo_) {
    const auto number = [](int n, const char* one, const char* many) {
      return "+ " + std::to_string(n) + (n == 1 ? one : many);
    };
    if (kept.dittos > 0) {
      text = number(kept.dittos, " ditto", " dittos");
      if (frames > 1) {
        text = "+ " + std::to_string(kept.dittos) + " dittos, " + std::to_string(frames - 1) +
               " copies";
      }
    } else {
      text = frames == 1 ? "no repeat" : number(frames - 1, " copy", " copies");
    }
    if (!kept.remark.empty()) text += ": ";
  }
  text += kept.remark;
  std::snprintf(misc_, kMostMiscChars + 1, "%s", text.c_str());
}
