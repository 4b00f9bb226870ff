// SPDX-License-Identifier: GPL-3.0-or-later
// The fixture of tests that run on a simulated device.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "lib/liblog/logging.h"
#include "src/common.h"
#include "tests/support/capture.h"
#include "tests/support/command_run.h"
#include "tests/support/fake_usb.h"

/// The bytes " 00", so many times.
inline std::string zeros(int count) {
  return repeated(" 00", count);
}

class DeviceTest : public testing::Test {
 protected:
  void SetUp() override { fake_usb::reset(); }
  void TearDown() override {
    end();
    set_loglevel(1);
    fake_usb::reset();
  }

  /// A new bus with what the script says, and a session on it.
  void begin(const std::string& script) {
    end();
    fake_usb::reset();
    fake_usb::play(script);
    zarvo_init(&session);
  }

  void end() {
    zarvo_deinit(&session);
    EXPECT_EQ(fake_usb::open_devices(), 0);
  }

  /// What was written since the session began, but for its "usb_if". Every one of those asks for
  /// reports.
  static std::string commands() {
    const std::string wanted = "02 75 73 62 5f 69 66" + zeros(6) + " 01 00 00 00 01" + zeros(15);
    for (const std::string& report : fake_usb::writes()) {
      if (report.starts_with(wanted.substr(0, 20))) {
        EXPECT_EQ(report, wanted);
      }
    }
    const std::string all = fake_usb::commands();
    constexpr std::string_view kStart = "usb_if";
    return all.starts_with(kStart) ? all.substr(std::min(all.size(), kStart.size() + 1)) : all;
  }

  struct run_result {
    int status;
    std::string out;
    std::string err;  // without the line that tells the version found
  };

  /// Runs a command line on the session.
  run_result run(const std::string& line) {
    run_result result{};
    const printed text = capture([&] { result.status = run_command(line, &session); });
    result.out = text.out;
    std::istringstream lines(text.err);
    for (std::string message; std::getline(lines, message);) {
      if (!message.starts_with("[E] zv_version_compare(#): Zarvo tessarin found version: ")) {
        result.err += message + "\n";
      }
    }
    return result;
  }

  /// Runs a line on a new bus and compares all that comes of it; `sent` are the commands behind
  /// the version query.
  void expect_run(const std::string& script, const std::string& line, const run_result& expected,
                  const std::string& sent = {}) {
    SCOPED_TRACE(script + ": " + line);
    begin(script);
    const run_result result = run(line);
    EXPECT_EQ(result.status, expected.status);
    EXPECT_EQ(result.out, expected.out);
    EXPECT_EQ(result.err, expected.err);
    if (session.dev != nullptr) {
      EXPECT_EQ(commands(), "getversion" + sent);
    }
  }

  /// Of the last "irtranset", in hexadecimal: the count, the pause behind it, the repeats.
  static std::string last_header() {
    constexpr size_t kHeaderAt = 39;
    constexpr size_t kHeaderLength = 14;
    std::string header;
    for (const std::string& report : fake_usb::writes()) {
      if (!report.starts_with("06 69 72 74 72 61 6e 73 65 74")) continue;
      header = report.substr(kHeaderAt, kHeaderLength);
    }
    return header;
  }

  appdata_priv session{};
};
