// SPDX-License-Identifier: GPL-3.0-or-later
// lircd.conf: remotes with the lengths of their bits and a code for each key, or with the durations
// of each key, in µs.
//
//   begin remote
//     name   SAMPLE_TV
//     bits           16
//     flags SPACE_ENC|CONST_LENGTH
//     header       9024  4512
//     one           564  1692
//     zero          564   564
//     ptrail        564
//     repeat       9024  2256
//     pre_data_bits   16
//     pre_data       0x20DF
//     gap          108000
//         begin codes
//             KEY_POWER                0x10EF  # a comment
//         end codes
//   end remote
//
// With the flag RAW_CODES, in place of the codes:
//
//         begin raw_codes
//             name KEY_POWER
//                9024    4512     564     564     564
//         end raw_codes
//
// What a remote does not tell is not invented: no carrier without `frequency`, no silence without
// `gap`. Toggle bits stand as the file has them. Blocks of lircrc, the configuration of programs,
// are passed over.
#include <charconv>
#include <cmath>

#include "companions/formats/form.h"
#include "companions/formats/lircd_code.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr const char* kExpectedRemote = "expected begin remote";

/// The words of a line up to its comment.
std::vector<token> words_of(std::string_view line) {
  auto words = split(line, kBlanks);
  for (size_t i = 0; i < words.size(); ++i) {
    if (words[i].text[0] == '#') words.resize(i);
  }
  return words;
}

bool says(const std::vector<token>& words, std::string_view first, std::string_view second) {
  return words.size() >= 2 && words[0].text == first && words[1].text == second;
}

bool begins(std::string_view line) {
  if (line.find("begin") == line.npos) return false;  // soon said of the lines of other forms
  const auto words = words_of(line.substr(0, 100));
  return says(words, "begin", "remote") || (words.size() == 1 && words[0].text == "begin");
}

