// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/irp.h"

namespace {

TEST(Irp, RendersTheNotation) {
  const struct {
    const char* what;
    const char* definition;
    irp::Parameters parameters;
    const char* durations;
  } kCases[] = {
      {"bits, least significant first, extent",
       "{38k,500}<1,-1|1,-3>(4,-2,D:2,1,^10m)[D:0..3]",
       {{"D", 1}},
       "2000,1000,500,1500,500,500,500,3500"},
      {"most significant first",
       "{38k,500,msb}<1,-1|1,-3>(D:2,1)[D:0..3]",
       {{"D", 1}},
       "500,500,500,1500,500"},
      {"neighbours merge, leading silence drops",
       "{36k,msb,889}<1,-1|-1,1>(D:3,-4)[D:0..7]",
       {{"D", 4}},
       "1778,889,889,4445"},
      {"two bits per symbol",
       "{0k,100,msb}<1,-1|1,-2|2,-1|2,-2>(D:4,1)[D:0..15]",
       {{"D", 6}},
       "100,200,200,100,100"},
      {"a symbol made of symbols",
       "{40k,520,msb}<1,-10|1,-1,1,-8>(<1:2|2:2>(F:2))[F:0..3]",
       {{"F", 1}},
       "520,5200,520,520,520,4160,520,520,520,4160,520,5200"},
      {"complement, reversal, chop",
       "{0k,1,msb}<1,-1|1,-3>(~D:2,D:-2,D:2:1,1)[D:0..7]",
       {{"D", 1}},
       "1,3,1,1,1,3,1,1,1,1,1,1,1"},
      {"suffixes and rounding", "{36k,1p}<1|-1>(1,-10.4u,2m,-1.5p)[]", {}, "28,10,2000,42"},
      {"presets and definitions",
       "{0k,1}<1,-1|1,-3>(S:2,C:1,1){C=#S%2}[D:0..3,S:0..3=3-D]",
       {{"D", 2}},
       "1,3,1,1,1,3,1"},
      {"passes, toggles, variations",
       "{0k,1}<1,-1|1,-3>(([5][7],-2,T:1,1,-9)+,T=1-T)[T@:0..1=0]",
       {},
       "5,2,1,1,1,9,7,2,1,1,1,9"},
  };
  for (const auto& test : kCases) {
    const irp::Protocol protocol(test.what, test.definition);
    EXPECT_EQ(irp::csv(protocol.render(test.parameters).whole()), test.durations) << test.what;
  }
}

TEST(Irp, RefusesWhatItCannotRender) {
  const irp::Protocol two_bits("two bits", "{38k,500}<1,-1|1,-3>(D:2,^9m)[D:0..3]");
  EXPECT_THROW(two_bits.render({}), irp::Error);
  EXPECT_THROW(two_bits.render({{"D", 4}}), irp::Error);
  EXPECT_THROW(two_bits.render({{"D", 0}, {"F", 0}}), irp::Error);
  EXPECT_THROW(irp::Protocol("longer than its extent", "{38k,500}<1|-1>(20,^9m)").render({}),
               irp::Error);
}

/// "3:17: what" for every fault of a text of definitions.
std::string faults(const std::string& text) {
  irp::Protocols protocols;
  std::istringstream in(text);
  std::string found;
  for (const auto& fault : protocols.add(in)) {
    found +=
        std::to_string(fault.line) + ":" + std::to_string(fault.column) + ": " + fault.what + "\n";
  }
  return found;
}

TEST(Irp, SaysWhereANotationIsWrong) {
  std::string many;
  for (int i = 0; i < 1000; ++i) many += "+1";
  const std::pair<std::string, const char*> kCases[] = {
      {"no tab", "1:1: expected a name, a tab and a definition\n"},
      {"a\t{38k,500}<1|-1>(20", "1:21: expected ')', found the end\n"},
      {"# good\na\t{38k}<1,-1|1,-3>(F:8,1)[F:0..]",
       "2:32: expected a name or a number, found ']'\n"},
      {"a\t{38k}<1,-1|1,-3>(~F,1)", "1:22: expected the width of a field\n"},
      {"a\t{38k}<1,-1|1,-3>(0:99999999999999999999)",
       "1:22: not a number of at most 63 bits: 99999999999999999999\n"},
      {"a\t{38k}(1)[F:2..1]", "1:17: a range that ends before it begins\n"},
      {"a\t{38k}" + std::string(100'000, '('), "1:16385: the line is too long\n"},
      {"a\t{38k}(1){A=" + std::string(1000, '#') + "1}", "1:54: nested too deep\n"},
      {"a\t{38k}(1){A=1" + many + "}", "1:1015: an expression that is too long\n"},
      {"a\t{38k}" + std::string(1000, '(') + std::string(1000, ')'), "1:48: nested too deep\n"},
      {"a\t{38k}(1){C=" + std::string(1000, '-') + "1}", "1:54: nested too deep\n"},
  };
  for (const auto& [text, expected] : kCases) {
    EXPECT_EQ(faults(text), expected) << text.substr(0, 80);
  }
}

TEST(Irp, EndsWhateverADefinitionAsksFor) {
  const char* const kEndless[] = {
      "{38k}((((1,-1)99999)99999)99999)",  // marks
      "{38k}(()999999999999)",             // nothing
      "{38k}(A,1){A=A+1}",                 // a name that needs itself
      ("{38k}(A,1){A=B+B+B+B+B+B+B+B,B=C+C+C+C+C+C+C+C,C=D+D+D+D+D+D+D+D,D=E+E+E+E+E+E+E+E,"
       "E=F+F+F+F+F+F+F+F,F=G+G+G+G+G+G+G+G,G=H+H+H+H+H+H+H+H,H=I+I+I+I+I+I+I+I,I=1}"),
      "{38k}((((((((1:1,1,-1)9)9)9)9)9)9)",
      "{38k}((2**99),1)",
      "{38k}(9999999999999,1)",
      "{38k}<1,-1|1,-3>(0:63)",
      "{38k}<1,-1|1,-3>(0:(0-1))",
      "{38k}<1,-1|1,-3>((1%0):8)",
      "{38k}<1,-1|1,-3|1,-5>(3:2)",
  };
  for (const char* definition : kEndless) {
    EXPECT_THROW(irp::Protocol("endless", definition).render({}), irp::Error) << definition;
  }
}

TEST(Irp, ALaterDefinitionTakesThePlaceOfAnEarlierOne) {
  irp::Protocols protocols;
  std::istringstream first("Two\t{0k,1}(2)\nOne\t{0k,1}(1)\n"), second("Two\t{0k,1}(22)\r\n");
  EXPECT_TRUE(protocols.add(first).empty());
  EXPECT_TRUE(protocols.add(second).empty());
  ASSERT_EQ(protocols.all().size(), 2U);
  EXPECT_EQ(protocols.find("two")->render({}).whole(), std::vector<int>{22});
  EXPECT_EQ(protocols.find("Three"), nullptr);
}

}  // namespace
