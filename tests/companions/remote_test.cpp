// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-remote from end to end: vantrel listens and sends for it, on a simulated device.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/companion_run.h"

namespace {

using nlohmann::json;

const std::vector<int> kNecRepeat{9024, 2256, 564};

std::vector<int> nec(int function) {
  return frame("NEC1", {{"D", 4}, {"F", function}});
}

std::vector<int> rc5(int toggle) {
  return frame("RC5", {{"D", 0}, {"F", 12}, {"T", toggle}});
}

/// A code of no protocol: marks of one length, spaces of three.
const std::vector<int> kUnknown{700, 2300, 700, 900, 700, 5100, 700, 900, 700, 2300, 700};

/// What the device hears at that time, so long after the signal before.
std::string heard_at(int ms, const std::vector<int>& durations, int quiet_ms = 1000) {
  std::string line = "at " + std::to_string(ms) + " signal elapsed=" + std::to_string(quiet_ms);
  for (const int us : durations) line += ' ' + std::to_string(us);
  return line + '\n';
}

class RemoteTest : public testing::Test {
 protected:
  RemoteTest() {
    std::string name = testing::TempDir() + "/remoteXXXXXX";
    folder_ = mkdtemp(name.data());
    file_ = folder_ / "tv.ir";
    trace_ = folder_ / "trace";
  }
  ~RemoteTest() override { std::filesystem::remove_all(folder_); }

  process_result remote(std::vector<std::string> arguments, const std::string& heard,
                        std::string_view typed = {}) {
    return run(VANTREL_REMOTE, std::move(arguments), typed,
               {std::string("LD_LIBRARY_PATH=") + FAKE_LIBRARY_DIR, "FAKE_USB=device\n" + heard,
                "FAKE_USB_TRACE=" + trace_.string()});
  }
  process_result learn(const std::string& heard, std::string_view typed) {
    return remote({"learn", file_}, heard, typed);
  }
  void write(std::string_view text) { std::ofstream(file_) << text; }
  std::string written() {
    std::ostringstream text;
    text << std::ifstream(file_).rdbuf();
    return text.str();
  }

  std::filesystem::path folder_, file_, trace_;
};

constexpr std::string_view kHead = "Filetype: IR signals file\nVersion: 1\n";
constexpr std::string_view kPower =
    "#\nname: Power\ntype: parsed\nprotocol: NEC\naddress: 04 00 00 00\ncommand: 08 00 00 00\n";

TEST_F(RemoteTest, LearnsAKeyWhenTwoPressesAgree) {
  const auto result = learn(heard_at(2000, nec(8)) + heard_at(2100, kNecRepeat, 40) +
                                heard_at(4000, nec(9)) + heard_at(6000, nec(8)),
                            "Power\n\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "Name of the key: Press \"Power\".\n"
            "  NEC D=4 F=8. Press it again.\n"
            "  NEC D=4 F=9, not the same. Press it again.\n"
            "  NEC D=4 F=8, written as NEC.\n"
            "Name of the key: 1 key in " +
                file_.string() + "\n");
  EXPECT_EQ(written(), std::string(kHead) + std::string(kPower));
}

TEST_F(RemoteTest, LearnsWhatHasNoNameByItsDurations) {
  const auto result = learn(heard_at(2000, kUnknown) + heard_at(3000, kUnknown), "Odd one\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(written(), std::string(kHead) +
                           "#\nname: Odd one\ntype: raw\nfrequency: 38000\nduty_cycle: 0.330000\n"
                           "data: 700 2300 700 900 700 5100 700 900 700 2300 700\n");
}

TEST_F(RemoteTest, KeepsWhatTheFileHolds) {
  const std::string before =
      std::string(kHead) + "# mine\n#\nname: Old\ntype: raw\nkind: odd\n# end\n";
  write(before + std::string(kPower));
  const std::string presses = heard_at(2000, nec(8)) + heard_at(3000, nec(8));

  const auto twice = learn(presses, "Power\nn\nOn\n");
  EXPECT_NE(twice.out.find("\"Power\" is there already. Learn it anew? [y/N] "), std::string::npos);
  EXPECT_NE(twice.out.find("Note: \"Power\" is the same signal."), std::string::npos) << twice.out;
  std::string on(kPower);
  on.replace(on.find("Power"), 5, "On");
  EXPECT_EQ(written(), before + std::string(kPower) + on);

  const auto anew = learn(heard_at(2000, nec(9)) + heard_at(3000, nec(9)), "Power\ny\n");
  EXPECT_EQ(anew.status, 0) << anew.err;
  std::string power(kPower);
  power.replace(power.find("08 00"), 2, "09");
  EXPECT_EQ(written(), before + power + on);
}

TEST_F(RemoteTest, SaysWhatItCouldNotLearn) {
  EXPECT_EQ(learn(heard_at(2000, nec(8)) + "at 3000 sigint\n", "Power\n").status, 1);
  EXPECT_FALSE(std::filesystem::exists(file_));
  write("9000,4500,560\n");
  const auto other = learn("", "Power\n");
  EXPECT_EQ(other.status, 1);
  EXPECT_EQ(other.err, "vantrel-remote: " + file_.string() +
                           ": no .ir remote file, its first line is no \"Filetype:\"\n");
  const std::string lost = folder_ / "none" / "tv.ir";
  EXPECT_EQ(remote({"learn", lost}, "", "Power\n").err,
            "vantrel-remote: " + lost + ": No such file or directory\n");
  EXPECT_EQ(remote({"learn", folder_}, "", "Power\n").err,
            "vantrel-remote: " + folder_.string() + ": Is a directory\n");
}

TEST_F(RemoteTest, WatchesForNothingWithoutKeys) {
  write(kHead);
  const auto result = remote({"watch", file_}, "");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "vantrel-remote: no keys to watch for\n");
}

