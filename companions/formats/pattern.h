// SPDX-License-Identifier: GPL-3.0-or-later
// What the text forms of an infrared signal hold, whatever the form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace companions {

constexpr size_t kMostPatternDurations = 1'000'000;  // of one signal; more are a fault
constexpr int kUsualCarrierHz = 38000;               // for forms that need one where none is told

constexpr double kLeastDutyCycle = 0.01;

/// A signal by the name of its protocol, as .ir remote files hold it.
struct ir_code {
  std::string protocol;
  uint32_t address = 0, command = 0;
};

/// One signal. Durations are in µs, mark and space in turn, a mark first; where the last one is a
/// space, it is the silence behind the signal, and where it is a mark the text tells none.
struct pattern {
  std::string_view form = {};             // the name of the form it was read from
  std::string remote = {};                // what the remote is called, where the text says it
  std::string name = {};                  // and its key
  std::vector<int> durations = {};        // what is sent first
  std::vector<int> repeat = {};           // what is sent while the key is held, if it differs
  bool held = false;                      // the durations themselves are sent while the key is held
  std::optional<int> elapsed_ms = {};     // since the signal before
  std::optional<int> carrier_hz = {};     // 0: the light is not modulated; nothing: not told
  double period_us = 0;                   // of the carrier, where the text counts durations in it
  std::optional<ir_code> code = {};       // what the durations were rendered from
  std::optional<double> duty_cycle = {};  // the part of a carrier period with light
};

/// Why a text is no pattern; column counts characters from 1.
struct bad_line {
  size_t column;
  std::string what;
};

/// One pattern or fault of a text, with the number of the line where it begins, counted from 1.
struct read_result {
  size_t line;
  std::variant<pattern, bad_line> what;
};

/// The durations without the silence behind them.
inline std::vector<int> without_gap(std::vector<int> durations) {
  if (!durations.empty() && durations.size() % 2 == 0) durations.pop_back();
  return durations;
}

}  // namespace companions
