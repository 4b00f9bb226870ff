// SPDX-License-Identifier: GPL-3.0-or-later
// Arrays in C source, as sketches for microcontrollers hold them: µs, a mark first, the name of the
// variable as the name of the key.
//
//   const uint16_t Power[67] = {9024, 4512, 564, 564, 564, 1692, 564};  // NEC 20DF10EF
//
// Arrays of bytes count ticks of 50 µs. A first element that is longer than all others, in an array
// of an even number of them, is the silence before the signal. Everything around arrays is passed
// over.
#include <algorithm>
#include <array>
#include <cctype>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr int kByteTickUs = 50;
constexpr size_t kLongestDeclaration = 256;  // characters that are kept of one
constexpr size_t kLongestName = 200;         // so that a declaration that is written can be read
constexpr int kLargestShort = 0xFFFF;

bool begins(std::string_view line) {
  constexpr std::array<std::string_view, 7> kBeginnings = {"//",   "/*",        "const ", "static ",
                                                           "uint", "unsigned ", "int "};
  const std::string_view text = line.substr(std::min(line.find_first_not_of(kBlanks), line.size()));
  if (std::any_of(kBeginnings.begin(), kBeginnings.end(),
                  [text](std::string_view one) { return text.starts_with(one); })) {
    return true;
  }
  const size_t bracket = text.find(']');
  const size_t equals = text.find('=', std::min(bracket, text.size()));
  return equals != text.npos && text.find('[') < bracket && text.find('{', equals) != text.npos;
}

bool is_name(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view) const override { return true; }

  void read(const text_line& line, findings& out) override {
    for (size_t at = 0; at < line.text.size(); ++at) {
      const std::string_view rest = line.text.substr(at);
      if (in_comment_) {
        if (!rest.starts_with("*/")) continue;
        in_comment_ = false;
        ++at;
      } else if (rest.starts_with("//")) {
        break;
      } else if (rest.starts_with("/*")) {
        in_comment_ = true;
        ++at;
      } else if (in_array_) {
        read_element(line, at, out);
      } else {
        read_declaration(rest[0], line.number);
      }
    }
    if (in_array_) finish_number({line.text.size(), line.number}, out);
    if (!in_array_) read_declaration(' ', line.number);
  }

  void end(findings& out) override {
    if (in_array_) out.fault(first_line_, {1, "an array without its closing brace"});
  }

 private:
  struct place {
    size_t column, line;
  };

  void read_declaration(char c, size_t line) {
    if (c == ';' || c == '}') {
      declaration_.clear();
    } else if (c == '{') {
      const size_t equals = declaration_.find_last_not_of(kBlanks);
      const size_t bracket = declaration_.rfind('[');
      if (equals != declaration_.npos && declaration_[equals] == '=' &&
          bracket != declaration_.npos) {
        begin_array(bracket, line);
      }
      declaration_.clear();
    } else if (declaration_.size() < kLongestDeclaration) {
      declaration_ += c;
    }
  }

  void begin_array(size_t bracket, size_t line) {
    const size_t end = declaration_.find_last_not_of(kBlanks, bracket - 1) + 1;
    size_t first = std::min(end, bracket);
    while (first > 0 && is_name(declaration_[first - 1])) --first;
    found_ = {.form = "c", .name = declaration_.substr(first, end - first)};
    bytes_ = declaration_.find("uint8_t") != declaration_.npos ||
             declaration_.find("unsigned char") != declaration_.npos ||
             declaration_.find("byte") != declaration_.npos;
    first_line_ = line;
    broken_ = false;
    in_array_ = true;
    number_.clear();
  }

  void read_element(const text_line& line, size_t at, findings& out) {
    const char c = line.text[at];
    if (is_name(c) || c == '-' || c == '+' || c == '.') {
      if (number_.size() < kLongestDeclaration) number_ += c;
      return;
    }
    finish_number({at, line.number}, out);
    if (c == '}') {
      deliver(out);
    } else if (c != ',' && kBlanks.find(c) == kBlanks.npos) {
      fail({at + 1, line.number}, no({line.text.substr(at, 1), at + 1}, "duration"), out);
    }
  }

  /// `behind` is the place behind the number, column counted from 0.
  void finish_number(const place& behind, findings& out) {
    if (number_.empty()) return;
    std::string_view digits = number_;
    while (!digits.empty() &&
           std::string_view("uUlL").find(digits.back()) != std::string_view::npos)
      digits.remove_suffix(1);
    const size_t column = behind.column - number_.size() + 1;
    if (found_.durations.size() >= kMostPatternDurations) {
      fail({column, behind.line}, {column, kTooManyDurations}, out);
    } else if (const auto us = duration(digits)) {
      found_.durations.push_back(*us);
    } else {
      fail({column, behind.line}, no_duration({number_, column}), out);
    }
    number_.clear();
  }

  void fail(const place& where, bad_line what, findings& out) {
    if (!broken_) out.fault(where.line, std::move(what));
    broken_ = true;
  }

  void deliver(findings& out) {
    in_array_ = false;
    std::vector<int>& all = found_.durations;
    if (broken_) return;
    if (all.empty()) return out.fault(first_line_, {1, "an array without durations"});
    if (all.size() % 2 == 0 && all[0] > *std::max_element(all.begin() + 1, all.end())) {
      all.erase(all.begin());
    }
    if (bytes_) std::for_each(all.begin(), all.end(), [](int& ticks) { ticks *= kByteTickUs; });
    out.add(first_line_, std::move(found_));
  }

  std::string declaration_;  // the text since the last statement
  std::string number_;       // the number that is being read
  pattern found_;
  size_t first_line_ = 0;
  bool bytes_ = false;
  bool in_array_ = false;
  bool in_comment_ = false;
  bool broken_ = false;
};

class writer : public form_writer {
 public:
  void write(std::ostream& out, const pattern& signal) override {
    ++count_;
    const bool shorts =
        *std::max_element(signal.durations.begin(), signal.durations.end()) <= kLargestShort;
    out << "const uint" << (shorts ? 16 : 32) << "_t "
        << (signal.name.empty() ? "signal_" + std::to_string(count_) : signal.name) << '['
        << signal.durations.size() << "] = {";
    write_list(out, signal.durations, ", ");
    out << "};\n";
  }

 private:
  size_t count_ = 0;
};

/// An identifier.
std::string spell(std::string_view name) {
  std::string text(name.substr(0, kLongestName));
  for (char& c : text) {
    if (!is_name(c)) c = '_';
  }
  return std::isdigit(static_cast<unsigned char>(text[0])) != 0 ? "_" + text : text;
}

}  // namespace

const form kCArrayForm = {.name = "c",
                          .about = "C array, const uint16_t Power[67] = {9024, 4512, 564}",
                          .begins = begins,
                          .reader = open<reader>,
                          .writer = open_writer<writer>,
                          .holds = {.spell = spell}};

}  // namespace companions