TEST_F(RemoteTest, SendsKeysByName) {
  write(std::string(kHead) + std::string(kPower));
  const auto result = remote({"send", file_, "Power"}, "");
  EXPECT_EQ(result.status, 0) << result.err;
  std::string sent;
  for (size_t i = 0; const int us : nec(8)) {
    sent += (i++ % 2 == 0 ? '+' : '-') + std::to_string(us) + ' ';
  }
  EXPECT_NE(result.out.find(sent + '\n'), std::string::npos) << result.out;

  const auto none = remote({"send", file_, "Power", "Mute"}, "");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.err, "vantrel-remote: no key \"Mute\" in " + file_.string() + "\n");
}

TEST_F(RemoteTest, ListsWhatTheKeysAre) {
  write(
      std::string(kHead) + std::string(kPower) +
      "#\nname: Odd\ntype: raw\nfrequency: 38000\nduty_cycle: 0.33\ndata: 700 2300 700 900 700\n");
  const auto result = remote({"list", file_}, "");
  EXPECT_EQ(result.out, "Power: NEC D=4 F=8\nOdd: no known protocol, 5 durations\n");
}

/// The lines of `watch`, as "key event count".
std::string events_of(const std::string& lines) {
  std::istringstream text(lines);
  std::string line, events;
  while (std::getline(text, line) && line.starts_with('{')) {
    const json event = json::parse(line);
    EXPECT_EQ(event.at("time").get<std::string>().size(), sizeof "2026-01-31T18:04:05.120Z" - 1);
    events += event.at("key").get<std::string>() + ' ' + event.at("event").get<std::string>() +
              ' ' + std::to_string(event.at("count").get<int>()) + '\n';
  }
  return events;
}

TEST_F(RemoteTest, WatchTellsPressesFromHeldKeys) {
  write(std::string(kHead) + std::string(kPower) +
        "#\nname: Mute\ntype: parsed\nprotocol: RC5\naddress: 00 00 00 00\ncommand: 0C 00 00 00\n");
  const struct {
    const char* what;
    std::string heard, events;
  } cases[] = {
      {"a held key, then a key of another remote",
       heard_at(2000, nec(8)) + heard_at(2108, kNecRepeat, 40) + heard_at(4000, nec(9)),
       "Power pressed 1\nPower held 2\n"},
      {"a repeat frame alone is no press", heard_at(2000, kNecRepeat), ""},
      {"two presses with a pause", heard_at(2000, rc5(0)) + heard_at(3000, rc5(1)),
       "Mute pressed 1\nMute pressed 1\n"},
      {"a toggle tells a quick second press from a held key",
       heard_at(2000, rc5(0)) + heard_at(2114, rc5(0), 89) + heard_at(2228, rc5(1), 89),
       "Mute pressed 1\nMute held 2\nMute pressed 1\n"},
      {"unplugged in between",
       heard_at(2000, nec(8)) + "at 3000 unplug\nat 5000 plug\n" + heard_at(8000, nec(8)),
       "Power pressed 1\nPower pressed 1\n"},
  };
  for (const auto& one : cases) {
    const auto result = remote({"watch", file_}, one.heard + "at 20000 sigint\n");
    EXPECT_EQ(events_of(result.out), one.events) << one.what << '\n' << result.err;
    EXPECT_EQ(result.status, 1) << one.what;  // what listened has ended
  }
}

}  // namespace
