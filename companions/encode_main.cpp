// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-encode: the signal of a protocol and its numbers, for `vantrel sendir` and others.
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <set>
#include <sstream>

#include "companions/convert.h"
#include "companions/encode.h"
#include "companions/encode_json.h"
#include "companions/formats/inputs.h"
#include "companions/options.h"
#include "companions/sendir.h"
#include "companions/supported.h"
#include "lib/irp/installed.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

constexpr const char* kProgram = "vantrel-encode";
constexpr int kMostRepeats = 1000;
constexpr size_t kLongestRecord = size_t{1} << 24;  // characters of a JSON line

struct arguments {
  std::vector<std::string> words;  // the protocol and its numbers, or files of JSON
  std::string definitions;
  std::string form = "raw";
  int repeats = 0;
  bool list = false, json = false, from_json = false, send = false;
};

bool complain(const std::string& what) {
  std::fprintf(stderr, "%s: %s\n", kProgram, what.c_str());
  return false;
}

/// The installed definitions and the user's. False when some of these could not be read.
bool load(const arguments& wanted, irp::Protocols& protocols) {
  protocols = irp::installed_protocols();
  if (wanted.definitions.empty()) return true;
  std::ifstream file;
  if (const std::string fault = open_file(wanted.definitions, file); !fault.empty()) {
    throw irp::Error(wanted.definitions + ": " + fault);
  }
  bool good = true;
  for (const irp::BadDefinition& fault : protocols.add(file)) {
    good = complain(wanted.definitions + ':' + std::to_string(fault.line) + ':' +
                    std::to_string(fault.column) + ": " + fault.what);
  }
  return good;
}

void list(const irp::Protocols& protocols, bool as_json) {
  const irp::MessageReader messages(protocols);
  for (const auto& protocol : protocols.all()) {
    const support known = support_of(*protocol, messages);
    const auto text = as_json ? support_json : support_line;
    std::cout << text(*protocol, known) << '\n';
  }
}

bool is_for_sendir(const form& its) {
  return is_own_list(its) || &its == &kProntoForm;
}

/// Says once for a protocol that the carrier will not be the one it needs.
void warn_of_carrier(const irp::Protocol& protocol) {
  static std::set<std::string> said;
  const auto note = carrier_note(protocol.name(), protocol.carrier());
  if (note && said.insert(protocol.name()).second) complain(*note);
}

/// Ends as `vantrel sendir` does.
[[noreturn]] void send(const form& its, const std::string& text) {
  const bool is_list = is_own_list(its) && &its != &kRawForm;  // AnalysIR lists, too
  const std::string name(is_list ? "csv" : its.name);
  const std::string option = "--" + name + "=" + text;
  execlp(vantrel_program().c_str(), "vantrel", "sendir", option.c_str(), nullptr);
  throw irp::Error("cannot run vantrel sendir");
}

/// "NEC1 D=4 F=8"
std::string name_of(const key_code& code) {
  std::string text = code.protocol->name();
  for (const auto& [name, value] : code.parameters) {
    text.append(" ").append(name).append("=") += std::to_string(value);
  }
  return text;
}

/// Writes codes in the form that was asked for, or sends one.
class encoder {
 public:
  explicit encoder(const arguments& wanted)
      : wanted_(wanted), to_(*find_form(wanted.form)), fitting_(to_, std::cerr) {}

  /// False where the form cannot hold the signal. Throws irp::Error.
  bool encode(const key_code& code) {
    const press sent = render_press(*code.protocol, code.parameters, wanted_.repeats);
    const std::string name = name_of(code);
    const auto signal = fitting_.fit(signal_of(sent, name, to_), name);
    if (!signal) return false;
    if (is_for_sendir(to_)) warn_of_carrier(*code.protocol);
    if (to_.holds.repeat && sent.has_ending) {
      complain(std::string(to_.name) + " leaves out what " + code.protocol->name() +
               " sends at the end");
    }
    std::ostringstream text;
    writer_->write(wanted_.send ? text : std::cout, *signal);
    if (wanted_.send) send(to_, text.str().substr(0, text.str().find('\n')));
    std::cout.flush();
    return true;
  }
  void end() {
    writer_->end(std::cout);
    fitting_.report();
  }

