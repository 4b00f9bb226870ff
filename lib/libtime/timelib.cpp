// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libtime/timelib.h"

#include <ctime>

#include "lib/liblog/logging.h"
#include "lib/libutil/util.h"

namespace {

constexpr const char* kModule = "lib/libtime/timelib";
constexpr int kSmallestDate = 30;
constexpr int kEpochDigits = 15;

timeval now() {
  timeval time{};
  gettimeofday(&time, nullptr);
  return time;
}

}  // namespace

uint64_t time_elapsed_us(const struct timeval* start) {
  constexpr int64_t kUsPerSecond = 1000000;
  const timeval end = now();
  return static_cast<uint64_t>((end.tv_sec - start->tv_sec) * kUsPerSecond + end.tv_usec -
                               start->tv_usec);
}

int time_has_elapsed_us(const struct timeval* start, uint64_t us) {
  return time_elapsed_us(start) >= us ? 1 : 0;
}

float get_tstamp() {
  const timeval time = now();
  tm local{};
  localtime_r(&time.tv_sec, &local);
  return static_cast<float>(local.tm_min * 100 + local.tm_sec +
                            static_cast<double>(time.tv_usec) / 1000000.0);
}

void epoch_to_date(uint32_t seconds, char* date, int date_size) {
  if (date == nullptr) {
    _log(1, "[E] %s %s(%d): pointer to string invalid\n", kModule, __func__, __LINE__);
    return;
  }
  if (date_size < kSmallestDate) {
    _log(1, "[E] %s %s(%d): date string not large enough\n", kModule, __func__, __LINE__);
    return;
  }
  // Printed signed: seconds from 2038 on do not parse and give the date of an empty tm.
  char epoch[kEpochDigits];
  ssprintf(epoch, sizeof epoch, "%d", static_cast<int>(seconds));
  tm local{};
  strptime(epoch, "%s", &local);
  std::strftime(date, static_cast<size_t>(date_size), "%b %d %H:%M %Y", &local);
}
