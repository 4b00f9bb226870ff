// SPDX-License-Identifier: GPL-3.0-or-later
// The repeat bookkeeping: a key press is the first frame that a recogniser names and the copies
// that follow it. Some results between the copies are by-products of the same frames and are
// absorbed; anything else ends the press and is left to the next call.
#include <array>
#include <string_view>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/receiver.h"

using analysis::answer;

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

constexpr size_t kMostMiscChars = 254;  // the repeat description and the remark

/// The low byte in two digits.
class hex_byte {
 public:
  explicit hex_byte(unsigned value) { text_.print("%02X", value & 0xFF); }
  [[nodiscard]] std::string_view view() const { return text_.view(); }

 private:
  analysis::short_text<2> text_;
};

bool is_solidtek_frame(std::string_view name) {
  return name == "Solidtek16" || name == "Solidtek20";
}

bool is_gap(std::string_view name) {
  return name.starts_with("Gap-");
}

/// Whether the remark of an asynchronous reading shows the two pulse widths of a Sony frame.
bool is_sony_by_product(std::string_view remark) {
  if (!remark.starts_with("80")) return false;
  for (const size_t at : {3U, 6U, 9U}) {
    if (remark.size() < at + 2) return false;
    const std::string_view byte = remark.substr(at, 2);
    if (byte != "98" && byte != "E6") return false;
  }
  return true;
}

}  // namespace

/// Where a result was found.
struct Signal::place {
  std::array<unsigned, 2> context;  // as setzContext left it
  float trailing_gap;               // µs
  bool has_dittos;
  bool by_ditto_recogniser;

  [[nodiscard]] int start() const { return static_cast<int>(context[0] & kStartMask); }
  [[nodiscard]] int end() const { return start() + static_cast<int>(context[1] >> 16) + 2; }
  /// Whether no frame behind it is a copy.
  [[nodiscard]] bool ends_press() const { return has_dittos || trailing_gap > kLongestPauseUs; }
};

/// A result of the search.
struct Signal::result : place, answer {};

/// The press as far as it is known.
struct Signal::held_key {
  result kept;            // what it is called
  place last;             // its last counted frame
  analysis::press whole;  // its counted frames
  bool over = false;      // whether an identical frame is none of its copies

  explicit held_key(const result& first) : kept(first), last(first) { whole.note(first.part); }
};

Signal::result Signal::current_result() const {
  return {{{context_[0], context_[1]},
           frame_.trailing_gap,
           found_->dittos > 0,
           recogniserIndex_ == kDittoRecogniser},
          *found_};
}

void Signal::decode2() {
  decode();
  if (*error_ != '\0' || *protocol_ == '\0') return;

  held_key held(current_result());
  bool absorbed = false;
  for (;;) {
    if (!absorbed) held.over |= held.last.ends_press();
    decode();
    // The next call goes on behind the last counted frame, so it sees absorbed results again.
    exhausted_ = *protocol_ == '\0' && !absorbed;
    if (*protocol_ == '\0') break;
    const result next = current_result();
    const verdict judged = judge(held, next);
    if (judged == verdict::kEnd) break;
    absorbed = judged == verdict::kAbsorbed;
    if (!absorbed) count(next, judged, &held);
  }
  tell_press(&held);
  write_results(held.kept);
  place_ = {held.kept.start(), held.kept.end() - held.kept.start(),
            held.kept.has_dittos ? 0 : held.whole.frames, held.kept.layout};
  context_[0] = held.last.context[0];
  context_[1] = held.last.context[1];
  finish(held.kept, held.last, held.whole.frames);
}

/// Completes the remark.
void Signal::tell_press(held_key* held) {
  held->kept.remark.add(held->kept.aside.view());
  if (held->kept.tell_press == nullptr) return;
  widen_to(lastBurst_);
  analysis::press whole = held->whole;
  whole.end = {burst_at(held->last.start()), burst_at(lastBurst_)};
  // A repeat part is sent again, although its second copy is not searched.
  if (nRepeat_ > 0 && held->last.end() >= nSingle_ + nRepeat_) ++whole.frames;
  held->kept.tell_press(whole, &held->kept);
}

/// Takes in a further result as what it was judged to be.
void Signal::count(const result& next, verdict judged, held_key* held) {
  result& kept = held->kept;
  held->last = next;
  held->whole.note(next.part);
  if (judged == verdict::kSupersedes) {
    kept = next;
    held->over = false;
    return;
  }
  ++held->whole.frames;
  if (judged == verdict::kX10Copy && kept.variant) {
    kept.variant = false;
    kept.repeat_kind = kKindX10;
    kept.repeat_kind2 = -1;
    kept.remark.clear();
  }
}

