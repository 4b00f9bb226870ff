// SPDX-License-Identifier: GPL-3.0-or-later
// What the signal-analysis decoder must answer to a signal, and signals to ask it about. The cases
// are lines of tests/data/expected.tsv, which explains its columns.
//
//   for (const contract::Sample& sample : contract::samples("NEC1", 7)) {
//     const contract::Answer answer = decode(sample.durations, sample.carrier, …);
//     EXPECT_EQ(contract::mismatch(sample.expected, answer), "") << contract::describe(sample);
//   }
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/irp.h"
#include "tests/support/receiver.h"

namespace contract {

/// Spaces beyond this (µs) end a signal at the receiver.
constexpr int kGapUs = 14000;
/// Durations of one frame that a text pattern can hold.
constexpr size_t kLongestText = 100;

/// An answer that is right. Numbers hold the alternatives; empty: not asked.
struct Expected {
  std::string name;  // an extended regular expression for the whole name
  std::vector<int64_t> device, subDevice, obc;
  std::optional<int64_t> hex0;  // goes with the first alternative of obc
};

/// An answer that a decoder gave: name empty for none, numbers -1 where there is none.
struct Answer {
  std::string name;
  int64_t device = -1, subDevice = -1, obc = -1;
  std::optional<int64_t> hex0 = {};  // left out: not compared
};

enum class Set {
  kClean,     // one frame exactly as defined
  kReceived,  // one frame through the receiver, spaces at most kGapUs
  kRepeats,   // several frames with their gaps, half of them through the receiver
  kLong,      // either, with more than kLongestText durations: not for text patterns
};

/// A signal and what must be answered to it.
struct Sample {
  Set set;
  const irp::Protocol* protocol;
  irp::Parameters parameters;  // complete
  Expected expected;
  int carrier;                   // Hz; 0: not modulated
  int singleCount, repeatCount;  // bursts (pairs of durations) of the two parts
  std::vector<int> durations;    // µs, mark first; a single frame has no final space
};

/// How many samples of a protocol (and frame) to make.
struct Counts {
  size_t clean = 5, received = 8, repeated = 4;
};

/// The protocols that answers are asked for, in the order of the table; or those of one recogniser
/// (by its member function, such as "tryGap").
std::vector<std::string> protocols(std::string_view member = {});

/// The answer to a signal of these parameters (which must be complete); frame is "1" or "2" for a
/// single frame, `whole` asks for a signal of several frames (then frame is "1" or "all"). Nothing
/// where the table asks for nothing.
std::optional<Expected> expected(const irp::Protocol& protocol, const irp::Parameters& parameters,
                                 std::string_view frame, bool whole);

/// A frame as a receiver delivers it: from mark to mark, cut at the first gap. frame is "1" or "2".
std::vector<int> single_frame(const irp::Protocol& protocol, const irp::Parameters& parameters,
                              std::string_view frame = "1");

/// The first frame of a protocol of lib/irp/protocols.irp; fields that are not given are preset.
std::vector<int> frame(std::string_view protocol, const irp::Parameters& given);

/// Samples of one protocol: all fields zero, all at their top, alternating bits, then random ones.
/// The same seed gives the same samples.
std::vector<Sample> samples(std::string_view protocol, uint64_t seed, const Counts& counts = {},
                            const Receiver& receiver = {});

/// A line of tests/data/frames.tsv.
struct Frame {
  std::string what, definition, answer;
};
std::vector<Frame> frames();

/// What is wrong with an answer, in words; empty when it is right.
std::string mismatch(const Expected& expected, const Answer& answer);

/// The protocol, its parameters and the durations, for a test's message.
std::string describe(const Sample& sample);

}  // namespace contract
