// SPDX-License-Identifier: GPL-3.0-or-later
// Signals on their way from every form to every other.
#include "companions/convert.h"

#include <gtest/gtest.h>

#include "tests/support/companion_run.h"
#include "tests/support/pattern_text.h"

namespace {

using namespace companions;

/// A frame, its silence, and the frame of a held key; with 1,200,000 µs the silence ends a stream.
pattern nec() {
  const auto parts = irp::protocol("NEC1").render({{"D", 4}, {"F", 8}}).parts;
  pattern sent{.name = "Power", .durations = parts[0].durations, .carrier_hz = 38000};
  sent.durations.insert(sent.durations.end(), parts[1].durations.begin(), parts[1].durations.end());
  return sent;
}

/// What a form makes of a signal, losses left aside.
std::string written(const form& to, const pattern& signal) {
  std::ostringstream losses;
  std::ostringstream text;
  const auto writer = to.writer();
  if (const auto fit = fitting(to, losses).fit(signal, "")) writer->write(text, *fit);
  writer->end(text);
  return text.str();
}

/// The only pattern of a text in this form.
pattern read_back(const form& from, const std::string& text) {
  std::istringstream stream(text);
  pattern_reader reader(stream);
  auto found = reader.next();
  EXPECT_TRUE(found && std::holds_alternative<pattern>(found->what)) << from.name << ": " << text;
  EXPECT_FALSE(reader.next()) << from.name << ": " << text;
  if (!found || !std::holds_alternative<pattern>(found->what)) return {};
  auto its = std::get<pattern>(std::move(found->what));
  // A list of ir-ctl without its comment is one of vantrel's.
  if (from.name != "ir-ctl") {
    EXPECT_EQ(its.form, from.name) << text;
  }
  return its;
}

/// How far a duration may move when a form holds it: half of its unit.
int resolution_us(const form& its) {
  return its.name == "pronto"                                     ? 14
         : its.name == "broadlink" || its.name == "broadlink-hex" ? 16
                                                                  : 0;
}

TEST(Forms, GiveEachOtherTheSameSignal) {
  const pattern sent = nec();
  for (const form* const first : forms()) {
    for (const form* const second : forms()) {
      SCOPED_TRACE(std::string(first->name) + " to " + std::string(second->name));
      const pattern there = read_back(*first, written(*first, sent));
      const pattern back = read_back(*second, written(*second, there));
      const bool gap = first->holds.gap && second->holds.gap;
      ASSERT_EQ(back.durations.size(), gap ? sent.durations.size() : sent.durations.size() - 1);
      const int moved = resolution_us(*first) + resolution_us(*second);
      for (size_t i = 0; i < back.durations.size(); ++i) {
        EXPECT_NEAR(back.durations[i], sent.durations[i], moved) << i;
      }
      if (first->holds.carrier && second->holds.carrier) {
        EXPECT_NEAR(back.carrier_hz.value_or(0), 38000, 100);
      }
      const bool named = first->holds.spell != nullptr && second->holds.spell != nullptr;
      if (named) {
        EXPECT_EQ(back.name, "Power");
      }
    }
  }
}

TEST(Forms, WriteNoNameThatCannotBeReadBack) {
  pattern sent = nec();
  sent.name = std::string(1000, 'x');
  for (const form* const one : forms()) {
    if (one->holds.spell == nullptr) continue;
    const std::string name = read_back(*one, written(*one, sent)).name;
    EXPECT_TRUE(name.size() >= 100 && sent.name.starts_with(name)) << one->name << ": " << name;
  }
}

TEST(Forms, KeepARepeatSequenceWhereBothHoldOne) {
  pattern sent = nec();
  sent.repeat = {9024, 2256, 564, 96156};
  for (const form* const one : forms()) {
    if (!one->holds.repeat) continue;
    EXPECT_EQ(read_back(*one, written(*one, sent)).repeat.size(), 4U) << one->name;
    std::swap(sent.durations, sent.repeat);
    sent.repeat.clear();
    sent.held = true;
    EXPECT_TRUE(read_back(*one, written(*one, sent)).held) << one->name;
    sent = nec();
    sent.repeat = {9024, 2256, 564, 96156};
  }
}

TEST(Fitting, SaysWhatIsLost) {
  std::ostringstream said;
  fitting comma(kCommaForm, said);
  pattern signal = nec();
  signal.remote = "TV";
  signal.repeat = {9024, 2256, 564};
  signal.duty_cycle = 0.33;
  EXPECT_TRUE(comma.fit(signal, "a:1"));
  EXPECT_TRUE(comma.fit(signal, "a:2"));
  EXPECT_FALSE(comma.fit({}, "a:3"));
  comma.report();
  fitting pronto(kProntoForm, said);
  EXPECT_EQ(pronto.fit({.durations = {500, 500, 500, 2'000'000}}, "b:1")->durations.back(),
            1'724'605);
  EXPECT_FALSE(pronto.fit({.durations = {500, 2'000'000, 500}}, "b:2"));
  EXPECT_FALSE(pronto.fit({.durations = std::vector<int>(131'071, 9)}, "b:3"));
  EXPECT_EQ(said.str(),
            "a:1: comma holds no name of a remote: \"TV\" is left out\n"
            "a:1: comma holds no names: \"Power\" is left out\n"
            "a:1: comma holds no carrier: 38000 Hz are left out\n"
            "a:1: comma holds no duty cycle: 0.330000 is left out\n"
            "a:1: comma holds no repeat sequence: 3 durations are left out\n"
            "a:3: a signal without durations\n"
            "comma holds no names: so for 1 more\n"
            "comma holds no name of a remote: so for 1 more\n"
            "comma holds no carrier: so for 1 more\n"
            "comma holds no duty cycle: so for 1 more\n"
            "comma holds no repeat sequence: so for 1 more\n"
            "b:1: pronto needs a carrier, and none is told: 38000 Hz are assumed\n"
            "b:1: pronto holds no silence that long: 2000000 us become 1724605\n"
            "b:2: pronto holds durations of up to 1724605 us, not 2000000 inside a signal; --split "
            "parts it there\n"
            "b:3: pronto holds signals of up to 131070 durations, not of 131071\n");
}

TEST(Split, CutsBehindEveryGap) {
  const auto parts = split_at_gaps({.name = "Power",
                                    .durations = {500, 14000, 500, 14001, 500, 20000, 500},
                                    .repeat = {1, 2, 3},
                                    .held = true});
  ASSERT_EQ(parts.size(), 3U);
  EXPECT_EQ(parts[0].durations, (std::vector{500, 14000, 500, 14001}));
  EXPECT_EQ(parts[1].durations, (std::vector{500, 20000}));
  EXPECT_EQ(parts[2].durations, (std::vector{500}));
  EXPECT_EQ(parts[1].name, "Power_2");
  EXPECT_EQ(parts[2].repeat.size(), 3U);
}

TEST(VantrelConvert, ConvertsAsItReads) {
  const auto result = run(VANTREL_CONVERT, {"--to", "mode2", "--split"},
                          "9000,4500,560,0,40,20000,500\nx\n+9000 -4500 +560 \n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "pulse 9000\nspace 4500\npulse 600\nspace 20000\n\npulse 500\n\n"
            "pulse 9000\nspace 4500\npulse 560\n\n");
  EXPECT_EQ(result.err, "-:2:1: no signal in a form that is known here\n");
  EXPECT_EQ(run(VANTREL_CONVERT, {"--to", "nonsense"}).status, 1);
  EXPECT_EQ(run(VANTREL_CONVERT, {"--from", "mode2"}, "1,2,3\n").err,
            "-:1:1: expected pulse, space, timeout or carrier\n");
  EXPECT_EQ(run(VANTREL_CONVERT, {}, "9000,\x1b[2J\n").err,
            "-:1:6: \"?[2J\" is no duration of 0 to 16777215\n");
}

}  // namespace
