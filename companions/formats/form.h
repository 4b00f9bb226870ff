// SPDX-License-Identifier: GPL-3.0-or-later
// The seam between the forms and those who read and write any of them: one `form` a file, in the
// table of forms.cpp.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <ostream>
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

/// Writes signals in one form.
class form_writer {
 public:
  form_writer() = default;
  form_writer(const form_writer&) = delete;
  form_writer& operator=(const form_writer&) = delete;
  virtual ~form_writer() = default;

  /// REQUIRES: the signal is what fit() of convert.h makes of one for this form.
  virtual void write(std::ostream& out, const pattern& signal) = 0;
  /// There are no more signals.
  virtual void end(std::ostream&) {}
};

/// What a form can hold beside the durations of one sequence, each between 1 and longest_us.
struct holdings {
  std::string (*spell)(std::string_view name) = nullptr;  // how it writes a name; null: no names
  bool carrier = false;
  bool duty_cycle = false;
  bool gap = false;      // the silence behind the signal
  bool repeat = false;   // what is sent while the key is held
  bool elapsed = false;  // the time since the signal before
  bool remote = false;   // the name of the remote
  bool code = false;     // the protocol and its numbers in place of the durations
  bool needs_carrier = false;
  int longest_us = 0xFFFFFF;
  int longest_periods = 0;  // the same in carrier periods, for forms that count in them
  size_t most_durations = kMostPatternDurations;  // of one sequence
};

struct form {
  std::string_view name;
  std::string_view about;                 // a few words for people
  bool (*begins)(std::string_view line);  // whether the line looks like this form
  std::unique_ptr<form_reader> (*reader)();
  std::unique_ptr<form_writer> (*writer)();
  holdings holds;
};

/// A new reader of this class.
template <typename Reader>
std::unique_ptr<form_reader> open() {
  return std::make_unique<Reader>();
}

/// A new writer of this class.
template <typename Writer>
std::unique_ptr<form_writer> open_writer() {
  return std::make_unique<Writer>();
}

/// The writer of a form whose signals stand for themselves.
template <void (*write_one)(std::ostream&, const pattern&)>
std::unique_ptr<form_writer> one_by_one() {
  struct writer : form_writer {
    void write(std::ostream& out, const pattern& signal) override { write_one(out, signal); }
  };
  return std::make_unique<writer>();
}

/// The reader of a form whose lines stand for themselves.
template <void (*read_line)(const text_line&, findings&)>
std::unique_ptr<form_reader> line_by_line() {
  struct reader : form_reader {
    void read(const text_line& line, findings& out) override { read_line(line, out); }
  };
  return std::make_unique<reader>();
}

extern const form kAnalysirForm, kBroadlinkForm, kBroadlinkHexForm, kCArrayForm, kCommaForm,
    kEsphomeForm, kIrCtlForm, kIrFileForm, kJsonForm, kLircdForm, kMode2Form, kProntoForm, kRawForm,
    kTasmotaForm;

/// Whether it is one of the lists that vantrel itself takes, which hold a signal as it is sent or
/// heard: without the silence behind it.
bool is_own_list(const form& one);

/// What the decoders take of a pattern: the durations of vantrel's own lists as they were written,
/// those of other forms without the silence behind them.
std::vector<int> frame_of(const pattern& whole);
/// The same of its repeat sequence.
std::vector<int> repeat_of(const pattern& whole);

/// The form of this name, or "csv" for "comma", as sendir has it; null for none.
const form* find_form(std::string_view name);

/// All forms, in the order in which they are tried on a text.
std::span<const form* const> forms();

}  // namespace companions
