// SPDX-License-Identifier: GPL-3.0-or-later
// The files that a companion program was given, pattern by pattern.
#pragma once

#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "companions/formats/reader.h"

namespace companions {

/// A pattern or fault and where it came from.
struct input {
  std::string source;  // the file's name, "-" for standard input
  read_result read;
  size_t position;  // characters of this file read so far
  bool live;        // more comes as it happens: from a pipe or a terminal, not a file that keeps
};

enum class verdict { kGoOn, kFailed, kStop };

/// Opens a file for reading; empty, or the reason why it cannot be read.
std::string open_file(const std::string& name, std::ifstream& file);

/// Hands every pattern and fault of the named files ("-" and no name: standard input) to `use`,
/// as their lines arrive, until it says stop. Unreadable files are named on standard error.
/// False when `use` failed once or a file could not be read.
/// All of them are of the form `from`, or of any where that is null.
bool read_inputs(std::vector<std::string> names, const std::function<verdict(const input&)>& use,
                 const form* from = nullptr);

/// Names a fault and its place on standard error.
void print_fault(const input& where, const bad_line& what);

}  // namespace companions
