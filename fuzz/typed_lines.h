// SPDX-License-Identifier: GPL-3.0-or-later
// In place of the line editor: hands out the lines of a text.
#pragma once

#include <string_view>

void type_lines(std::string_view text);
