// SPDX-License-Identifier: GPL-3.0-or-later
// One call of the signal-analysis decoder, as the tests of its recognisers make it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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
/// resume state of successive calls, `level` is that of the interface.
inline Result call(std::vector<int> durations, int carrier, int singleCount, int repeatCount,
                   std::array<unsigned, 16>* context = nullptr, int level = 1) {
  std::array<unsigned, 16> fresh{};
  std::array<char, 256> protocol{};
  std::array<char, 256> misc{};
  std::array<char, 256> error{};
  Result result;
  result.subDevice = -level;
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

/// The successive results for a signal of frames with their gaps. Between the calls it puts back
/// what DecodeIR.h asks for.
class Press {
 public:
  /// The last `repeatCount` bursts are the repeat part; `cycles` counts the carrier's for each
  /// burst. REQUIRES: an even number of durations.
  explicit Press(std::vector<int> durations, int level = 1, int repeatCount = 0,
                 std::vector<uint32_t> cycles = {})
      : durations_(std::move(durations)),
        level_(level),
        repeatCount_(repeatCount),
        cycles_(std::move(cycles)) {}

  Result next() {
    if (level_ > 2) context_[0] = (context_[0] & kStart) | (context_[2] & ~kStart);
    const uint32_t* const table = cycles_.empty() ? nullptr : cycles_.data();
    if (level_ >= 8) std::memcpy(&context_[6], &table, sizeof table);
    const int bursts = static_cast<int>(durations_.size() / 2);
    return call(durations_, kCarrier, bursts - repeatCount_, repeatCount_, &context_, level_);
  }

  /// Where the last call stopped: it grows from call to call, so that they end.
  [[nodiscard]] std::array<unsigned, 3> place() const {
    return {context_[0] & kStart, context_[1] >> 16, context_[1] & 0xFF};
  }
  [[nodiscard]] const std::array<unsigned, 16>& context() const { return context_; }

 private:
  static constexpr unsigned kStart = 0xFFFFF;
  std::vector<int> durations_;
  int level_, repeatCount_;
  std::vector<uint32_t> cycles_;
  std::array<unsigned, 16> context_{};
};

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
inline std::vector<int> broken(const std::string& definition) {
  std::vector<int> sent = irp::Protocol("broken", definition).render({}).whole();
  if (sent.size() % 2 == 0) sent.pop_back();
  return sent;
}

/// A result as one text, without the numbers that are -1: "XMP D1 S255 F18 H18 [no repeat]".
inline std::string text(const Result& result) {
  std::string found = result.name;
  const std::pair<const char*, int> numbers[] = {
      {" D", result.device}, {" S", result.subDevice}, {" F", result.obc}, {" H", result.hex[0]}};
  for (const auto& [letter, number] : numbers) {
    if (number != -1) found += letter + std::to_string(number);
  }
  return found + " [" + result.misc + ']';
}

/// Expects this text of a frame, exactly and as a receiver delivers it.
inline void expectText(const std::string& wanted, const std::vector<int>& sent) {
  Random random(1, wanted);
  EXPECT_EQ(text(call(sent)), wanted) << irp::csv(sent);
  const std::vector<int> received = receive(sent, random);
  EXPECT_EQ(text(call(received)), wanted) << irp::csv(received);
}

/// A protocol whose frame gives this text.
struct NameCase {
  const char* protocol;
  irp::Parameters given;
  const char* wanted;
  bool gapsInside = false;  // the frame is the whole signal
};

inline void expectTexts(std::initializer_list<NameCase> cases) {
  for (const NameCase& c : cases) {
    SCOPED_TRACE(c.protocol);
    expectText(c.wanted,
               c.gapsInside ? signal(c.protocol, c.given, 1) : frame(c.protocol, c.given));
  }
}

inline void expectUnnamed(std::string_view what, const std::vector<int>& sent) {
  const Result result = call(sent);
  EXPECT_FALSE(isNamed(result)) << what << ": " << result.name;
}

/// Frames that break a rule of their protocol: what is wrong, and their definition.
inline void expectUnnamed(
    std::initializer_list<std::pair<std::string_view, std::string>> brokenFrames) {
  for (const auto& [what, definition] : brokenFrames) {
    expectUnnamed(what, broken(definition));
  }
}

/// A frame, and the relatives whose whole frame a piece of it is.
struct CutCase {
  const char* protocol;
  irp::Parameters given;
  std::vector<std::string_view> relatives = {};

  void expectUnnamed(const char* which, const std::vector<int>& piece) const {
    const Result result = call(piece);
    EXPECT_TRUE(!isNamed(result) || std::ranges::count(relatives, result.name) != 0)
        << protocol << ", " << which << " of " << piece.size() << " durations: " << result.name;
  }
};

constexpr std::ptrdiff_t kShortestPiece = 5;  // durations

/// No beginning of such a frame may have a name, but those of relatives.
inline void expectBeginningsUnnamed(std::initializer_list<CutCase> cases) {
  for (const CutCase& c : cases) {
    const std::vector<int> whole = frame(c.protocol, c.given);
    EXPECT_TRUE(isNamed(call(whole))) << c.protocol;
    for (auto end = whole.begin() + kShortestPiece; end != whole.end(); ++end) {
      c.expectUnnamed("beginning", {whole.begin(), end});
    }
  }
}

/// Nor may any end of it that begins with a mark.
inline void expectPiecesUnnamed(std::initializer_list<CutCase> cases) {
  expectBeginningsUnnamed(cases);
  for (const CutCase& c : cases) {
    const std::vector<int> whole = frame(c.protocol, c.given);
    for (std::ptrdiff_t i = 2; i + kShortestPiece <= std::ssize(whole); i += 2) {
      c.expectUnnamed("end", {whole.begin() + i, whole.end()});
    }
  }
}

}  // namespace decode_ir