/// Decimal, or hexadecimal behind 0x.
std::optional<uint64_t> code_of(std::string_view text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  uint64_t value = 0;
  const char* const last = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), last, value, hex ? 16 : 10);
  if (text.empty() || fault != std::errc{} || stop != last) return {};
  return value;
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view) const override { return true; }

  void read(const text_line& line, findings& out) override {
    const auto words = words_of(line.text);
    if (words.empty()) return;
    if (says(words, "begin", "remote")) {
      end(out);
      remote_ = {};
      at_ = place::kRemote;
    } else if (says(words, "end", "remote")) {
      end(out);
      at_ = place::kOutside;
    } else if (words[0].text == "end") {
      end(out);
      at_ = at_ == place::kProgram || at_ == place::kOutside ? place::kOutside : place::kRemote;
    } else if (at_ == place::kRemote && says(words, "begin", "codes")) {
      at_ = place::kCodes;
    } else if (at_ == place::kRemote && says(words, "begin", "raw_codes")) {
      at_ = place::kRaw;
    } else {
      read_inside(line, words, out);
    }
  }

  void end(findings& out) override {
    if (!raw_.name.empty() && !broken_) deliver(raw_line_, std::move(raw_), out);
    raw_ = {};
    broken_ = false;
  }

 private:
  enum class place { kOutside, kProgram, kRemote, kCodes, kRaw };

  void read_inside(const text_line& line, const std::vector<token>& words, findings& out) {
    switch (at_) {
      case place::kOutside:
        if (words[0].text == "begin") {
          at_ = place::kProgram;
        } else if (words[0].text != "include") {
          out.fault(line.number, {words[0].column, kExpectedRemote});
        }
        break;
      case place::kProgram:
        break;
      case place::kRemote:
        if (auto fault = read_parameter(words)) out.fault(line.number, std::move(*fault));
        break;
      case place::kCodes:
        read_code(line, words, out);
        break;
      case place::kRaw:
        read_raw(line, words, out);
        break;
    }
  }

  void read_code(const text_line& line, const std::vector<token>& words, findings& out) {
    std::vector<uint64_t> codes;
    for (size_t i = 1; i < words.size(); ++i) {
      const auto code = code_of(words[i].text);
      if (!code) return out.fault(line.number, no(words[i], "code"));
      codes.push_back(*code);
    }
    if (codes.empty()) return out.fault(line.number, {words[0].column, "a key without a code"});
    pattern found{.name = std::string(words[0].text)};
    if (auto why = render_lircd(remote_, codes, found)) {
      return out.fault(line.number, {words[0].column, std::move(*why)});
    }
    deliver(line.number, std::move(found), out);
  }

  void read_raw(const text_line& line, const std::vector<token>& words, findings& out) {
    size_t first = 0;
    if (words[0].text == "name") {
      end(out);
      if (words.size() < 2) return fail(line, {line.text.size() + 1, "expected a name"}, out);
      raw_.name = words[1].text;
      raw_line_ = line.number;
      first = 2;
    }
    for (size_t i = first; i < words.size(); ++i) {
      const auto us = duration(words[i].text);
      if (!us) return fail(line, no_duration(words[i]), out);
      raw_.durations.push_back(*us);
    }
    if (raw_.durations.size() > kMostPatternDurations) {
      raw_.durations.clear();
      fail(line, {1, kTooManyDurations}, out);
    }
  }

  void fail(const text_line& line, bad_line what, findings& out) {
    if (!broken_) out.fault(line.number, std::move(what));
    broken_ = true;
  }

  void deliver(size_t line, pattern found, findings& out) {
    if (found.durations.empty()) return out.fault(line, {1, "a key without durations"});
    found.form = "lircd";
    found.remote = remote_.name;
    found.carrier_hz = remote_.carrier_hz;
    found.duty_cycle = remote_.duty_cycle;
    if (at_ == place::kRaw) add_gap(remote_, remote_.gap, found.durations);
    out.add(line, std::move(found));
  }

  std::optional<bad_line> read_parameter(const std::vector<token>& words) {
    const std::string_view name = words[0].text;
    if (name == "name") {
      if (words.size() > 1) remote_.name = words[1].text;
      return {};
    }
    if (name == "flags") return read_flags(words);
    return read_numbers(name, words);
  }

  std::optional<bad_line> read_flags(const std::vector<token>& words) {
    using coding = lircd_remote::coding;
    static constexpr std::array<std::pair<std::string_view, coding>, 11> kCodings = {
        {{"RAW_CODES", coding::kRaw},
         {"SPACE_ENC", coding::kSpace},
         {"SPACE_FIRST", coding::kSpaceFirst},
         {"RC5", coding::kTwoPhase},
         {"SHIFT_ENC", coding::kTwoPhase},
         {"RC6", coding::kTwoPhase},
         {"RCMM", coding::kTwoBits},
         {"XMP", coding::kNibbles},
         {"GRUNDIG", coding::kUnknown},
         {"BO", coding::kUnknown},
         {"SERIAL", coding::kUnknown}}};
    for (size_t i = 1; i < words.size(); ++i) {
      for (const token& flag : split(words[i].text, "|")) {
        for (const auto& [name, its] : kCodings) {
          if (flag.text == name) remote_.bits_by = its;
        }
        if (flag.text == "REVERSE") remote_.least_first = true;
        if (flag.text == "CONST_LENGTH") remote_.const_length = true;
        if (flag.text == "NO_HEAD_REP") remote_.no_head_repeat = true;
        if (flag.text == "NO_FOOT_REP") remote_.no_foot_repeat = true;
        if (flag.text == "REPEAT_HEADER") remote_.repeat_header = true;
      }
    }
    return {};
  }

  std::optional<bad_line> read_numbers(std::string_view name, const std::vector<token>& words) {
    const std::array<std::pair<std::string_view, mark_space*>, 9> pairs = {
        {{"header", &remote_.header},
         {"one", &remote_.one},
         {"zero", &remote_.zero},
         {"two", &remote_.two},
         {"three", &remote_.three},
         {"pre", &remote_.pre},
         {"post", &remote_.post},
         {"foot", &remote_.foot},
         {"repeat", &remote_.repeat}}};
    for (const auto& [its, to] : pairs) {
      if (name != its) continue;
      for (size_t i = 0; i < 2; ++i) {
        if (auto fault = read_number(words, i + 1, kLongestDurationUs, (*to)[i])) return fault;
      }
      return {};
    }
    const std::array<std::pair<std::string_view, int*>, 7> lengths = {
        {{"plead", &remote_.plead},
         {"ptrail", &remote_.ptrail},
         {"gap", &remote_.gap},
         {"repeat_gap", &remote_.repeat_gap},
         {"bits", &remote_.bits},
         {"pre_data_bits", &remote_.pre_data_bits},
         {"post_data_bits", &remote_.post_data_bits}}};
    for (const auto& [its, to] : lengths) {
      if (name == its) return read_number(words, 1, kLongestDurationUs, *to);
    }
    const std::array<std::pair<std::string_view, uint64_t*>, 3> values = {
        {{"pre_data", &remote_.pre_data},
         {"post_data", &remote_.post_data},
         {"rc6_mask", &remote_.rc6_mask}}};
    for (const auto& [its, to] : values) {
      if (name == its) return read_number(words, 1, UINT64_MAX, *to);
    }
    int rate = 0;
    if (name == "frequency") {
      if (auto fault = read_number(words, 1, kMostHz, rate)) return fault;
      if (rate > 0) remote_.carrier_hz = rate;
    } else if (name == "duty_cycle") {
      if (auto fault = read_number(words, 1, kPercent, rate)) return fault;
      if (rate > 0) remote_.duty_cycle = static_cast<double>(rate) / kPercent;
    }
    return {};
  }

  template <typename Number>
  static std::optional<bad_line> read_number(const std::vector<token>& words, size_t which,
                                             uint64_t most, Number& to) {
    if (words.size() <= which) {
      return bad_line{words.back().column + words.back().text.size(), "expected a number"};
    }
    const auto value = code_of(words[which].text);
    if (!value || *value > most) return no(words[which], "number of 0 to " + std::to_string(most));
    to = static_cast<Number>(*value);
    return {};
  }

  static constexpr uint64_t kMostHz = 10'000'000;
  static constexpr int kPercent = 100;

  lircd_remote remote_;
  place at_ = place::kOutside;
  pattern raw_;  // the key whose durations are being read
  size_t raw_line_ = 0;
  bool broken_ = false;
};

