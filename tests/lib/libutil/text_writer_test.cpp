// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/text_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

std::string printf_of(const char* format, uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

TEST(TextWriter, WritesNumbersAsPrintfDoes) {
  std::array<char, 16> room;
  const auto expect_same = [&room](uint32_t value) {
    const auto text = [&](auto add) { return std::string(add(text_writer(room)).text()); };
    ASSERT_EQ(text([=](auto to) { return to.add_decimal(value); }), printf_of("%u", value));
    ASSERT_EQ(text([=](auto to) { return to.add_hex(value, 2); }), printf_of("%02X", value));
    ASSERT_EQ(text([=](auto to) { return to.add_hex(value, 4); }), printf_of("%04X", value));
  };
  for (uint32_t value = 0; value <= UINT16_MAX + 1; value++) expect_same(value);
  for (const uint32_t value : {99'999U, 0x0FFF'FFFFU, 0x1000'0000U, UINT32_MAX}) expect_same(value);
}

TEST(TextWriter, CutsWhatDoesNotFit) {
  const std::string full = "ab  12345671234ABC";
  for (size_t size = 0; size <= full.size(); size++) {
    std::string room(full.size() + 1, '#');
    text_writer to({room.data(), size});
    to.add("a").add_padded("b", 2).add(' ').add_decimal(1234567).add_decimal(1234).add_hex(0xABC,
                                                                                           1);
    const std::string_view text = to.text();
    EXPECT_LE(text.size(), size);
    EXPECT_EQ(room[size], '#') << "nothing is written behind the room";
    EXPECT_TRUE(size < full.size() || text == full) << text;
  }
}

}  // namespace
