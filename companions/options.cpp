// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/options.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iomanip>
#include <iostream>
#include <set>
#include <sstream>

#include "companions/formats/form.h"
#include "version_info.h"

namespace companions {

options::options(const std::string& program, const std::string& about) : CLI::App(about, program) {
  set_help_flag("-h,--help", "Show this help");
  set_version_flag("-V,--version", program + ' ' + kVersionText, "Show the version");
}

void options::add_files(std::vector<std::string>& files) {
  add_option("FILE", files, "What to read; standard input without any and for -")->type_name("");
}

void options::add_form(const std::string& flags, std::string& name, const std::string& about) {
  constexpr int kNameColumns = 14;
  std::set<std::string> names;
  std::ostringstream list;
  list << "FORM is one of:\n" << std::left;
  const auto add = [&](std::string_view its_name, std::string_view its_about) {
    names.emplace(its_name);
    list << "  " << std::setw(kNameColumns) << its_name << its_about << '\n';
  };
  for (const form* const one : forms()) add(one->name, one->about);
  add("csv", "comma, as sendir calls it");
  add_option(flags, name, about)
      ->type_name("FORM")
      ->check(CLI::IsMember(std::move(names)).description(""));
  footer(list.str());
}

std::optional<int> options::read(int argc, char** argv) {
  try {
    parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    return exit(end) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  return {};
}

int finish(const char* program, bool ok) {
  if (std::cout.flush()) return ok ? EXIT_SUCCESS : EXIT_FAILURE;
  std::fprintf(stderr, "%s: could not write to standard output\n", program);
  return EXIT_FAILURE;
}

int run_guarded(const char* program, int (*run)(int argc, char** argv), int argc,
                char** argv) noexcept {
  try {
    return run(argc, argv);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "%s: %s\n", program, fault.what());
  } catch (...) {
    std::fprintf(stderr, "%s: something unexpected happened\n", program);
  }
  return EXIT_FAILURE;
}

}  // namespace companions
