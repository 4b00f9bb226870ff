// SPDX-License-Identifier: GPL-3.0-or-later
// What reading patterns and writing what decode writes costs by itself: `floor FILE` reads comma
// lists and writes the raw form, Pronto hex and four lines as long as those of the decoders.
// Nothing is decoded and nothing looked at twice, so decode cannot take less than this.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <span>
#include <string_view>

namespace {

constexpr std::string_view kProntoHead = "0000 006D 0022 0002 ";
constexpr unsigned kPeriodUs = 26;
constexpr std::string_view kTail =
    "05F1 0156 0056 0015 0E4A\n"
    ":: ZARVO    :: NECX          - scancode: 0xAF8DA644\n"
    ":: DECODEIR :: NEC-f16       - scancode: 0x004E  D:0x0044  S:0x00A6\n"
    ":: ZARVO    :: NECX          - scancode: 0xAF8DA644\n"
    ":: ARDUINO  :: NEC           - scancode: 0x2265B1F5 {32}\n"
    "++++\n\n";

std::array<char, 1 << 16> input;
std::array<uint16_t, 100> entries;
std::array<char, 4096> output;

std::span<const uint16_t> parse(std::string_view line) {
  size_t count = 0;
  const char* const end = line.data() + line.size();
  for (const char* at = line.data(); at < end && count < entries.size(); ++count) {
    at = std::from_chars(at, end, entries[count]).ptr + 1;  // behind the comma
  }
  return std::span(entries).first(count);
}

char* put(char* to, std::string_view text) {
  return std::copy(text.begin(), text.end(), to);
}

void print(std::span<const uint16_t> durations) {
  char* const end = output.data() + output.size();
  char* to = output.data();
  for (size_t i = 0; i < durations.size(); ++i) {
    *to++ = i % 2 == 0 ? '+' : '-';
    to = std::to_chars(to, end, durations[i]).ptr;
    *to++ = ' ';
  }
  to = put(to, "\n");
  to = put(to, kProntoHead);
  for (const uint16_t duration : durations) {
    std::array<char, 4> digits;
    const auto [last, error] =
        std::to_chars(digits.begin(), digits.end(), duration / kPeriodUs, 16);
    to = std::fill_n(to, digits.end() - last, '0');
    to = std::transform(digits.begin(), last, to,
                        [](char c) { return static_cast<char>(c >= 'a' ? c - 'a' + 'A' : c); });
    *to++ = ' ';
  }
  to = put(to, kTail);
  (void)!write(STDOUT_FILENO, output.data(), static_cast<size_t>(to - output.data()));
}

}  // namespace

int main(int argc, char** argv) {
  const int fd = argc == 2 ? open(argv[1], O_RDONLY) : -1;
  if (fd == -1) return 1;
  size_t kept = 0;
  for (ssize_t got = 0; (got = read(fd, input.data() + kept, input.size() - kept)) > 0;) {
    std::string_view rest(input.data(), kept + static_cast<size_t>(got));
    for (size_t line = 0; (line = rest.find('\n')) != rest.npos; rest.remove_prefix(line + 1)) {
      print(parse(rest.substr(0, line)));
    }
    kept = rest.size();
    std::copy(rest.begin(), rest.end(), input.begin());
  }
  return 0;
}
