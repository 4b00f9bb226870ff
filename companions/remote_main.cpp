// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-remote: keeps a remote in a file: learns its keys, sends them by name, tells which are
// pressed.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "companions/options.h"
#include "companions/remote/identity.h"
#include "companions/remote/learn.h"
#include "companions/remote/stored_keys.h"
#include "companions/remote/transceiver.h"
#include "companions/remote/watch.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

bool complain(const std::string& what) {
  std::fprintf(stderr, "vantrel-remote: %s\n", what.c_str());
  return false;
}

bool list(const std::string& file) {
  bool good = true;
  for (const stored_key& key : read_keys({file}, good)) {
    const std::vector<identity> frames = identify(key.signal);
    std::cout << key.signal.name << ": " << (frames.empty() ? "nothing" : frames.front().text())
              << '\n';
  }
  return good;
}

bool send(const std::string& file, const std::vector<std::string>& names, const transceiver& with) {
  bool good = true;
  const std::vector<stored_key> keys = read_keys({file}, good);
  // All names are looked up first, so that a wrong one does not leave a sequence half sent.
  std::vector<const pattern*> signals;
  for (const std::string& name : names) {
    const auto found = std::find_if(keys.begin(), keys.end(), [&name](const stored_key& key) {
      return key.signal.name == name;
    });
    if (found == keys.end()) {
      return complain(std::string("no key \"").append(name).append("\" in ").append(file));
    }
    signals.push_back(&found->signal);
  }
  for (const pattern* const signal : signals) good = with.send(*signal) && good;
  return good;
}

int run(int argc, char** argv) {
  std::string file, program = "vantrel";
  std::vector<std::string> files, names;
  options line("vantrel-remote", "Keeps a remote in a file: learns, sends and watches its keys.");
  line.add_option("-w,--with", program, "The program that hears and sends; vantrel without it")
      ->type_name("PROGRAM")
      ->check(CLI::IsMember(transceiver_names()).description(""));
  line.require_subcommand(1);
  line.fallthrough();
  auto* const learning = line.add_subcommand("learn", "Learn keys into an .ir file");
  auto* const sending = line.add_subcommand("send", "Send keys of a file by name");
  auto* const listing = line.add_subcommand("list", "Show the keys of a file");
  auto* const watching = line.add_subcommand("watch", "Print a JSON line for every press");
  for (auto* const one : {learning, sending, listing}) {
    one->add_option("FILE", file)->required()->type_name("");
  }
  sending->add_option("KEY", names)->required()->type_name("");
  watching->add_option("FILE", files)->required()->type_name("");
  if (const auto status = line.read(argc, argv)) return *status;

  const transceiver& with = *find_transceiver(program);
  bool good = false;
  if (*learning) good = learn(file, with);
  if (*sending) good = send(file, names, with);
  if (*listing) good = list(file);
  if (*watching) good = watch(files, with);
  return finish("vantrel-remote", good);
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a signal is no news here
  return run_guarded("vantrel-remote", run, argc, argv);
}
