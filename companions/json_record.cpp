// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/json_record.h"

#include <algorithm>

#include "companions/formats/form.h"
#include "companions/heard.h"
#include "companions/json_text.h"

namespace companions {

namespace {

constexpr int kSchema = 1;

void add_durations(json_text& json, std::span<const int> durations) {
  json.open('[');
  for (size_t i = 0; i < durations.size(); ++i) {
    json.value(i % 2 == 0 ? durations[i] : -durations[i]);
  }
  json.close(']');
}

void add_or_null(json_text& json, std::string_view key, const std::optional<int>& value) {
  json.key(key);
  value ? json.value(*value) : json.null();
}

/// A number, or null for the -1 of "has none".
void add_number(json_text& json, std::string_view key, int value) {
  add_or_null(json, key, value == -1 ? std::nullopt : std::optional(value));
}

void add_program(json_text& json, const std::optional<program_answer>& answer) {
  json.key("program");
  if (!answer) {
    json.null();
    return;
  }
  json.open('{').key("protocol").value(answer->protocol).key("scancode").value(answer->scancode);
  json.key("bits");
  answer->bits == 0 ? json.null() : json.value(answer->bits);
  json.close('}');
}

void add_analysis(json_text& json, const std::vector<analysis_answer>& answers) {
  json.key("analysis").open('[');
  for (const analysis_answer& answer : answers) {
    json.open('{').key("protocol").value(answer.protocol);
    add_number(json, "device", answer.device);
    add_number(json, "subdevice", answer.subdevice);
    add_number(json, "obc", answer.obc);
    json.key("hex").open('[');
    for (const int code : answer.hex) {
      if (code != -1) json.value(code);
    }
    json.close(']').key("misc").value(answer.misc).close('}');
  }
  json.close(']');
}

void add_arduino(json_text& json, const std::optional<arduino_answer>& answer) {
  json.key("arduino");
  if (!answer) {
    json.null();
    return;
  }
  json.open('{').key("type").value(answer->type).key("value").value(answer->value);
  json.key("bits").value(answer->bits).close('}');
}

/// What the families say that take one frame at a time.
struct frame_answers {
  std::optional<program_answer> program;
  std::optional<arduino_answer> arduino;
};

/// Asked in the order of the frames, as the program's decoders remember the ones before.
std::vector<frame_answers> ask_frames(const heard_signal& signal, int elapsed_ms) {
  std::vector<frame_answers> all;
  for (const frame& part : signal.frames) {
    const auto durations = signal.durations_of(part);
    all.push_back({});
    if (takes_frame(durations)) {
      all.back() = {ask_program(durations, elapsed_ms), ask_arduino(durations)};
    }
    elapsed_ms = part.gap_us.value_or(0) / 1000;
  }
  return all;
}

void add_frames(json_text& json, const std::vector<frame>& frames,
                const std::vector<frame_answers>& answers) {
  json.key("frames").open('[');
  for (size_t i = 0; i < frames.size(); ++i) {
    json.open('{').key("entry").value(frames[i].first + 1).key("count").value(frames[i].size);
    add_or_null(json, "gap", frames[i].gap_us);
    add_program(json, answers[i].program);
    add_arduino(json, answers[i].arduino);
    json.close('}');
  }
  json.close(']');
}

std::string hex_of(std::string_view bits, bit_order order) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const unsigned byte : bytes_of(bits, order)) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

void add_coding(json_text& json, const heard_signal& signal) {
  const coding& form = signal.form;
  json.key("coding").open('{').key("kind").value(name_of(form.kind));
  add_or_null(json, "unit",
              form.kind == modulation::kUnknown ? std::nullopt : std::optional(form.unit_us));
  json.key("bits_per_symbol").value(form.bits_per_symbol).key("sections").open('[');
  for (const section& s : form.sections) {
    json.open('{').key("lead_in");
    add_durations(json, std::span(signal.durations).subspan(s.first, s.lead_in));
    json.key("bits").value(s.bits.size());
    json.key("lsb").value(hex_of(s.bits, bit_order::kLsbFirst));
    json.key("msb").value(hex_of(s.bits, bit_order::kMsbFirst));
    add_or_null(json, "gap", s.gap_us);
    json.close('}');
  }
  json.close(']').close('}');
}

/// The sections as definitions are compared with them.
std::optional<irp::Message> read_message(const heard_signal& signal,
                                         const irp::MessageReader& messages) {
  std::vector<irp::Section> sections;
  for (const section& s : signal.form.sections) {
    const auto lead_in = std::span(signal.durations).subspan(s.first, s.lead_in);
    irp::Section& to = sections.emplace_back();
    to.lead_in.assign(lead_in.begin(), lead_in.end());
    std::transform(s.bits.begin(), s.bits.end(), std::back_inserter(to.bits),
                   [](char bit) { return bit == '1'; });
    to.gap_us = s.gap_us.value_or(0);
  }
  return messages.read(sections);
}

void add_message(json_text& json, const std::optional<irp::Message>& message) {
  json.key("message");
  if (!message) {
    json.null();
    return;
  }
  json.open('{').key("name");
  message->check ? json.value(message->name) : json.null();
  json.key("fields");
  if (message->check) {
    json.open('{');
    for (const auto& [name, value] : message->fields) json.key(name).value(value);
    json.close('}');
  } else {
    json.null();
  }
  json.key("check").value(message->check).key("sections").open('[');
  json.value(message->first + 1).value(message->last + 1).close(']').close('}');
}

size_t pairs(const std::vector<int>& durations) {
  return (durations.size() + 1) / 2;
}

void add_text(json_text& json, const pattern& from, const heard_signal& signal) {
  json.key("format").value(from.form).key("durations");
  add_durations(json, signal.durations);
  if (!from.repeat.empty()) {
    json.key("repeat");
    add_durations(json, repeat_of(from));
  }
  if (from.elapsed_ms) json.key("elapsed_ms").value(*from.elapsed_ms);
  if (from.carrier_hz) json.key("carrier_hz").value(*from.carrier_hz);
  if (from.form == "pronto") {
    const size_t first = pairs(from.durations);
    json.key("once_pairs").value(from.held ? 0 : first);
    json.key("repeat_pairs").value(from.held ? first : pairs(from.repeat));
  }
}

/// Adds what is known of a pattern; whether anybody named it.
bool add_pattern(json_text& json, const pattern& from, const irp::MessageReader& messages) {
  const heard_signal signal = hear(from);
  const auto answers = ask_frames(signal, from.elapsed_ms.value_or(0));
  const auto message = read_message(signal, messages);
  const frame_answers first = answers.empty() ? frame_answers{} : answers[0];
  add_text(json, from, signal);
  add_program(json, first.program);
  add_analysis(json, signal.analysis);
  add_arduino(json, first.arduino);
  add_frames(json, signal.frames, answers);
  add_coding(json, signal);
  add_message(json, message);

  return (!signal.analysis.empty() && signal.analysis[0].names_a_protocol()) ||
         (message && message->check) ||
         std::any_of(answers.begin(), answers.end(), [](const frame_answers& a) {
           return a.arduino && a.arduino->type != "UNKNOWN";
         });
}

}  // namespace

record make_record(const input& from, const irp::MessageReader& messages,
                   const std::optional<std::string>& time) {
  json_text json;
  json.open('{').key("schema").value(kSchema).key("source").value(from.source);
  json.key("line").value(from.read.line);
  if (time) json.key("time").value(*time);
  const auto* bad = std::get_if<bad_line>(&from.read.what);
  bool named = false;
  if (bad != nullptr) {
    json.key("column").value(bad->column).key("error").value(bad->what);
  } else {
    named = add_pattern(json, std::get<pattern>(from.read.what), messages);
  }
  json.close('}');
  return {.json = json.take(), .fault = bad != nullptr, .named = named};
}

}  // namespace companions
