// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-encode: the signal of a protocol and its numbers, for `vantrel sendir` and others.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <set>

#include "companions/encode.h"
#include "companions/encode_json.h"
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
  std::ifstream file(wanted.definitions);
  if (!file) throw irp::Error("cannot read " + wanted.definitions);
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

/// Says once for a protocol that the carrier will not be the one it needs.
void warn_of_carrier(const irp::Protocol& protocol) {
  static std::set<std::string> said;
  const auto note = carrier_note(protocol.name(), protocol.carrier());
  if (note && said.insert(protocol.name()).second) complain(*note);
}

/// Ends as `vantrel sendir` does.
[[noreturn]] void send(const std::string& form, const std::string& text) {
  const std::string option = "--" + form + "=" + text;
  execlp(vantrel_program().c_str(), "vantrel", "sendir", option.c_str(), nullptr);
  throw irp::Error("cannot run vantrel sendir");
}

void encode(const arguments& wanted, const key_code& code) {
  const press sent = render_press(*code.protocol, code.parameters, wanted.repeats);
  const std::string text = sendir_text(sent, wanted.form);
  warn_of_carrier(*code.protocol);
  if (wanted.form == "pronto" && sent.has_ending) {
    complain("Pronto hex leaves out what " + code.protocol->name() + " sends at the end");
  }
  if (wanted.send) send(wanted.form, text);
  std::cout << text << '\n' << std::flush;
}

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
bool encode_records(const arguments& wanted, const irp::Protocols& protocols,
                    const std::string& source, std::istream& text) {
  bool good = true;
  std::string line;
  for (size_t number = 1; irp::next_line(text, line, kLongestRecord); ++number) {
    if (line.empty()) continue;
    try {
      if (line.size() > kLongestRecord) throw irp::Error("the line is too long");
      encode(wanted, code_of_record(protocols, line));
    } catch (const irp::Error& fault) {
      good = complain(source + ':' + std::to_string(number) + ": " + fault.what());
    }
    if (!std::cout) return false;
  }
  return good;
}

bool encode_files(const arguments& wanted, const irp::Protocols& protocols) {
  if (wanted.words.empty()) return encode_records(wanted, protocols, "-", std::cin);
  bool good = true;
  for (const std::string& name : wanted.words) {
    std::ifstream file;
    if (name != "-") file.open(name);
    if (!file) {
      good = complain("cannot read " + name);
      continue;
    }
    std::istream& text = name == "-" ? std::cin : file;
    good = encode_records(wanted, protocols, name, text) && good;
  }
  return good;
}

bool run(const arguments& wanted) {
  if (wanted.json && !wanted.list) throw irp::Error("--json goes with --list only");
  if (wanted.send && (wanted.list || wanted.from_json)) {
    throw irp::Error("--send goes with a protocol and its numbers only");
  }
  irp::Protocols protocols;
  const bool good = load(wanted, protocols);
  if (wanted.list) {
    list(protocols, wanted.json);
    return good;
  }
  if (wanted.from_json) return encode_files(wanted, protocols) && good;
  encode(wanted, code_of_words(protocols, wanted.words));
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a signal is no news here
  arguments wanted;
  options line(kProgram, "Renders the signal of a protocol and its numbers.");
  line.add_option("PROTOCOL", wanted.words, "A protocol and its numbers, as D=4 F=8")
      ->option_text("NAME=NUMBER ...");
  line.add_option("-n,--repeats", wanted.repeats, "Hold the key for so many more frames")
      ->type_name("N")
      ->check(CLI::Range(0, kMostRepeats));
  line.add_option("-t,--to", wanted.form, "Write as this option of sendir takes it")
      ->type_name("FORM")
      ->check(CLI::IsMember({"raw", "csv", "pronto"}));
  line.add_option("-d,--definitions", wanted.definitions, "A file with further protocols")
      ->type_name("FILE");
  line.add_flag("-l,--list", wanted.list, "Show all protocols and who knows them");
  line.add_flag("-j,--json", wanted.json, "Show them as JSON");
  line.add_flag("-f,--from-json", wanted.from_json,
                "Send what vantrel-json decoded, read from files or standard input");
  line.add_flag("-s,--send", wanted.send, "Run vantrel sendir with the signal");
  if (const auto status = line.read(argc, argv)) return *status;

  bool good = false;
  try {
    good = run(wanted);
  } catch (const irp::Error& fault) {
    complain(fault.what());
  }
  if (!std::cout.flush()) good = complain("could not write to standard output");
  return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
