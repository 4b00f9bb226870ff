// SPDX-License-Identifier: GPL-3.0-or-later
// One call of the signal-analysis decoder, as the tests of its recognisers make it.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lib/ir/DecodeIR/DecodeIR.h"
#include "tests/support/contract.h"

namespace decode_ir {

/// The carrier that the program assumes.
constexpr int kCarrier = 38380;

struct Result {
  std::string name, misc, error;
  int device = -1, subDevice = -1, obc = -1;
  std::array<int, 4> hex = {-1, -1, -1, -1};

  operator contract::Answer() const { return {name, device, subDevice, obc, hex[0]}; }
};

/// The first result for a signal of single and repeat part (counts in bursts). `context` holds the
/// resume state of successive calls.
inline Result call(std::vector<int> durations, int carrier, int singleCount, int repeatCount,
                   std::array<unsigned, 16>* context = nullptr) {
  std::array<unsigned, 16> fresh{};
  std::array<char, 256> protocol{};
  std::array<char, 256> misc{};
  std::array<char, 256> error{};
  Result result;
  _DecodeIR((context != nullptr ? *context : fresh).data(), durations.data(), carrier, singleCount,
            repeatCount, protocol.data(), &result.device, &result.subDevice, &result.obc,
            result.hex.data(), misc.data(), error.data());
  result.name = protocol.data();
  result.misc = misc.data();
  result.error = error.data();
  return result;
}

/// A single frame without final space, or a signal of frames with their gaps.
inline Result call(std::vector<int> durations, int carrier = kCarrier) {
  if (durations.size() % 2 == 1) durations.push_back(50);
  const int bursts = static_cast<int>(durations.size() / 2);
  return call(std::move(durations), carrier, bursts, 0);
}

/// A sample of the contract.
inline Result call(const contract::Sample& sample) {
  std::vector<int> durations = sample.durations;
  if (durations.size() % 2 == 1) durations.push_back(50);
  return call(std::move(durations), sample.carrier, sample.singleCount, sample.repeatCount);
}

/// "Gap-..." describes a frame, it does not name a protocol.
inline bool isNamed(const Result& result) {
  return !result.name.empty() && !result.name.starts_with("Gap-");
}

using contract::frame;

/// Several frames with their gaps: an even number of durations.
inline std::vector<int> signal(const char* protocol, const irp::Parameters& given, int repeats) {
  std::vector<int> sent = irp::protocol(protocol).render(given, repeats).whole();
  if (sent.size() % 2 == 1) sent.push_back(50000);
  return sent;
}

/// A frame of a definition that breaks a rule of its protocol, without its gap.
inline std::vector<int> broken(const char* definition) {
  std::vector<int> sent = irp::Protocol("broken", definition).render({}).whole();
  if (sent.size() % 2 == 0) sent.pop_back();
  return sent;
}

/// What a frame of a protocol is to be called.
struct NameCase {
  const char* protocol;
  irp::Parameters given;
  const char *name, *misc;  // the remark without its "no repeat"
  int device, subDevice, obc;
  std::optional<int> hex0 = {};
};

/// Expects it of `sent`, exactly and as a receiver delivers it.
inline void expectNamed(const NameCase& wanted, const std::vector<int>& sent) {
  Random random(1, wanted.protocol);
  const std::string remark = wanted.misc;
  for (const bool received : {false, true}) {
    const Result result = call(received ? receive(sent, random) : sent);
    EXPECT_EQ(result.name, wanted.name) << wanted.protocol;
    EXPECT_EQ(result.misc, remark.empty() ? "no repeat" : "no repeat: " + remark);
    EXPECT_EQ(result.device, wanted.device) << wanted.protocol;
    EXPECT_EQ(result.subDevice, wanted.subDevice) << wanted.protocol;
    EXPECT_EQ(result.obc, wanted.obc) << wanted.protocol;
    if (wanted.hex0) {
      EXPECT_EQ(result.hex[0], *wanted.hex0) << wanted.protocol;
    }
  }
}

inline void expectNamed(const NameCase& wanted) {
  expectNamed(wanted, frame(wanted.protocol, wanted.given));
}

inline void expectUnnamed(std::string_view what, const std::vector<int>& sent) {
  const Result result = call(sent);
  EXPECT_FALSE(isNamed(result)) << what << ": " << result.name;
}

}  // namespace decode_ir
