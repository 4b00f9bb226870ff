// SPDX-License-Identifier: GPL-3.0-or-later
// Pulse-distance protocols as data: how a frame looks on the wire (coding), what its bits mean
// (row), and the one engine that reads both.
//
// Every symbol is a mark of fixed length and a space whose length carries one bit. A receiver
// stretches marks at the cost of the spaces, so a bit is read from mark + space. The engine
// estimates the remote's clock from the burst lengths and the receiver's bias from the marks, and
// then holds every duration to narrow bounds; one duration of a frame may be out of line.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace gap {

/// A mark and the space after it, in units of a coding.
struct burst_units {
  float on = 0;
  float off = 0;
};

/// A burst among the data bursts that is no symbol: the gap between two halves, a second lead-in.
struct split_burst {
  int at = -1;  // symbols before it, -1 for none
  burst_units burst;
};

constexpr float kGapUs = 9000;
constexpr float kGapBeforeUs = 5000;
constexpr float kAnyUs = 2e9F;

/// How a frame looks on the wire: [lead-in] symbols, with at most one split, and a stop mark.
struct coding {
  float unit;             // µs
  burst_units lead = {};  // {0, 0}: no lead-in
  float mark;             // units, of every symbol
  float zero, one;        // units, the spaces of the two symbols
  int bits;               // symbols
  split_burst split = {};
  float stop = 0;                   // units of the stop mark, 0 for `mark`
  float min_gap = kGapUs;           // µs of space after the frame
  float min_before = kGapBeforeUs;  // µs of space before it
  float max_before = kAnyUs;
  float fastest = 0.9F;  // range of the remote's clock against `unit`
  float slowest = 1.1F;
  float shortest_mark = 0;  // µs, range of the mean mark, where only that tells two codes apart
  float longest_mark = kAnyUs;

  [[nodiscard]] constexpr coding gaps(float after, float before, float most_before = kAnyUs) const {
    coding changed = *this;
    changed.min_gap = after;
    changed.min_before = before;
    changed.max_before = most_before;
    return changed;
  }
  [[nodiscard]] constexpr coding clock(float from, float to) const {
    coding changed = *this;
    changed.fastest = from;
    changed.slowest = to;
    return changed;
  }
  [[nodiscard]] constexpr coding marks(float shortest, float longest) const {
    coding changed = *this;
    changed.shortest_mark = shortest;
    changed.longest_mark = longest;
    return changed;
  }

  [[nodiscard]] constexpr bool has_lead() const { return lead.on > 0; }
  /// Bursts of a frame, lead-in and stop mark included.
  [[nodiscard]] constexpr int bursts() const {
    return bits + 1 + static_cast<int>(has_lead()) + static_cast<int>(split.at >= 0);
  }
};

/// A frame that fits a coding. Bit i of `bits` is the i-th symbol sent.
struct sliced {
  uint64_t bits = 0;
  float scale = 1;      // the remote's clock, as a part of the coding's unit
  float bias = 0;       // µs that the receiver adds to a mark
  float skew = 0;       // the clock by the zeros less that by the ones; 0 without both
  int rough = 0;        // symbols beyond the bounds for frames without checks
  bool uneven = false;  // the lead-in or a symbol is out of line
  int guessed = -1;     // the symbol so far out of line that its bit is a guess; -1: none
};

/// Slices the bursts of `frame`, which number wire.bursts(). False when they don't fit.
bool slice(const coding& wire, const float* frame, sliced* out);

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

/// A field that goes into the remark as "label=value".
struct extra {
  const char* label = nullptr;
  field where = {};
};

/// What a row answers.
struct answer {
  std::array<char, 40> name{};
  std::array<char, 80> remark{};
  int device = -1;
  int subDevice = -1;
  int obc = -1;
  std::array<int, 2> hex = {-1, -1};
  const char* suffix = "";
  bool variant = false;
};

/// A short frame that says "the key is still held": a lead-in, some symbols, a stop mark.
struct ditto {
  burst_units lead;
  int bits = 0;
};

struct row;

/// A frame that passed every check of its row.
struct reading {
  const row* from;
  sliced wire;
  int carrier;  // Hz, 0 when not known

  [[nodiscard]] unsigned get(const field& where) const;
  /// Whether a check of the row would notice that this bit is wrong.
  [[nodiscard]] bool vouched(int bit) const;
};

/// What the bits of a coding mean.
struct row {
  const char* name;
  const coding* wire;
  bool msb = false;        // fields send their most significant bit first
  bool variant = false;    // sets the name-variant flag
  bool vets_bits = false;  // finish refuses a guessed bit where nothing vouches for it
  field device = {}, subDevice = {}, obc = {};
  field second = {};  // a second function byte
  constant constants[3] = {};
  mirror mirrors[3] = {};
  int check_bits = 0;    // how many bits `check` vouches for
  field unchecked = {};  // bits that `check` does not look at
  bool (*check)(const reading&) = nullptr;
  /// Completes the answer where a row cannot say it; false refuses the frame.
  bool (*finish)(const reading&, answer*) = nullptr;
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

/// The rows whose frames have this many bursts, the most telling first.
std::span<const row* const> rows_of(int bursts);

/// The bits of `where` as a number, in the bit order given.
unsigned bits_at(uint64_t bits, const field& where, bool msb);
/// Whether the constants, mirrors and check of the row hold.
bool checks_hold(const reading& frame);
/// Fills the answer from the fields of the row; false when the row refuses the frame after all.
bool read_row(const reading& frame, answer* out);
/// The code byte as remote code tables write it: in wire order, complemented if sent lsb first.
int code_byte(const reading& frame, const field& where);

/// Whether the bursts at `at`, which reach to `end`, begin with this ditto.
bool is_ditto(const coding& wire, const ditto& form, const float* at, const float* end, float scale,
              float bias);

}  // namespace gap
