// SPDX-License-Identifier: GPL-3.0-or-later
// How far a frame may be from what its protocol sends. A row names one thing that happens to a
// frame and the last amount of it that leaves the frame its name: one more takes it away.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/irrecv_call.h"

namespace {

using namespace irrecv;
using Durations = std::vector<int>;

// Bits as bursts of two lengths, the first one sent the highest; nothing of a receiver in them.
struct Coding {
  Durations lead;
  int mark, zero, one;
};

Durations frame_of(const Coding& coding, uint64_t bits, int count) {
  Durations frame = coding.lead;
  for (int bit = count - 1; bit >= 0; --bit) {
    frame.push_back(coding.mark);
    frame.push_back((bits >> bit & 1) != 0 ? coding.one : coding.zero);
  }
  frame.push_back(coding.mark);
  return frame;
}

Durations sony(uint32_t bits, int count) {
  Durations frame = {2400, 600};
  for (int bit = count - 1; bit >= 0; --bit) {
    frame.push_back((bits >> bit & 1) != 0 ? 1200 : 600);
    frame.push_back(600);
  }
  frame.pop_back();
  return frame;
}

const Coding kNecCoding = {{9000, 4500}, 560, 560, 1690};
const Coding kJvcCoding = {{8400, 4200}, 525, 525, 1575};
const Durations kNec = frame_of(kNecCoding, 0x20DF10EF, 32);
const Durations kNecFree = frame_of(kNecCoding, 0x20DF1090, 32);  // no complement
const Durations kSamsung = frame_of({{4500, 4500}, 560, 560, 1690}, 0xE0E040BF, 32);
const Durations kSamsungFree = frame_of({{4500, 4500}, 560, 560, 1690}, 0xE0E04090, 32);
const Durations kSanyo = sent("Aiwa", {{"D", 0x2A}, {"S", 5}, {"F", 0x10}});
const Durations kPanasonic = frame_of({{3456, 1728}, 432, 432, 1296}, 0x40040100BCBD, 48);
const Durations kLg = frame_of({{8750, 4375}, 560, 560, 1690}, 0x88C0051, 28);
const Durations kJvc = frame_of(kJvcCoding, 0xC2B8, 16);
const Durations kJvcRepeat = frame_of({{}, 525, 525, 1575}, 0xC2B8, 16);
const Durations kSharp = frame_of({{}, 264, 792, 1848}, 0x405A, 15);
const Durations kDenon = frame_of({{}, 264, 792, 1848}, 0x2300, 15);
const Durations kMitsubishi = frame_of({{}, 300, 900, 2100}, 0xE240, 16);
const Durations kWhynter = frame_of({{750, 750, 3000, 3000}, 750, 750, 2250}, 0x87654321, 32);
const Durations kDish = frame_of({{400, 6100}, 400, 2840, 1630}, 0xAB10, 16);
const Durations kSony = sony(0xA90, 12);
const Durations kRc5 = sent("RC5", {{"D", 0}, {"F", 12}, {"T", 0}});
const Durations kRc6 = sent("RC6", {{"D", 0}, {"F", 12}, {"T", 1}});
const Durations kRepeat = {9000, 2250, 560};

using Change = std::function<Durations(Durations frame, int amount)>;

/// The last amount, in steps of `step` from 0, that leaves `frame` the name it has.
int most(const Durations& frame, const Change& change, int step) {
  constexpr int kEnough = 20000;
  const std::string type = type_of(frame);
  int amount = 0;
  while (std::abs(amount) < kEnough && type_of(change(frame, amount + step)) == type) {
    amount += step;
  }
  return amount;
}

/// Marks longer and spaces shorter, in µs.
Durations biased(Durations frame, int us) {
  for (size_t i = 0; i < frame.size(); ++i) frame[i] += i % 2 == 0 ? us : -us;
  return frame;
}

/// All durations longer, in thousandths.
Durations scaled(Durations frame, int thousandths) {
  for (int& us : frame) us = static_cast<int>(std::lround(us * (1 + thousandths / 1000.0)));
  return frame;
}

/// One duration longer, in µs.
Change longer(size_t index) {
  return [index](Durations frame, int us) {
    frame.at(index) += us;
    return frame;
  };
}

/// A mark longer and the space behind it shorter by as much, in µs.
Change later(size_t index) {
  return [index](Durations frame, int us) {
    frame.at(index) += us;
    frame.at(index + 1) -= us;
    return frame;
  };
}

struct Limit {
  const char* what;
  Durations frame;
  Change change;
  int low, high;
};

/// `rounding`: what the last digits of a quotient may move.
void expect_limits(const std::vector<Limit>& limits, int rounding = 0) {
  for (const Limit& limit : limits) {
    EXPECT_NE(type_of(limit.frame), "UNKNOWN") << limit.what;
    EXPECT_NEAR(most(limit.frame, limit.change, -1), limit.low, rounding) << limit.what;
    EXPECT_NEAR(most(limit.frame, limit.change, 1), limit.high, rounding) << limit.what;
  }
}

TEST(Limits, OfTheClock) {
  expect_limits(
      {
          {"NEC that its complement proves", kNec, scaled, -129, 129},
          {"NEC", kNecFree, scaled, -100, 79},
          {"Samsung that its complement proves", kSamsung, scaled, -129, 129},
          {"Samsung", kSamsungFree, scaled, -100, 79},
          {"Sanyo", kSanyo, scaled, -111, 153},
          {"Panasonic", kPanasonic, scaled, -130, 130},
          {"LG", kLg, scaled, -120, 49},
          {"JVC", kJvc, scaled, -69, 50},
          {"JVC without lead-in", kJvcRepeat, scaled, -69, 59},
          {"Sharp", kSharp, scaled, -80, 90},
          {"Denon", kDenon, scaled, -80, 90},
          {"Mitsubishi", kMitsubishi, scaled, -70, 70},
          {"Whynter", kWhynter, scaled, -70, 69},
          {"Dish", kDish, scaled, -69, 69},
          {"Sony", kSony, scaled, -80, 90},
          {"RC5", kRc5, scaled, -74, 54},
          {"RC6", kRc6, scaled, -69, 70},
          {"NEC repeat", kRepeat, scaled, -70, 100},
      },
      1);
}

TEST(Limits, OfTheBias) {
  expect_limits({
      {"NEC", kNec, biased, -170, 220},
      {"Sharp", kSharp, biased, -170, 220},
      {"Sony", kSony, biased, -170, 220},
      {"RC5", kRc5, biased, -170, 220},
      {"RC6", kRc6, biased, -170, 219},
  });
}

TEST(Limits, OfTheLeadIn) {
  expect_limits({
      {"NEC's mark", kNec, longer(0), -1970, 2920},
      {"NEC's mark at the cost of its space", kNec, later(0), -1970, 2920},
      {"NEC's space", kNec, longer(1), -535, 535},
      {"Sony's mark", kSony, longer(0), -650, 940},
      {"Whynter's second mark", kWhynter, longer(2), -1050, 1050},
      {"Whynter's second space", kWhynter, longer(3), -1050, 1050},
      {"RC6's mark", kRc6, longer(0), -700, 1023},
      {"RC6's space", kRc6, longer(1), -137, 140},
      {"RC5's first mark, a single half", kRc5, longer(0), -347, 486},
      {"the same at the cost of its space", kRc5, later(0), -347, 486},
      {"RC5's first mark, two halves", sent("RC5", {{"D", 0}, {"F", 64}, {"T", 0}}), longer(0),
       -402, 753},
      {"NEC repeat's mark", kRepeat, longer(0), -787, 1125},
      {"NEC repeat's mark at the cost of its space", kRepeat, later(0), -1970, 2250},
      {"NEC repeat's space", kRepeat, longer(1), -787, 1125},
  });
}

TEST(Limits, OfASymbol) {
  expect_limits({
      {"zero of a code of 16 bits", kJvc, longer(7), -162, 162},
      {"one of a code of 16 bits", kJvc, longer(3), -296, 296},
      {"mark of a code of 16 bits", kJvc, later(6), -280, 280},
      {"zero of a code of 32 bits", kNecFree, longer(3), -250, 250},
      {"zero of a proven code, the second one odd", with(with(kNec, 3, 760), 9, 760), longer(5),
       -158, 175},
      {"mark of Sharp", kSharp, later(6), -141, 141},
      {"zero of Sony", kSony, later(4), -116, 116},
      {"one of Sony", kSony, later(2), -189, 189},
      {"space of Sony", kSony, longer(5), -186, 186},
      {"space of RC5", kRc5, longer(7), -373, 373},
      {"space of RC6", kRc6, longer(11), -177, 177},
  });
}

TEST(Limits, OfTheLastMark) {
  const auto last = [](const Durations& frame) { return longer(frame.size() - 1); };
  expect_limits({
      {"NEC", kNecFree, last(kNecFree), -350, 448},
      {"NEC that its complement proves", kNec, last(kNec), -350, 1232},
      {"a zero of Sony", kSony, last(kSony), -106, 106},
      {"a one of Sony", sony(0xA91, 12), last(kSony), -172, 172},
      {"NEC repeat", kRepeat, last(kRepeat), -350, 448},
  });
}

TEST(Limits, OfTheSpaceThatEndsAFrame) {
  const struct {
    const char* what;
    Durations frame;
    int shortest;
  } cases[] = {
      {"NEC", kNec, 3380},
      {"JVC", kJvc, 3150},
      {"Sharp", kSharp, 3696},
      {"Sony", kSony, 1200},
      {"Mitsubishi", kMitsubishi, 4200},
      {"Whynter", kWhynter, 4500},
      {"Dish", kDish, 5680},
      {"RC5", kRc5, 3556},
      {"RC6", kRc6, 2664},
      {"NEC repeat", kRepeat, 4500},
  };
  for (const auto& [what, frame, shortest] : cases) {
    EXPECT_EQ(answer(followed_by(frame, shortest)), answer(frame)) << what;
    EXPECT_NE(answer(followed_by(frame, shortest - 1)), answer(frame)) << what;
  }
}

/// `parts` one after the other.
Durations joined(const std::vector<Durations>& parts) {
  Durations all;
  for (const Durations& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(Limits, OfStrayMarks) {
  const Durations before = joined({{100, 6000}, kJvc});
  const Durations after = joined({kJvc, {6000, 100}});
  constexpr int kNone = 20000;
  expect_limits({
      {"mark before", before, longer(0), -100, 100},
      {"gap before", before, longer(1), -1000, kNone},
      {"mark after", after, longer(36), -100, 100},
      {"gap after", after, longer(35), -1000, kNone},
  });
  EXPECT_EQ(answer(joined({{40, 5000}, kJvc, {5000, 40}})), answer(kJvc));
  EXPECT_EQ(answer(followed_by(after, 700)), answer(kJvc));
  EXPECT_EQ(type_of(joined({{40, 9000, 40, 9000}, kJvc})), "UNKNOWN");
  EXPECT_EQ(type_of(joined({{40, 9000}, cut(kJvc, 33)})), "UNKNOWN");
  for (const Durations& few : {Durations{40}, {40, 9000}, {40, 9000, 40}}) {
    EXPECT_EQ(type_of(few), "") << irp::csv(few);
  }
}

TEST(Limits, OfCopies) {
  const Durations twice = joined({kJvc, {10000}, kJvc});
  constexpr int kNone = 20000;
  expect_limits({
      {"gap", twice, longer(35), -5000, kNone},
      {"first mark of the second copy", twice, longer(36), -2107, 2312},
      {"a mark of the second copy", twice, longer(38), -195, 250},
      {"a one of the second copy", twice, longer(39), -426, 546},
  });
  const Durations three = joined({{60, 8000}, twice, {10000}, kJvc});
  for (size_t count = 38; count <= three.size(); ++count) {
    EXPECT_EQ(answer(cut(three, count)), answer(kJvc)) << count;
  }
  EXPECT_EQ(type_of(joined({kJvc, {10000}, kSamsung})), "UNKNOWN");
  EXPECT_EQ(type_of(joined({kJvc, {10000}, kSony})), "UNKNOWN");
}

// A message of other sections is no frame, and neither is a long one that was cut.
TEST(Limits, OfAWholeFrame) {
  const Durations message = frame_of(kNecCoding, 0x20DF10EF20DF10EF, 64);
  for (size_t count = 60; count < message.size(); ++count) {
    EXPECT_EQ(type_of(cut(message, count)), count == 67 ? "NEC" : "UNKNOWN") << count;
  }
}

Durations flipped(Durations frame, size_t symbol) {
  int& space = frame.at(3 + 2 * symbol);
  space = space == 560 ? 1690 : 560;
  return frame;
}

TEST(Limits, OfAComplement) {
  const Durations free_address = flipped(kNec, 3);
  for (size_t symbol = 16; symbol < 32; ++symbol) {
    const bool free_bit = symbol % 8 == 0 || symbol % 8 == 7;
    EXPECT_EQ(type_of(flipped(kNec, symbol)), free_bit ? "NEC" : "UNKNOWN") << symbol;
    EXPECT_EQ(type_of(flipped(free_address, symbol)), "NEC") << symbol;
    EXPECT_EQ(type_of(flipped(kSamsung, symbol)), "UNKNOWN") << symbol;
  }
  EXPECT_EQ(type_of(flipped(flipped(kNec, 18), 27)), "NEC");
  EXPECT_EQ(type_of(flipped(flipped(kSamsung, 18), 27)), "SAMSUNG");
}

// The last two bits tell Sharp from Denon, so more than half of the way from one to the other is no
// man's land.
TEST(Limits, OfTheBitsBetweenSharpAndDenon) {
  for (const size_t index : {size_t{27}, size_t{29}}) {
    int unknown = 0;
    for (int us = 792; us <= 1848; ++us) {
      const std::string type = type_of(with(kSharp, index, us));
      EXPECT_TRUE(type == "SHARP" || type == "DENON" || type == "UNKNOWN") << type;
      if (type == "UNKNOWN") ++unknown;
    }
    EXPECT_GT(unknown, (1848 - 792) / 2) << index;
  }
}

}  // namespace