/// A name is one word.
std::string spell(std::string_view name) {
  std::string text(name);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) <= ' ' || c == '#') c = '_';
  }
  return text;
}

/// A remote has one gap and one carrier: a key with others begins a new remote.
class writer : public form_writer {
 public:
  void write(std::ostream& out, const pattern& signal) override {
    const int gap = signal.durations.size() % 2 == 0 ? signal.durations.back() : 0;
    const block wanted{spell(signal.remote), gap, signal.carrier_hz, signal.duty_cycle};
    if (keys_ == 0 || wanted != open_) {
      end(out);
      open_ = wanted;
      begin(out);
    }
    ++keys_;
    out << "          name "
        << (signal.name.empty() ? "signal_" + std::to_string(keys_) : signal.name);
    const std::vector<int> frame = without_gap(signal.durations);
    constexpr size_t kPerLine = 6;
    for (size_t i = 0; i < frame.size(); ++i) {
      out << (i % kPerLine == 0 ? "\n             " : " ") << frame[i];
    }
    out << '\n';
  }

  void end(std::ostream& out) override {
    if (remotes_ > 0) out << "      end raw_codes\nend remote\n";
  }

 private:
  struct block {
    std::string remote;
    int gap;
    std::optional<int> carrier_hz;
    std::optional<double> duty_cycle;
    bool operator==(const block&) const = default;
  };

  void begin(std::ostream& out) {
    if (remotes_ > 0) out << '\n';
    ++remotes_;
    out << "begin remote\n  name  " << (open_.remote.empty() ? "remote" : open_.remote);
    if (remotes_ > 1) out << '_' << remotes_;  // no two remotes may have one name
    out << "\n  flags RAW_CODES\n  eps            30\n  aeps          100\n  gap           "
        << open_.gap << '\n';
    if (open_.carrier_hz) out << "  frequency    " << *open_.carrier_hz << '\n';
    if (open_.duty_cycle) {
      out << "  duty_cycle   " << std::lround(*open_.duty_cycle * 100) << '\n';
    }
    out << "\n      begin raw_codes\n";
  }

  block open_{};
  size_t remotes_ = 0;
  size_t keys_ = 0;
};

}  // namespace

const form kLircdForm = {
    .name = "lircd",
    .about = "lircd.conf, codes and raw_codes",
    .begins = begins,
    .reader = open<reader>,
    .writer = open_writer<writer>,
    .holds = {.spell = spell, .carrier = true, .duty_cycle = true, .gap = true, .remote = true}};

}  // namespace companions
