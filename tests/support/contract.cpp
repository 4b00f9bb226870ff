// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/contract.h"

#include <regex.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace contract {
namespace {

constexpr size_t kMostDurations = 200;  // of the bursts that the decoder looks at
constexpr int kMostTries = 400;         // parameter sets drawn before giving up
constexpr int kFinalGapUs = 50000;      // after a signal that ends with a mark
constexpr std::string_view kWholeOnly = "all";

struct Case {
  std::string protocol, frame, when, member, name, repeats, device, subDevice, obc, hex0, note;
};

/// Fills one row per line of a table, the members in the order of its columns.
template <typename Row, typename... Members>
std::vector<Row> load(const char* path, Members... members) {
  std::vector<Row> found;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    std::istringstream in(line);
    Row row;
    (std::getline(in, row.*members, '\t'), ...);
    found.push_back(std::move(row));
  }
  return found;
}

const std::vector<Case>& cases() {
  static const auto table =
      load<Case>(TEST_DATA "/expected.tsv", &Case::protocol, &Case::frame, &Case::when,
                 &Case::member, &Case::name, &Case::repeats, &Case::device, &Case::subDevice,
                 &Case::obc, &Case::hex0, &Case::note);
  return table;
}

int64_t evaluate(const std::string& text, const irp::Lookup& get) {
  return irp::evaluate(*irp::parse_expression(text), get);
}

/// "F>>8;F" -> both values
std::vector<int64_t> alternatives(const std::string& text, const irp::Lookup& get) {
  std::vector<int64_t> values;
  std::istringstream in(text);
  for (std::string one; std::getline(in, one, ';');) {
    if (one == "*") return {};
    values.push_back(evaluate(one, get));
  }
  return values;
}

/// Puts the values of fields in the place of <FIELD>.
std::string filled(std::string pattern, const irp::Lookup& get) {
  for (size_t open = pattern.find('<'); open != std::string::npos; open = pattern.find('<', open)) {
    const size_t close = pattern.find('>', open);
    const std::string field = pattern.substr(open + 1, close - open - 1);
    pattern.replace(open, close - open + 1, std::to_string(get(field)));
  }
  return pattern;
}

/// Splits at the gaps; every piece begins and ends with a mark.
std::vector<std::vector<int>> cut(const std::vector<int>& durations) {
  std::vector<std::vector<int>> pieces;
  size_t start = 0;
  const auto take = [&](size_t end) {
    pieces.emplace_back(durations.begin() + static_cast<std::ptrdiff_t>(start),
                        durations.begin() + static_cast<std::ptrdiff_t>(end));
    start = end + 1;
  };
  for (size_t i = 1; i < durations.size(); i += 2) {
    if (durations[i] > kGapUs || i + 1 == durations.size()) take(i);
  }
  if (start < durations.size()) take(durations.size());
  return pieces;
}

/// Several frames with their gaps, as one part or as a single and a repeated part.
void add_signal(Sample& sample, bool split) {
  const irp::Rendering rendering =
      sample.protocol->render(sample.parameters, sample.protocol->name() == "F12-1" ? 1 : 2);
  const auto& parts = rendering.parts;
  const auto repeat = std::ranges::find(parts, irp::Segment::kRepeat, &irp::Rendering::Part::kind);
  const bool pairs =
      std::ranges::all_of(parts, [](const auto& part) { return part.durations.size() % 2 == 0; });
  if (split && pairs && repeat != parts.end()) {
    if (parts[0].kind == irp::Segment::kIntro) sample.durations = parts[0].durations;
    sample.singleCount = static_cast<int>(sample.durations.size() / 2);
    sample.repeatCount = static_cast<int>(repeat->durations.size() / 2);
    sample.durations.insert(sample.durations.end(), repeat->durations.begin(),
                            repeat->durations.end());
    return;
  }
  sample.durations = rendering.whole();
  if (sample.durations.size() % 2 != 0) sample.durations.push_back(kFinalGapUs);
  sample.singleCount = static_cast<int>(sample.durations.size() / 2);
}

/// Zero, top and alternating values by number; beyond those, random ones.
irp::Parameters parameter_set(const irp::Protocol& protocol, Random& random, int number) {
  constexpr uint64_t kPicks[] = {0, UINT64_MAX, 0x5555555555555555, 0xAAAAAAAAAAAAAAAA};
  constexpr int kKeepPresetOneIn = 4;
  irp::Parameters given;
  const bool edge = number < static_cast<int>(std::size(kPicks));
  for (const irp::Parameter& parameter : protocol.parameters()) {
    if (edge && !parameter.preset) {
      const auto value =
          static_cast<int64_t>(kPicks[number] & static_cast<uint64_t>(parameter.high));
      given[parameter.name] = std::clamp(value, parameter.low, parameter.high);
    } else if (!edge && (!parameter.preset || random.between(1, kKeepPresetOneIn) > 1)) {
      given[parameter.name] = random.between(parameter.low, parameter.high);
    }
  }
  return given;
}

