// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/formats/inputs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "companions/formats/text.h"

namespace companions {

namespace {

bool is_live(const std::string& source) {
  struct stat found = {};
  const int failed = source == "-" ? fstat(STDIN_FILENO, &found) : stat(source.c_str(), &found);
  return failed == 0 && !S_ISREG(found.st_mode);
}

/// False when `use` asked to stop.
bool read_one(std::istream& text, const std::string& source, const form* from, bool& ok,
              const std::function<verdict(const input&)>& use) {
  pattern_reader reader(text, from);
  const bool live = is_live(source);
  while (auto found = reader.next()) {
    const verdict said = use({source, std::move(*found), reader.position(), live});
    if (said == verdict::kFailed) ok = false;
    if (said == verdict::kStop) return false;
  }
  return true;
}

}  // namespace

void print_fault(const input& where, const bad_line& what) {
  std::cerr << where.source << ':' << where.read.line << ':' << what.column << ": "
            << printable(what.what) << '\n';
}

std::string open_file(const std::string& name, std::ifstream& file) {
  errno = 0;
  file.open(name);
  // A folder opens, but cannot be read; an empty file is no fault.
  if (file && (file.peek() != std::ifstream::traits_type::eof() || errno == 0)) {
    file.clear();
    return {};
  }
  return std::strerror(errno);
}

bool read_inputs(std::vector<std::string> names, const std::function<verdict(const input&)>& use,
                 const form* from) {
  if (names.empty()) names.emplace_back("-");
  std::ios::sync_with_stdio(false);

  bool ok = true;
  for (const std::string& source : names) {
    if (source == "-") {
      if (!read_one(std::cin, source, from, ok, use)) return ok;
      continue;
    }
    std::ifstream file;
    if (const std::string fault = open_file(source, file); !fault.empty()) {
      std::cerr << source << ": " << fault << '\n';
      ok = false;
      continue;
    }
    if (!read_one(file, source, from, ok, use)) return ok;
  }
  return ok;
}

}  // namespace companions
