// SPDX-License-Identifier: GPL-3.0-or-later
// What is wrong with a definition, its parameters or a value made of them.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace irp {

struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A text that is not IRP notation; the column counts its characters from 1.
struct SyntaxError : Error {
  SyntaxError(size_t place, const std::string& what) : Error(what), column(place) {}
  size_t column;
};

}  // namespace irp