/// Lutron sends plain levels; a real code has no long run of equal bits.
bool usable(const irp::Protocol& protocol, const irp::Parameters& parameters) {
  if (protocol.name() != "Lutron") return true;
  constexpr int kBits = 24, kLongestRun = 4;
  const int64_t code = parameters.at("X");
  for (int i = 1, run = 1; i < kBits; ++i) {
    run = (code >> i & 1) == (code >> (i - 1) & 1) ? run + 1 : 1;
    if (run > kLongestRun) return false;
  }
  return true;
}

/// Up to `count` different samples, not yet with durations.
std::vector<Sample> draw(const irp::Protocol& protocol, Random& random, const std::string& frame,
                         bool whole, size_t count) {
  std::vector<Sample> found;
  for (int number = 0; found.size() < count && number <= kMostTries; ++number) {
    irp::Parameters parameters;
    try {
      parameters = protocol.complete(parameter_set(protocol, random, number));
    } catch (const irp::Error&) {
      continue;  // a preset that follows another field left its range
    }
    const auto wanted = expected(protocol, parameters, frame, whole);
    if (!wanted || !usable(protocol, parameters) ||
        std::ranges::count(found, parameters, &Sample::parameters) != 0) {
      continue;
    }
    found.push_back({whole ? Set::kRepeats : Set::kClean,
                     &protocol,
                     std::move(parameters),
                     *wanted,
                     protocol.carrier(),
                     0,
                     0,
                     {}});
  }
  return found;
}

void add_frames(std::vector<Sample>& samples, const Case& row, Random& random, const Counts& counts,
                const Receiver& receiver) {
  constexpr size_t kTwice = 2;  // the first two sets come clean and through the receiver
  const irp::Protocol& protocol = irp::protocol(row.protocol);
  const size_t total = counts.clean + counts.received;
  std::vector<Sample> made =
      draw(protocol, random, row.frame, false, std::max(total, kTwice) - kTwice);
  if (made.empty()) return;
  const size_t clean = std::min(counts.clean, made.size());
  for (size_t i = 0; i < clean + counts.received; ++i) {
    const size_t from = i < clean ? i : i < clean + kTwice ? i - clean : i - kTwice;
    Sample sample = made[from % made.size()];
    sample.durations = single_frame(protocol, sample.parameters, row.frame);
    if (i >= clean) {
      sample.set = Set::kReceived;
      sample.durations = receive(sample.durations, random, receiver, protocol.carrier() > 0);
      for (int& length : sample.durations) length = std::min(length, kGapUs);
    }
    if (sample.durations.size() >= kMostDurations) continue;
    if (sample.durations.size() > kLongestText) sample.set = Set::kLong;
    sample.singleCount = static_cast<int>((sample.durations.size() + 1) / 2);
    samples.push_back(std::move(sample));
  }
}

void add_signals(std::vector<Sample>& samples, const Case& row, Random& random,
                 const Counts& counts, const Receiver& receiver) {
  const irp::Protocol& protocol = irp::protocol(row.protocol);
  std::vector<Sample> made = draw(protocol, random, row.frame, true, counts.repeated);
  for (size_t number = 0; number < made.size(); ++number) {
    Sample& sample = made[number];
    add_signal(sample, number % 2 == 1);
    const bool longer = std::ranges::any_of(
        cut(sample.durations), [](const auto& piece) { return piece.size() > kLongestText; });
    if (longer && row.note != "long") continue;
    if (row.note == "long") sample.set = Set::kLong;
    if (number >= counts.repeated / 2) {
      sample.durations = receive(sample.durations, random, receiver, protocol.carrier() > 0);
    }
    samples.push_back(std::move(sample));
  }
}

/// Whether the pattern matches the whole text. POSIX, as g++ 12 warns about its own std::regex when
/// that is built with sanitizers.
bool matches(const std::string& pattern, const std::string& text) {
  regex_t compiled;
  if (regcomp(&compiled, ("^(" + pattern + ")$").c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
    throw irp::Error("no regular expression: " + pattern);
  }
  const bool found = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
  regfree(&compiled);
  return found;
}

/// Answers are 32 bits wide, so a number beyond their sign comes back negative.
bool among(const std::vector<int64_t>& wanted, int64_t value) {
  const auto same = [&](int64_t one) {
    return static_cast<uint32_t>(one) == static_cast<uint32_t>(value);
  };
  return wanted.empty() || std::ranges::any_of(wanted, same);
}

std::string listed(const std::vector<int64_t>& values) {
  std::string text;
  for (const int64_t value : values) text += (text.empty() ? "" : " or ") + std::to_string(value);
  return text;
}

}  // namespace

