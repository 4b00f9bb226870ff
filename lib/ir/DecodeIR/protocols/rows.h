// SPDX-License-Identifier: GPL-3.0-or-later
// Protocols as data: a row says how the frames of a protocol look on the wire (its coding, which a
// reader of readers/ reads) and what the bits mean.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <variant>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/DecodeIR/readers/levels.h"
#include "lib/ir/DecodeIR/readers/pulse_distance.h"
#include "lib/ir/DecodeIR/readers/pulse_width.h"

namespace analysis {

/// A run of bits. width 0: there is none.
struct field {
  int first = 0;
  int width = 0;
  bool reversed = false;  // against the bit order of the row
};

/// Bits that are always the same.
struct constant {
  int first = 0;
  int width = 0;
  uint32_t value = 0;
};

/// Bits sent twice, the second time complemented unless `plain`.
struct mirror {
  int first = 0;
  int second = 0;
  int width = 0;
  bool plain = false;
};

/// A field that goes into the remark: the label ("T="), then the value.
struct extra {
  const char* label = nullptr;
  field where = {};
};

/// What a variant of pointers holds if it is of this type, else null.
template <typename Wanted, typename... Types>
constexpr Wanted get_or_null(const std::variant<Types...>& from) {
  return std::holds_alternative<Wanted>(from) ? std::get<Wanted>(from) : nullptr;
}

/// How the frames of a row look on the wire: one of the codings.
class coding {
 public:
  constexpr coding(const pulse_distance* wire) : wire_(wire) {}
  constexpr coding(const pulse_width* wire) : wire_(wire) {}
  constexpr coding(const bi_phase_code* wire) : wire_(wire) {}

  /// The coding if it is of this kind, else null.
  [[nodiscard]] constexpr const pulse_distance* distance() const {
    return get_or_null<const pulse_distance*>(wire_);
  }
  [[nodiscard]] constexpr const pulse_width* width() const {
    return get_or_null<const pulse_width*>(wire_);
  }
  [[nodiscard]] constexpr const bi_phase_code* phase() const {
    return get_or_null<const bi_phase_code*>(wire_);
  }

  [[nodiscard]] constexpr int bits() const {
    return std::visit([](const auto* wire) { return wire->bits; }, wire_);
  }
  [[nodiscard]] int fewest_bursts() const {
    return phase() != nullptr ? phase()->fewest_bursts() : bursts();
  }
  [[nodiscard]] int most_bursts() const {
    return phase() != nullptr ? phase()->most_bursts() : bursts();
  }

 private:
  [[nodiscard]] int bursts() const {
    return distance() != nullptr ? distance()->bursts() : width()->bursts();
  }

  std::variant<const pulse_distance*, const pulse_width*, const bi_phase_code*> wire_;
};

/// A function that a row has or does not have. It remembers which, because g++ does not compare the
/// addresses of functions in constants while it compiles for the sanitizers.
template <typename... Arguments>
class optional_test {
 public:
  constexpr optional_test() = default;
  constexpr optional_test(bool (*test)(Arguments...)) : test_(test), present_(true) {}

  [[nodiscard]] constexpr bool present() const { return present_; }
  /// REQUIRES: present().
  bool operator()(Arguments... arguments) const { return test_(arguments...); }

 private:
  bool (*test_)(Arguments...) = nullptr;
  bool present_ = false;
};

struct row;

/// A frame that fits the coding of its row.
struct reading {
  const frame& seen;
  const row* from = nullptr;
  bit_buffer bits;
  distance_fit fit;  // of pulse distance

  /// A field as a number, in the bit order of the row.
  [[nodiscard]] unsigned get(const field& where) const;
  /// The code byte as remote code tables write it: in the order sent; of pulse distance
  /// complemented if the least significant bit comes first. -1 for no field.
  [[nodiscard]] int code_byte(const field& where) const;
  /// Whether a check of the row would notice that this bit is wrong.
  [[nodiscard]] bool checks(int bit) const;
  /// Whether the constants, mirrors and check of the row hold.
  [[nodiscard]] bool checks_hold() const;
  /// The answer from the fields of the row; nothing when the row refuses the frame after all.
  [[nodiscard]] std::optional<answer> read() const;
};

/// What the bits of a coding mean.
struct row {
  const char* name;
  coding wire;
  bool msb = false;            // fields send their most significant bit first
  bool variant = false;        // sets the name-variant flag
  bool finish_checks = false;  // finish refuses an unsure bit that nothing checks
  field device = {}, subdevice = {}, function = {};
  field second = {};  // a second function byte
  constant constants[3] = {};
  mirror mirrors[3] = {};
  int check_bits = 0;    // how many bits `check` proves
  field unchecked = {};  // bits that `check` does not look at
  optional_test<const reading&> check = {};
  /// Completes the answer where a row cannot say it; false refuses the frame.
  optional_test<const reading&, answer*> finish = {};
  extra extras[2] = {};
  const ditto* repeat = nullptr;

  /// Bits of a frame that say nothing new, and so prove that it is what it seems.
  [[nodiscard]] constexpr int redundancy() const {
    int sum = check_bits;
    for (const constant& fixed : constants) sum += fixed.width;
    for (const mirror& twice : mirrors) sum += twice.width;
    return sum;
  }
};

/// Whether a row means what it says: fields lie inside the frame and are numbers of 32 bits,
/// complements stand beside what they repeat, and a check comes with the bits that it proves.
constexpr bool is_sound(const row& checked) {
  const int bits = checked.wire.bits();
  const auto inside = [bits](int first, int width) {
    return first >= 0 && width >= 0 && width <= 32 && first + width <= bits;
  };
  for (const field& where : {checked.device, checked.subdevice, checked.function, checked.second,
                             checked.unchecked, checked.extras[0].where, checked.extras[1].where}) {
    if (!inside(where.first, where.width)) return false;
  }
  for (const constant& fixed : checked.constants) {
    if (!inside(fixed.first, fixed.width) || uint64_t{fixed.value} >> fixed.width != 0)
      return false;
  }
  for (const mirror& twice : checked.mirrors) {
    if (!inside(twice.first, twice.width) || !inside(twice.second, twice.width)) return false;
    if (twice.width > 0 && twice.second < twice.first + twice.width) return false;
  }
  const bool checks = checked.check.present() || checked.finish_checks;
  return bits <= bit_buffer::kMostBits && (checked.check_bits == 0 || checks) &&
         (!checked.check.present() || checked.check_bits > 0) &&
         (!checked.finish_checks || checked.finish.present());
}

template <size_t kCount>
constexpr bool are_sound(const row (&rows)[kCount]) {
  for (const row& checked : rows) {
    if (!is_sound(checked)) return false;
  }
  return true;
}

/// What the first of the rows (of pulse width or bi-phase) that fits says of the frame.
std::optional<answer> read_rows(std::span<const row> rows, const frame& seen);

/// The pulse-distance rows whose frames have this many bursts, the most telling first; and all.
std::span<const row* const> distance_rows(int bursts);
std::span<const row* const> distance_rows();

/// Counts the dittos of this form behind the frame and takes them into what is claimed, all but
/// their last burst.
void count_dittos(const frame& seen, const pulse_distance& wire, const ditto& form, float scale,
                  float bias, answer* found);

}  // namespace analysis