 private:
  const arguments& wanted_;
  const form& to_;
  fitting fitting_;
  std::unique_ptr<form_writer> writer_ = to_.writer();
};

key_code code_of_words(const irp::Protocols& protocols, const std::vector<std::string>& words) {
  if (words.empty()) throw irp::Error("which protocol? --list shows them all");
  key_code code{protocols.find(words[0]), {}};
  if (code.protocol == nullptr) {
    throw irp::Error("no protocol '" + words[0] + "', --list shows them all");
  }
  for (size_t i = 1; i < words.size(); ++i) add_parameter(words[i], code.parameters);
  return code;
}

/// Every record of a text; false when one could not be sent.
bool encode_records(encoder& to, const irp::Protocols& protocols, const std::string& source,
                    std::istream& text) {
  bool good = true;
  std::string line;
  for (size_t number = 1; irp::next_line(text, line, kLongestRecord); ++number) {
    if (line.empty()) continue;
    try {
      if (line.size() > kLongestRecord) throw irp::Error("the line is too long");
      good = to.encode(code_of_record(protocols, line)) && good;
    } catch (const irp::Error& fault) {
      good = complain(source + ':' + std::to_string(number) + ": " + fault.what());
    }
    if (!std::cout) return false;
  }
  return good;
}

bool encode_files(encoder& to, const irp::Protocols& protocols,
                  const std::vector<std::string>& names) {
  if (names.empty()) return encode_records(to, protocols, "-", std::cin);
  bool good = true;
  for (const std::string& name : names) {
    std::ifstream file;
    if (std::string fault = name == "-" ? "" : open_file(name, file); !fault.empty()) {
      good = complain(fault.insert(0, name + ": "));
      continue;
    }
    std::istream& text = name == "-" ? std::cin : file;
    good = encode_records(to, protocols, name, text) && good;
  }
  return good;
}

bool run_wanted(const arguments& wanted) {
  if (wanted.json && !wanted.list) throw irp::Error("--json goes with --list only");
  if (wanted.list && !wanted.words.empty()) throw irp::Error("--list goes without a protocol");
  if (wanted.send && (wanted.list || wanted.from_json)) {
    throw irp::Error("--send goes with a protocol and its numbers only");
  }
  if (wanted.send && !is_for_sendir(*find_form(wanted.form))) {
    throw irp::Error("--send goes with the forms of sendir only: raw, csv and pronto");
  }
  irp::Protocols protocols;
  const bool good = load(wanted, protocols);
  if (wanted.list) {
    list(protocols, wanted.json);
    return good;
  }
  encoder to(wanted);
  const bool all = wanted.from_json ? encode_files(to, protocols, wanted.words)
                                    : to.encode(code_of_words(protocols, wanted.words));
  to.end();
  return all && good;
}

int run(int argc, char** argv) {
  arguments wanted;
  options line(kProgram, "Renders the signal of a protocol and its numbers.");
  line.add_option("PROTOCOL", wanted.words, "A protocol and its numbers, as D=4 F=8")
      ->option_text("NAME=NUMBER ...");
  line.add_option("-n,--repeats", wanted.repeats, "Hold the key for so many more frames")
      ->type_name("N")
      ->check(CLI::Range(0, kMostRepeats));
  line.add_form("-t,--to", wanted.form,
                "The form to write; raw without it. sendir takes raw, csv and pronto");
  line.add_option("-d,--definitions", wanted.definitions, "A file with further protocols")
      ->type_name("FILE");
  line.add_flag("-l,--list", wanted.list, "Show all protocols and who knows them");
  line.add_flag("-j,--json", wanted.json, "Show them as JSON");
  line.add_flag("-f,--from-json", wanted.from_json,
                "Send what vantrel-json decoded, read from files or standard input");
  line.add_flag("-s,--send", wanted.send, "Run vantrel sendir with the signal");
  if (const auto status = line.read(argc, argv)) return *status;

  return finish(kProgram, run_wanted(wanted));
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a signal is no news here
  return run_guarded(kProgram, run, argc, argv);
}
