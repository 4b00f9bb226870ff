// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/protocol.h"

#include <memory>

#include "lib/irp/player.h"

namespace irp {
namespace {

constexpr int kDeepest = 40;           // names that stand for names
constexpr int kMostLookups = 300'000;  // of one signal, so that any definition ends

/// Looks names up; definitions may use others, but not for ever.
class Names {
 public:
  Names(const Definition& definition, const Parameters& given)
      : definition_(definition), given_(given) {}

  int64_t value(std::string_view name) {
    if (++lookups_ > kMostLookups) throw Error("a definition that takes too long");
    if (const auto found = given_.find(name); found != given_.end()) return found->second;
    for (const Parameter& parameter : definition_.parameters) {
      if (parameter.name == name && parameter.preset) return computed(*parameter.preset);
    }
    const auto found = definition_.names.find(name);
    return found == definition_.names.end() ? constant(name) : computed(*found->second);
  }

 private:
  int64_t computed(const Expression& expression) {
    if (depth_ == kDeepest) throw Error("a definition that needs itself");
    ++depth_;
    const int64_t result =
        evaluate(expression, [this](std::string_view name) { return value(name); });
    --depth_;
    return result;
  }

  const Definition& definition_;
  const Parameters& given_;
  int depth_ = 0;
  int lookups_ = 0;
};

std::vector<int> rounded(const SignedDurations& durations) {
  std::vector<int> result;
  result.reserve(durations.size());
  for (const Rational& length : durations) result.push_back(irp::rounded(length));
  return result;
}

std::string range(const Parameter& parameter) {
  return std::to_string(parameter.low) + ".." + std::to_string(parameter.high);
}

}  // namespace

Lookup Protocol::lookup(const Parameters& given) const {
  const auto names = std::make_shared<Names>(definition_, given);
  return [names](std::string_view name) { return names->value(name); };
}

Parameters Protocol::complete(const Parameters& given) const {
  const Lookup get = lookup(given);
  Parameters full;
  for (const Parameter& parameter : parameters()) {
    if (!parameter.preset && !given.contains(parameter.name)) {
      throw Error(name_ + " needs " + parameter.name + " (" + range(parameter) + ")");
    }
    const int64_t value = get(parameter.name);
    if (value < parameter.low || value > parameter.high) {
      throw Error(name_ + ": " + parameter.name + "=" + std::to_string(value) + " is not in " +
                  range(parameter));
    }
    full[parameter.name] = value;
  }
  for (const auto& [name, value] : given) {
    if (!full.contains(name)) throw Error(name_ + " has no parameter " + name);
  }
  return full;
}

Rendering Protocol::render(const Parameters& given, int repeats) const {
  const Player player(*this, complete(given), repeats);
  Rendering result;
  SignedDurations joined;
  for (const auto& [kind, durations] : player.segments()) {
    if (durations.empty()) continue;
    result.parts.push_back({kind, rounded(durations)});
    for (const Rational& length : durations) append(joined, length);
  }
  result.joined = rounded(joined);
  return result;
}

}  // namespace irp
