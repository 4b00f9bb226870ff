// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/learn.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <vector>

#include "companions/formats/reader.h"
#include "companions/remote/child.h"
#include "companions/remote/ir_codes.h"
#include "companions/remote/presses.h"
#include "companions/remote/remote_file.h"

namespace companions {
namespace {

constexpr int kMostPresses = 8;
constexpr size_t kMostRawDurations = 1024;  // as other readers of .ir files take them

/// The answer to a question; nothing at the end of the input.
std::optional<std::string> ask(const std::string& question) {
  std::cout << question << std::flush;
  std::string answer;
  if (std::getline(std::cin, answer)) return answer;
  std::cout << '\n';
  return std::nullopt;
}

/// What the presses of one key were.
struct heard_press {
  pattern signal;
  identity first;  // its first frame
};

/// One key being learnt.
class lesson {
 public:
  explicit lesson(const transceiver& with)
      : listener_(with.hear_command()), reader_(listener_.output()) {}

  /// The first press that agrees with one before; nothing when there is none.
  std::optional<heard_press> agreed_press() {
    std::vector<heard_press> presses;
    while (presses.size() < kMostPresses) {
      auto press = next_press();
      if (!press) {
        const int status = listener_.wait();
        std::fprintf(stderr, "vantrel-remote: no more signals come, status %d\n", status);
        return std::nullopt;
      }
      for (const heard_press& before : presses) {
        if (same(before.first, press->first)) return press;
      }
      std::cout << "  " << press->first.text()
                << (presses.empty() ? ". Press it again.\n" : ", not the same. Press it again.\n")
                << std::flush;
      presses.push_back(std::move(*press));
    }
    std::cout << "  No two of " << kMostPresses << " presses agree.\n";
    return std::nullopt;
  }

 private:
  /// Passes over what a held key sends; nothing when nothing more comes.
  std::optional<heard_press> next_press() {
    while (auto found = reader_.next()) {
      auto* const signal = std::get_if<pattern>(&found->what);
      if (signal == nullptr) continue;
      const bool held = heard_one_ && signal->elapsed_ms && *signal->elapsed_ms <= kPressGapMs;
      heard_one_ = true;
      if (held || signal->durations.size() > kMostRawDurations) continue;
      std::vector<identity> frames = identify(*signal);
      if (frames.empty()) continue;
      return heard_press{std::move(*signal), std::move(frames.front())};
    }
    return std::nullopt;
  }

  child listener_;
  pattern_reader reader_;
  bool heard_one_ = false;
};

/// The keys that a file holds already; what cannot be read of it is left to those who use it.
std::vector<known_key> keys_of(const std::string& path) {
  std::vector<known_key> keys;
  std::ifstream file(path);
  pattern_reader reader(file);
  while (auto found = reader.next()) {
    if (const auto* const signal = std::get_if<pattern>(&found->what)) {
      std::vector<identity> frames = identify(*signal);
      if (!frames.empty()) keys.push_back({path, signal->name, std::move(frames)});
    }
  }
  return keys;
}

void warn_of_duplicates(const std::string& path, const std::string& name, const identity& first) {
  for (const known_key& key : keys_of(path)) {
    if (key.name == name || !same(key.frames.front(), first)) continue;
    std::cout << "  Note: \"" << key.name << "\" is the same signal.\n";
  }
}

bool may_replace(const remote_file& file, const std::string& name) {
  if (!file.has(name)) return true;
  const auto answer = ask("  \"" + name + "\" is there already. Learn it anew? [y/N] ");
  return answer && (answer->starts_with('y') || answer->starts_with('Y'));
}

/// False when no press of the key could be learnt.
bool learn_key(remote_file& file, const std::string& name, const transceiver& with) {
  std::cout << "Press \"" << name << "\".\n" << std::flush;
  const auto press = lesson(with).agreed_press();
  if (!press) return false;
  warn_of_duplicates(file.path(), name, press->first);
  const pattern key{.name = name,
                    .durations = without_gap(press->signal.durations),
                    .code = certain_code(press->first)};
  file.put(key);
  file.save();
  std::cout << "  " << press->first.text() << ", written as "
            << (key.code ? key.code->protocol : "raw") << ".\n";
  return true;
}

}  // namespace

bool learn(const std::string& path, const transceiver& with) {
  remote_file file(path);
  bool good = true;
  while (const auto name = ask("Name of the key: ")) {
    if (name->empty()) break;
    if (may_replace(file, *name)) good = learn_key(file, *name, with) && good;
  }
  std::cout << file.keys() << (file.keys() == 1 ? " key in " : " keys in ") << path << '\n';
  return good;
}

}  // namespace companions
