// SPDX-License-Identifier: GPL-3.0-or-later
// What decode prints. Only the lines of the program's own decoders are kept; the other families
// have tests of their own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <string_view>

#include "lib/ir/analyzer.h"
#include "lib/liblog/logging.h"
#include "src/appdata.h"
#include "src/common.h"
#include "tests/support/capture.h"
#include "tests/support/command_run.h"
#include "tests/support/results.h"

/// What a piece of code prints, without the lines of the other families.
template <class Code>
printed own_output(Code code) {
  static const std::regex other_families("(^|\n):: (DECODEIR|ARDUINO) [^\n]*(?=\n)");
  printed result = capture(code);
  result.out = std::regex_replace(result.out, other_families, "");
  return result;
}

/// The block of a pattern: signed list, what the decoder says (twice), Pronto.
inline std::string block(const std::string& raw, const std::string& line,
                         const std::string& pronto) {
  return raw + "\n" + line + pronto + "\n" + line + "++++\n\n";
}

/// How often a text holds another.
inline size_t occurrences(const std::string& text, std::string_view part) {
  size_t found = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++found;
  return found;
}

/// Starts with analyzers that remember nothing, and shows warnings.
class DecodeTest : public testing::Test {
 protected:
  void SetUp() override {
    reset_analyzer();
    reset_analyzer();
    set_loglevel(2);
    set_elapsed_flag(0);
  }

  void TearDown() override {
    set_loglevel(1);
    set_elapsed_flag(0);
    std::filesystem::remove(path_);
  }

  /// What `decode` with one option prints; expects it to end with `result`.
  static printed decode(const std::string& option, int result = 0) {
    const char* argv[] = {option.c_str()};
    return own_output([&] {
      EXPECT_EQ(run_command("decode", option.empty() ? 0 : 1, argv, &apppriv), result) << option;
    });
  }

  /// What it prints of a file.
  std::string read(const std::string& text) {
    std::ofstream(path_, std::ios::binary) << text;
    return decode("--read=" + path_.string()).out;
  }

  /// The file that read() writes.
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  const std::filesystem::path path_ =
      std::filesystem::temp_directory_path() / ("vantrel-decode-" + std::to_string(getpid()));
};
