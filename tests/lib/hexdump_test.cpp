// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/hexdump.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "tests/support/capture.h"

namespace {

std::string dump(size_t size) {
  std::vector<unsigned char> bytes(size);
  std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0x1A));
  return capture([&] { hexdump(stdout, bytes.data(), size); }).out;
}

TEST(Hexdump, RowsOfSixteenBytesAndTheirText) {
  EXPECT_EQ(dump(0), "");
  EXPECT_EQ(dump(17),
            "00: 1a 1b 1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29  ...... !\"#$%&'()\n"
            "10: 2a                                               *               \n");
  std::string tilde = "~\x7F\x80";
  EXPECT_EQ(capture([&] { hexdump(stdout, tilde.data(), tilde.size()); }).out,
            "00: 7e 7f 80                                         ~..             \n");
}

TEST(Hexdump, TheWholeSizeChoosesTheOffsetsWidth) {
  const std::pair<size_t, std::string> cases[] = {
      {255, "00: "}, {256, "0000: "}, {65535, "0000: "}, {65536, "00000000: "}};
  for (const auto& [size, offset] : cases) {
    EXPECT_EQ(dump(size).substr(0, offset.size()), offset) << size;
  }
}

}  // namespace
