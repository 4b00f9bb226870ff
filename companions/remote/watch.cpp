// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/watch.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>

#include "companions/formats/reader.h"
#include "companions/json_text.h"
#include "companions/remote/child.h"
#include "companions/remote/presses.h"
#include "companions/remote/stored_keys.h"

namespace companions {
namespace {

using std::chrono::milliseconds;

std::vector<known_key> known_keys(const std::vector<std::string>& files, bool& good) {
  std::vector<known_key> keys;
  for (const stored_key& key : read_keys(files, good)) {
    std::vector<identity> frames = identify(key.signal);
    for (identity& held : identify({.durations = key.signal.repeat})) {
      frames.push_back(std::move(held));
    }
    if (!frames.empty()) keys.push_back({key.remote, key.signal.name, std::move(frames)});
  }
  return keys;
}

/// Measures the silence before a signal where the text that tells of it does not say it.
class quiet_clock {
 public:
  int ms_before(const pattern& signal) {
    const auto now = std::chrono::steady_clock::now();
    const auto passed = std::chrono::duration_cast<milliseconds>(now - last_).count();
    last_ = now;
    if (signal.elapsed_ms) return *signal.elapsed_ms;
    int64_t own_us = 0;
    for (const int us : signal.durations) own_us += us;
    return static_cast<int>(std::clamp<int64_t>(passed - own_us / 1000, 0, INT_MAX));
  }

 private:
  std::chrono::steady_clock::time_point last_{};
};

void print(const press_event& event) {
  const nlohmann::ordered_json line{{"time", now_text()},
                                    {"remote", event.key->remote},
                                    {"key", event.key->name},
                                    {"event", event.count == 1 ? "pressed" : "held"},
                                    {"count", event.count}};
  // Names may hold bytes that are no text.
  std::cout << line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n'
            << std::flush;
}

}  // namespace

bool watch(const std::vector<std::string>& files, const transceiver& with) {
  bool good = true;
  std::vector<known_key> keys = known_keys(files, good);
  if (keys.empty()) {
    std::cerr << "vantrel-remote: no keys to watch for\n";
    return false;
  }
  press_tracker presses(std::move(keys));
  child listener(with.hear_command());
  pattern_reader reader(listener.output());
  quiet_clock clock;
  while (auto found = reader.next()) {
    const auto* const signal = std::get_if<pattern>(&found->what);
    if (signal == nullptr) continue;
    for (const press_event& event : presses.hear(*signal, clock.ms_before(*signal))) print(event);
    if (!std::cout) return false;
  }
  return listener.wait() == EXIT_SUCCESS && good;
}

}  // namespace companions
