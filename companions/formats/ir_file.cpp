// SPDX-License-Identifier: GPL-3.0-or-later
// Remote files with the extension .ir: signals with the names of their keys, as durations in µs or
// as a protocol with the four bytes of an address and of a command, least significant byte first.
//
//   Filetype: IR signals file
//   Version: 1
//   #
//   name: Power
//   type: parsed
//   protocol: NEC
//   address: 04 00 00 00
//   command: 08 00 00 00
//   #
//   name: Mute
//   type: raw
//   frequency: 38000
//   duty_cycle: 0.330000
//   data: 9024 4512 564 564 564 1692 564
//
// A signal ends where the next one's name stands, at a line that begins with "#" and at the end.
#include <charconv>
#include <iomanip>

#include "companions/formats/form.h"
#include "companions/formats/ir_protocols.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr double kUsualDutyCycle = 0.33;
constexpr size_t kMostNumbers = 1024;  // of one signal, for other readers
constexpr size_t kCodeBytes = 4;

bool begins(std::string_view line) {
  return line.starts_with("Filetype:");
}

/// The bytes of an address or a command; hand-made files leave out the last ones.
std::optional<uint32_t> code_number(const std::vector<token>& bytes) {
  if (bytes.empty() || bytes.size() > kCodeBytes) return {};
  uint32_t value = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = number(bytes[i].text, 16);
    if (!byte || bytes[i].text.size() > 2) return {};
    value |= static_cast<uint32_t>(*byte) << (8 * i);
  }
  return value;
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view) const override { return true; }

  void read(const text_line& line, findings& out) override {
    if (line.text.starts_with('#')) return end(out);
    if (line.text.find_first_not_of(kBlanks) == line.text.npos) return;
    const size_t colon = line.text.find(':');
    if (colon == line.text.npos) return fail(line.number, {1, "expected a key and a colon"}, out);
    const std::string_view key = line.text.substr(0, colon);
    if (key == "name") end(out);
    if (line_ == 0) line_ = line.number;
    if (auto fault = read_value(key, value{line.text.substr(colon + 1), colon + 2})) {
      fail(line.number, std::move(*fault), out);
    }
  }

  void end(findings& out) override {
    if (!broken_ && !type_.empty()) deliver(out);
    if (!broken_ && type_.empty() && !found_.name.empty()) {
      out.fault(line_, {1, "a signal without its type"});
    }
    found_ = {};
    type_.clear();
    address_.reset();
    command_.reset();
    line_ = 0;
    broken_ = false;
  }

 private:
  struct value {
    std::string_view text;
    size_t column;

    /// Its words, with their columns in the line.
    [[nodiscard]] std::vector<token> words() const {
      auto all = split(text, kBlanks);
      for (token& one : all) one.column += column - 1;
      return all;
    }
    /// Without the blanks around it.
    [[nodiscard]] token whole() const {
      const size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
      const size_t last = text.find_last_not_of(kBlanks) + 1;
      return {text.substr(first, last - std::min(first, last)), column + first};
    }
  };

  std::optional<bad_line> read_value(std::string_view key, const value& of) {
    const token whole = of.whole();
    if (key == "name") {
      found_.name = whole.text;
    } else if (key == "type") {
      if (whole.text != "raw" && whole.text != "parsed") return no(whole, "type: raw or parsed");
      type_ = whole.text;
    } else if (key == "protocol") {
      code_.protocol = whole.text;
    } else if (key == "address" || key == "command") {
      const auto bytes = code_number(of.words());
      if (!bytes) return no(whole, "four bytes in hexadecimal digits");
      (key == "address" ? address_ : command_) = bytes;
    } else if (key == "frequency") {
      found_.carrier_hz = number(whole.text);
      if (!found_.carrier_hz) return no(whole, "frequency in Hz");
    } else if (key == "duty_cycle") {
      double part = 0;
      const char* const last = whole.text.data() + whole.text.size();
      const auto [stop, fault] = std::from_chars(whole.text.data(), last, part);
      if (fault != std::errc{} || stop != last || !(part >= kLeastDutyCycle && part <= 1)) {
        return no(whole, "duty cycle of 0.01 to 1");
      }
      found_.duty_cycle = part;
    } else if (key == "data") {
      return read_data(of);
    }
    return {};
  }

  std::optional<bad_line> read_data(const value& of) {
    for (const token& one : of.words()) {
      const auto us = duration(one.text);
      if (!us) return no_duration(one);
      found_.durations.push_back(*us);
    }
    if (found_.durations.size() > kMostPatternDurations) return bad_line{1, kTooManyDurations};
    return {};
  }

  void deliver(findings& out) {
    found_.form = "ir";
    if (type_ == "parsed") {
      if (code_.protocol.empty() || !address_ || !command_) {
        return out.fault(line_, {1, "expected a protocol, an address and a command"});
      }
      code_.address = *address_;
      code_.command = *command_;
      if (auto why = render_code(code_, found_)) return out.fault(line_, {1, std::move(*why)});
      found_.code = std::exchange(code_, {});
    } else if (found_.durations.empty()) {
      return out.fault(line_, {1, "expected data"});
    }
    out.add(line_, std::move(found_));
  }

  /// A signal with a line that cannot be read is none.
  void fail(size_t line, bad_line what, findings& out) {
    if (!broken_) out.fault(line, std::move(what));
    broken_ = true;
  }

  size_t line_ = 0;  // where the signal begins; 0: nothing of it was read yet
  pattern found_;
  std::string type_;
  ir_code code_;
  std::optional<uint32_t> address_, command_;
  bool broken_ = false;
};

void write_bytes(std::ostream& out, std::string_view key, uint32_t number) {
  out << key << ':';
  for (size_t i = 0; i < kCodeBytes; ++i, number >>= 8) {
    out << ' ';
    write_hex(out, number & 0xFF, 2);
  }
  out << '\n';
}

class writer : public form_writer {
 public:
  void write(std::ostream& out, const pattern& signal) override {
    if (count_++ == 0) out << "Filetype: IR signals file\nVersion: 1\n";
    out << "#\nname: ";
    if (signal.name.empty()) out << "signal_" << count_ << '\n';
    if (!signal.name.empty()) out << signal.name << '\n';
    if (signal.code) {
      out << "type: parsed\nprotocol: " << signal.code->protocol << '\n';
      write_bytes(out, "address", signal.code->address);
      write_bytes(out, "command", signal.code->command);
      return;
    }
    out << "type: raw\nfrequency: " << signal.carrier_hz.value_or(kUsualCarrierHz)
        << "\nduty_cycle: " << std::fixed << std::setprecision(6)
        << signal.duty_cycle.value_or(kUsualDutyCycle) << "\ndata: ";
    write_list(out, signal.durations, " ");
    out << '\n';
  }

 private:
  size_t count_ = 0;
};

/// One line, without blanks around it.
std::string spell(std::string_view name) {
  std::string text(name);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ') c = '_';
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

const form kIrFileForm = {.name = "ir",
                          .about = ".ir remote file, raw and parsed",
                          .begins = begins,
                          .reader = open<reader>,
                          .writer = open_writer<writer>,
                          .holds = {.spell = spell,
                                    .carrier = true,
                                    .duty_cycle = true,
                                    .gap = true,
                                    .code = true,
                                    .needs_carrier = true,
                                    .most_durations = kMostNumbers}};

}  // namespace companions
