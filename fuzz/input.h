// SPDX-License-Identifier: GPL-3.0-or-later
// Inputs in blocks of exactly their size, so that a sanitizer sees one byte too far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

/// The bytes up to the first zero, or all of them, as a text.
inline std::unique_ptr<char[]> exact_text(const uint8_t* data, size_t size) {
  const size_t length = size == 0 ? 0 : strnlen(reinterpret_cast<const char*>(data), size);
  auto text = std::make_unique<char[]>(length + 1);
  if (length > 0) std::memcpy(text.get(), data, length);
  return text;
}

/// Ends the run as a finding when something does not hold.
inline void require(bool holds) {
  if (!holds) __builtin_trap();
}