std::vector<std::string> protocols(std::string_view member) {
  std::vector<std::string> names;
  for (const Case& row : cases()) {
    if (row.note != "unscored" && (member.empty() || row.member == member) &&
        std::ranges::count(names, row.protocol) == 0) {
      names.push_back(row.protocol);
    }
  }
  return names;
}

std::optional<Expected> expected(const irp::Protocol& protocol, const irp::Parameters& parameters,
                                 std::string_view frame, bool whole) {
  const irp::Lookup get = protocol.lookup(parameters);
  for (const Case& row : cases()) {
    if (row.protocol != protocol.name() || row.frame != frame) continue;
    if (row.when != "-" && evaluate(row.when, get) == 0) continue;
    const std::string& name = whole ? row.repeats : row.name;
    if (name == "-") return {};
    Expected answer{filled(name, get),
                    alternatives(row.device, get),
                    alternatives(row.subDevice, get),
                    alternatives(row.obc, get),
                    {}};
    if (row.hex0 != "-") answer.hex0 = evaluate(row.hex0, get);
    return answer;
  }
  return {};
}

std::vector<int> frame(std::string_view protocol, const irp::Parameters& given) {
  const irp::Protocol& definition = irp::protocol(protocol);
  return single_frame(definition, definition.complete(given));
}

std::vector<int> single_frame(const irp::Protocol& protocol, const irp::Parameters& parameters,
                              std::string_view frame) {
  constexpr std::ptrdiff_t kBalboaFrame = 35;
  constexpr int kPid0001StopUs = 24;
  const irp::Rendering rendering = protocol.render(parameters, 1);
  const std::vector<int>& first = rendering.parts.at(0).durations;
  // Its first segment is the lead-in alone.
  if (protocol.name() == "DirecTV_3FG") return cut(rendering.whole())[0];
  // Three frames only 5 ms apart.
  if (protocol.name() == "Balboa") return {first.begin(), first.begin() + kBalboaFrame};
  const bool uncut = std::ranges::any_of(cases(), [&](const Case& row) {
    return row.protocol == protocol.name() && row.frame == frame && row.note == "api";
  });
  if (uncut) return {first.begin(), first.end() - (first.size() % 2 == 0 ? 1 : 0)};
  const auto pieces = cut(first);
  if (frame == "1") return pieces[0];
  auto found = pieces.size() > 1 ? pieces[1] : cut(rendering.parts.at(1).durations)[0];
  // The definition leaves its stop mark at 1 µs.
  if (protocol.name() == "pid-0001") found.back() = kPid0001StopUs;
  return found;
}

std::vector<Sample> samples(std::string_view protocol, uint64_t seed, const Counts& counts,
                            const Receiver& receiver) {
  std::vector<Sample> found;
  std::vector<std::string> frames;
  for (const Case& row : cases()) {
    if (row.protocol != protocol || row.note == "unscored" ||
        std::ranges::count(frames, row.frame) != 0) {
      continue;
    }
    frames.push_back(row.frame);
    Random random(seed, row.protocol + " " + row.frame);
    if (row.frame != kWholeOnly && row.note != "api") {
      add_frames(found, row, random, counts, receiver);
    }
    if (row.frame != "2") add_signals(found, row, random, counts, receiver);
  }
  return found;
}

std::string mismatch(const Expected& expected, const Answer& answer) {
  if (!matches(expected.name, answer.name)) {
    return "named \"" + answer.name + "\" instead of " + expected.name;
  }
  const auto wrong = [](const char* what, int64_t is, const std::vector<int64_t>& wanted) {
    return std::string(what) + " " + std::to_string(is) + " instead of " + listed(wanted);
  };
  if (!among(expected.device, answer.device)) {
    return wrong("device", answer.device, expected.device);
  }
  if (!among(expected.subDevice, answer.subDevice)) {
    return wrong("subDevice", answer.subDevice, expected.subDevice);
  }
  if (!among(expected.obc, answer.obc)) return wrong("obc", answer.obc, expected.obc);
  const bool first_reading = expected.obc.empty() || expected.obc[0] == answer.obc;
  if (expected.hex0 && answer.hex0 && first_reading && *expected.hex0 != *answer.hex0) {
    return wrong("hex[0]", *answer.hex0, {*expected.hex0});
  }
  return {};
}

std::string describe(const Sample& sample) {
  static constexpr const char* kSets[] = {"clean", "received", "repeats", "long"};
  std::string text = sample.protocol->name() + " (" + kSets[static_cast<size_t>(sample.set)] + ")";
  for (const auto& [name, value] : sample.parameters) {
    text += " " + name + "=" + std::to_string(value);
  }
  return text + " single=" + std::to_string(sample.singleCount) +
         " repeat=" + std::to_string(sample.repeatCount) + "\n" + irp::csv(sample.durations);
}

std::vector<Frame> frames() {
  return load<Frame>(TEST_DATA "/frames.tsv", &Frame::what, &Frame::definition, &Frame::answer);
}

}  // namespace contract
