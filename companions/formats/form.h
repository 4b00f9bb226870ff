// SPDX-License-Identifier: GPL-3.0-or-later
// The seam between the forms and those who read and write any of them: one `form` a file, in the
// table of forms.cpp.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "companions/formats/pattern.h"

namespace companions {

/// A line without its end, and its number counted from 1.
struct text_line {
  std::string_view text;
  size_t number;
};

/// What the readers of the forms found, in the order of the text.
class findings {
 public:
  void add(size_t line, pattern found);
  void fault(size_t line, bad_line what);
  /// So long before the next pattern or fault the last one ended.
  void elapsed(int ms) { elapsed_ms_ = ms; }

  /// The oldest of them that was not taken yet.
  std::optional<read_result> take();

 private:
  std::deque<read_result> found_;
  std::optional<int> elapsed_ms_;
};

/// Reads the text of one form, line by line.
class form_reader {
 public:
  form_reader() = default;
  form_reader(const form_reader&) = delete;
  form_reader& operator=(const form_reader&) = delete;
  virtual ~form_reader() = default;

  virtual void read(const text_line& line, findings& out) = 0;
  /// Whether this line carries on what the lines before it began.
  [[nodiscard]] virtual bool takes(std::string_view) const { return false; }
  /// The last line has been read.
  virtual void end(findings&) {}
};

struct form {
  std::string_view name;
  bool (*begins)(std::string_view line);  // whether the line looks like this form
  std::unique_ptr<form_reader> (*reader)();
};

/// A new reader of this class.
template <typename Reader>
std::unique_ptr<form_reader> open() {
  return std::make_unique<Reader>();
}

/// The reader of a form whose lines stand for themselves.
template <void (*read_line)(const text_line&, findings&)>
std::unique_ptr<form_reader> line_by_line() {
  struct reader : form_reader {
    void read(const text_line& line, findings& out) override { read_line(line, out); }
  };
  return std::make_unique<reader>();
}

extern const form kAnalysirForm, kCommaForm, kIrCtlForm, kMode2Form, kProntoForm, kRawForm;

/// What the decoders take of a pattern: the durations of vantrel's own lists as they were written,
/// those of other forms without the silence behind them.
std::vector<int> frame_of(const pattern& whole);

/// All forms, in the order in which they are tried on a text.
std::span<const form* const> forms();

}  // namespace companions
