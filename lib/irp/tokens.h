// SPDX-License-Identifier: GPL-3.0-or-later
// The words, numbers and signs of a text in IRP notation.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace irp {

struct Token {
  std::string_view text;  // of the text that was split
  size_t column;          // counted from 1
};

bool is_digit(char c);
bool is_letter(char c);  // of a name; digits too

/// In their order, and an empty one for the end.
std::vector<Token> tokens(std::string_view text);

}  // namespace irp
