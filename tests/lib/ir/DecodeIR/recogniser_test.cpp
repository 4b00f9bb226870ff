// SPDX-License-Identifier: GPL-3.0-or-later
// The table of recognisers, and single ones asked without a search.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/ir/DecodeIR/recognisers.h"
#include "tests/support/decode_ir_call.h"

namespace {

using analysis::burst_kind;
using analysis::kRecognisers;

std::vector<float> bursts_of(const char* protocol, const irp::Parameters& given) {
  std::vector<int> sent = decode_ir::frame(protocol, given);
  if (sent.size() % 2 == 1) sent.push_back(50000);
  return {sent.begin(), sent.end()};
}

TEST(Recognisers, StandInTheOrderOfTheirIndex) {
  for (size_t i = 0; i < kRecognisers.size(); ++i) {
    EXPECT_EQ(kRecognisers[i].index, static_cast<int>(i)) << kRecognisers[i].name;
  }
}

TEST(Recognisers, AnswerForAFrameAlone) {
  const std::vector<float> bursts = bursts_of("RC5", {{"D", 5}, {"F", 70}, {"T", 1}});
  const auto found = kRecognisers[11].ask(analysis::frame(bursts));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name.view(), "RC5");
  EXPECT_EQ(found->function, 70);
}

TEST(Recognisers, RefuseAFrameOutOfTheirBounds) {
  const std::vector<float> bursts = {500, 50000};
  for (const analysis::recogniser& row : kRecognisers) {
    EXPECT_FALSE(row.ask(analysis::frame(bursts))) << row.name;
  }
}

/// One letter for each burst of a frame and for `more` behind it.
std::string layout(int recogniser, const std::vector<float>& bursts) {
  const analysis::frame seen(bursts);
  const auto found = kRecognisers[static_cast<size_t>(recogniser)].ask(seen);
  if (!found) return "";
  std::string text;
  for (int i = 0; i < seen.length; ++i) {
    text += "LbGSd"[static_cast<size_t>(found->layout.kind(i, seen.length))];
  }
  return text;
}

TEST(Recognisers, TellWhatEachBurstIs) {
  EXPECT_EQ(layout(10, bursts_of("NEC1", {{"D", 4}, {"F", 8}})), "L" + std::string(32, 'b') + "S");
  EXPECT_EQ(layout(10, bursts_of("Proton", {{"D", 4}, {"F", 8}})), "LbbbbbbbbGbbbbbbbbS");
  EXPECT_EQ(layout(17, bursts_of("Sony8", {{"F", 81}})), "Lbbbbbbbb");
  EXPECT_EQ(layout(18, bursts_of("pid-0003", {{"F", 1}})), std::string(16, 'b'));
}

TEST(Texts, AreCutAtTheirEnd) {
  analysis::short_text<6> text("ab");
  text.print("%d", 1234567);
  EXPECT_EQ(text.view(), "ab1234");
  text.add("x");
  EXPECT_EQ(text.view(), "ab1234");
  char copy[8] = "zzzzzzz";
  text.copy_to(copy);
  EXPECT_STREQ(copy, "ab1234");
  text.clear();
  EXPECT_TRUE(text.empty());
}

}  // namespace
