// SPDX-License-Identifier: GPL-3.0-or-later
// The command line, as every companion reads it: --help, --version, files, exit statuses.
//
//   bool first = false;
//   std::vector<std::string> files;
//   companions::options line("vantrel-json", "Reads patterns and writes JSON.");
//   line.add_flag("-1,--first", first, "Stop at the first pattern");
//   line.add_files(files);
//   if (const auto status = line.read(argc, argv)) return *status;
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace companions {

/// CLI11's parser with what all companions share; a program adds its own options to it.
class options : public CLI::App {
 public:
  /// `about` is what --help says of the program.
  options(const std::string& program, const std::string& about);

  /// Takes the words that are no options as names of files, "-" for standard input.
  void add_files(std::vector<std::string>& files);

  /// An option that takes the name of a form; --help lists them all.
  void add_form(const std::string& flags, std::string& name, const std::string& about);

  /// Reads the words into the variables that the options were added with. Holds the exit status
  /// when the program is to end now: success after --help and --version, failure after a wrong
  /// word, which standard error explains.
  std::optional<int> read(int argc, char** argv);
};

/// Ends the output of a program: its exit status, failure with a message where standard output
/// could not take all of it.
int finish(const char* program, bool ok);

/// Runs the whole of a program: what it throws ends it with a message and status 1.
int run_guarded(const char* program, int (*run)(int argc, char** argv), int argc,
                char** argv) noexcept;

}  // namespace companions
