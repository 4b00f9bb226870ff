// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/csv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/capture.h"

namespace {

using buffer = std::array<uint16_t, 50>;

TEST(Csv, FieldsBecomeEntries) {
  const std::tuple<const char*, ssize_t, std::vector<uint16_t>> cases[] = {
      {"9045, 4456, 610,", 3, {9045, 4456, 610}},
      {" \t9045,\v+4456,\r610 \n", 3, {9045, 4456, 610}},
      {"0, 9045, 4456, 610", 4, {0, 9045, 4456, 610}},
      {"9045,,4456", 2, {9045, 0, 4456}},
      {",5,6", 3, {0, 5, 6}},
      {",,", 1, {0, 0}},
      {"1,2, ", 2, {1, 2, 0}},
      {"-1,5", 2, {65535, 5}},
      {"65536,65537", 2, {0, 1}},
      {"1,65536,7", 2, {1, 0, 7}},
      {"12x4,y,+-3,- 3,0x10,7.5", 2, {12, 0, 0, 0, 0, 7}},
      {"-9223372036854775807,-9223372036854775808,-9", 2, {1, 0, 65527}},
      {"99999999999999999999999999,-99999999999999999999999999", 1, {65535, 0}},
  };
  for (const auto& [line, count, entries] : cases) {
    buffer buf;
    buf.fill(7);
    EXPECT_EQ(csv_to_buf(line, buf.data(), sizeof buf), count) << line;
    buffer expected{};  // what no field sets is 0
    std::copy(entries.begin(), entries.end(), expected.begin());
    EXPECT_EQ(buf, expected) << line;
  }
}

TEST(Csv, NumbersReadAsStrtollReadsThem) {
  const char* pieces[] = {"",  "0", "-", "+", " ", "9", "18446744073709551", "922337203685477580",
                          "7", "8", "x", "\t"};
  for (const char* a : pieces) {
    for (const char* b : pieces) {
      for (const char* c : pieces) {
        const std::string field = std::string(a) + b + c;
        buffer buf{};
        csv_to_buf((field + ",1").c_str(), buf.data(), sizeof buf);
        EXPECT_EQ(buf[0], static_cast<uint16_t>(std::strtoll(field.c_str(), nullptr, 10))) << field;
      }
    }
  }
}

TEST(Csv, RefusesWhatIsNoList) {
  buffer buf;
  buf.fill(7);
  const buffer untouched = buf;
  const auto refuses = [&](const char* line, uint16_t* target, size_t len, const char* message) {
    EXPECT_EQ(capture([&] { EXPECT_EQ(csv_to_buf(line, target, len), -1); }).err, message);
  };
  refuses(nullptr, buf.data(), sizeof buf, "[E] csv_to_buf(#): invalid line buffer, len = 0\n");
  refuses("", buf.data(), sizeof buf, "[E] csv_to_buf(#): invalid line buffer, len = 0\n");
  refuses("1,2", nullptr, sizeof buf, "[E] csv_to_buf(#): buf to fill is invalid\n");
  refuses("1,2", buf.data(), 99, "[E] csv_to_buf(#): buf to fill is invalid\n");
  EXPECT_EQ(buf, untouched);
  refuses("5", buf.data(), sizeof buf, "[E] csv_to_buf(#): worst CSV ever, not a single comma\n");
  EXPECT_EQ(buf, buffer{});
}

TEST(Csv, StopsAtTheBuffersEnd) {
  std::string line;
  for (int i = 1; i <= 51; i++) line += std::to_string(i) + ",";
  std::array<uint16_t, 51> buf;
  buf.fill(0x7777);
  const printed full = capture([&] { EXPECT_EQ(csv_to_buf(line.c_str(), buf.data(), 101), 50); });
  EXPECT_EQ(full.err, "[E] csv_to_buf(#): more than 50 entries, the rest is cut\n");
  EXPECT_EQ(buf[49], 50);
  unsigned char last[2];
  std::memcpy(last, &buf[50], sizeof last);
  EXPECT_EQ(last[0], 0) << "the odd byte of the capacity holds no entry";
  EXPECT_EQ(last[1], 0x77) << "and is the last one";

  line = line.substr(0, line.find(",51") + 1);
  EXPECT_EQ(capture([&] { EXPECT_EQ(csv_to_buf(line.c_str(), buf.data(), 100), 50); }).err, "");
}

}  // namespace