Signal::verdict Signal::judge(const held_key& held, const result& next) const {
  const result& kept = held.kept;
  const place& last = held.last;
  const std::string_view name = next.name.view();
  const std::string_view kept_name = kept.name.view();
  // Counted dittos leave the recorded length one burst short; a stray mark between two copies
  // belongs to neither.
  const float* const behind = burst_at(last.end());
  const bool one_between =
      (last.by_ditto_recogniser && last.has_dittos) || receiver::is_stray(behind[0], behind[1]);
  const bool starts_at_end =
      last.end() == next.start() || (one_between && last.end() == next.start() - 1);
  const bool same_numbers = next.device == kept.device && next.subdevice == kept.subdevice &&
                            next.function == kept.function &&
                            next.remark.view() == kept.remark.view();
  // A start frame begins a press, and continues one that began with another copy of it.
  const bool starts_anew = next.part == analysis::press_part::first && !held.whole.has_first;

  if (name == kept_name && same_numbers && !next.has_dittos && !next.variant && starts_at_end &&
      !starts_anew && !held.over) {
    return verdict::kCopy;
  }
  const int after = next.start() - last.start();  // bursts
  if (is_gap(kept_name) && !is_gap(name) && after == 1) return verdict::kSupersedes;
  if (is_gap(name) && (after == 0 || after == 1)) return verdict::kAbsorbed;

  const bool piece =
      name.starts_with("S:") || (name.starts_with("Solidtek") && !is_solidtek_frame(name));
  if (piece && next.end() <= last.end()) return verdict::kAbsorbed;
  if (is_solidtek_frame(kept_name) && (name.starts_with("S:") || name == "Blaupunkt{prefix}" ||
                                       name == "XX" || name == "DirecTV")) {
    return belongs_to_solidtek(kept, next) ? verdict::kAbsorbed : verdict::kEnd;
  }
  if (kept_name.starts_with("Sony") && name.starts_with("Async") &&
      is_sony_by_product(next.remark.view())) {
    return verdict::kAbsorbed;
  }
  if (name == "X10" && kept_name.starts_with("X10") && next.function == kept.function &&
      next.hex.first == kept.hex.first) {
    return verdict::kX10Copy;
  }
  if ((kept_name == "XMP" || kept_name.starts_with("XMP-")) && xmpFlag_) {
    if (name.starts_with("XMP") && starts_at_end && hasRepeatInfo_) return verdict::kCopy;
    if (name == "Mitsubishi" && after == 0) return verdict::kAbsorbed;
  }
  return verdict::kEnd;
}

/// Whether a result inside a Solidtek frame is a reading of that frame's own bits.
bool Signal::belongs_to_solidtek(const result& kept, const result& next) {
  const int low = kept.name.view() == "Solidtek16" ? kept.function : kept.subdevice;
  const unsigned check = analysis::msb(static_cast<unsigned>(kept.device), 4) * 8 +
                         analysis::msb(static_cast<unsigned>(low), 3);
  const hex_byte text(check);
  const std::string_view name = next.name.view();
  if (text.view() == "00" && name == "Blaupunkt{prefix}") return true;
  if (text.view() == "00" && name == "DirecTV" && next.device == 0 && next.function == 0) {
    return true;
  }
  if (name.starts_with("S:") && name.size() > 6 && name.substr(5, 2) == text.view()) return true;
  return name == "XX" && next.remark.view().starts_with(hex_byte(255 - (check & 0xFF)).view());
}

/// Names the press by its repeats and writes what the interface level asks for.
void Signal::finish(const result& kept, const place& last, int frames) {
  auto name = kept.name;
  const std::string_view found = kept.name.view();
  int kind = kept.repeat_kind;
  int count = frames;
  if (found == "NEC" || found == "NECx" || found == "48-NEC") {
    if (frames >= 2 || (!kept.has_dittos && nRepeat_ >= kFewestFullRepeatBursts)) name.add("2");
    name.add(kept.suffix);
  } else if (found == "JVC" && !kept.variant) {
    name.add("{2}");
    kind = kKindCopies;
  } else if (found.starts_with("RCA") && kept.variant) {
    name.add("(Old)");
    kind = kKindRcaOld;
  } else if (is_gap(found) || found.starts_with("??")) {
    kind = kKindUnknown;
  }
  name.copy_to(protocol_);
  if (kind == -1) {
    kind = kept.has_dittos ? kKindDittos : kKindCopies;
    if (kept.has_dittos) count = kept.dittos;
  }
  if (extraStart_ > 0 && last.end() > extraStart_) context_[0] = kStartMask;

  write_levels(kept, last, (kept.repeat_kind2 + 1) << 24 | (kind + 1) << 16 | count);
  describe_repeats(kept, frames);
  *error_ = '\0';
}

/// The further words of the context, each from an interface level on.
void Signal::write_levels(const result& kept, const place& last, int repeat_word) {
  int band = 0;  // the highest band of words that was written
  if (interfaceLevel_ > 2) {
    int first = kept.start();
    if (kept.by_ditto_recogniser && first > 0) --first;
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
    context_[8] = static_cast<unsigned>(repeat_word);
    band = 9;
  }
  if (band > 0) context_[0] |= static_cast<unsigned>(2 - band) << kStartBits;
}

/// Puts "no repeat", "+ 2 copies" and so on in front of the remark.
void Signal::describe_repeats(const result& kept, int frames) {
  analysis::short_text<kMostMiscChars> text;
  if (!hasRepeatInfo_) {
    const int copies = frames - 1;
    if (kept.has_dittos && copies > 0) {
      text.print("+ %d dittos, %d copies", kept.dittos, copies);
    } else if (kept.has_dittos) {
      text.print("+ %d ditto%s", kept.dittos, kept.dittos == 1 ? "" : "s");
    } else if (copies > 0) {
      text.print("+ %d cop%s", copies, copies == 1 ? "y" : "ies");
    } else {
      text.add("no repeat");
    }
    if (!kept.remark.empty()) text.add(": ");
  }
  text.add(kept.remark.view());
  text.copy_to(misc_);
}
