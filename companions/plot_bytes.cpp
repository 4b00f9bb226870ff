// SPDX-License-Identifier: GPL-3.0-or-later
// The bytes of patterns as text, side by side: which bits does a key change?
#include <algorithm>
#include <array>
#include <cstdio>

#include "companions/plot.h"

namespace companions {

namespace {

constexpr size_t kByteColumns = 3;  // two digits and a blank
constexpr size_t kBitsInByte = 8;

/// One pattern's part of a section.
struct bytes_row {
  std::string place;
  std::string_view bits;
  std::vector<unsigned char> bytes;
};

/// Whether the rows do not all have the same byte here.
bool differs(const std::vector<bytes_row>& rows, size_t byte) {
  return std::any_of(rows.begin(), rows.end(), [&](const bytes_row& row) {
    const auto& first = rows[0].bytes;
    return byte >= row.bytes.size() || byte >= first.size() || row.bytes[byte] != first[byte];
  });
}

void write_row(std::ostream& out, const bytes_row& row, size_t columns) {
  out << "  " << row.place << std::string(columns - row.place.size(), ' ');
  for (const unsigned byte : row.bytes) {
    std::array<char, 8> text;
    std::snprintf(text.data(), text.size(), " %02X", byte);
    out << text.data();
  }
  out << "  (" << row.bits.size() << " bits)\n";
}

/// Marks what differs below the rows, and spells those bits in the order sent.
void write_differences(std::ostream& out, const std::vector<bytes_row>& rows, size_t columns) {
  size_t most = 0;
  for (const bytes_row& row : rows) most = std::max(most, row.bytes.size());
  std::string marks;
  std::string spelled;
  for (size_t byte = 0; byte < most; ++byte) {
    if (!differs(rows, byte)) continue;
    marks.resize(byte * kByteColumns, ' ');
    marks += " ^^";
    spelled += "  byte " + std::to_string(byte + 1) + ':';
    for (const bytes_row& row : rows) {
      const auto from = std::min(byte * kBitsInByte, row.bits.size());
      const auto bits = row.bits.substr(from, kBitsInByte);
      spelled.append(" ").append(bits.empty() ? "-" : bits);
    }
    spelled += '\n';
  }
  if (!marks.empty()) out << std::string(columns + 2, ' ') << marks << '\n' << spelled;
}

}  // namespace

void bytes_text(std::ostream& out, const std::vector<plotted>& signals, bit_order order) {
  size_t columns = 0;
  size_t most = 0;
  for (const plotted& signal : signals) {
    columns = std::max(columns, signal.place.size());
    most = std::max(most, signal.form.sections.size());
  }
  for (size_t i = 0; i < most; ++i) {
    std::vector<bytes_row> rows;
    for (const plotted& signal : signals) {
      if (i >= signal.form.sections.size()) continue;
      const std::string& bits = signal.form.sections[i].bits;
      if (!bits.empty()) rows.push_back({signal.place, bits, bytes_of(bits, order)});
    }
    if (rows.empty()) continue;
    out << "section " << i + 1 << '\n';
    for (const bytes_row& row : rows) write_row(out, row, columns);
    write_differences(out, rows, columns);
  }
}

}  // namespace companions
