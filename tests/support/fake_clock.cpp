// SPDX-License-Identifier: GPL-3.0-or-later
// The system's sleeping and clock functions on virtual time, once a script is played.
#include "tests/support/fake_clock.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "tests/support/fake_world.h"

namespace {

const timeval* stopped_at = nullptr;

constexpr long kNsPerUs = 1000;
constexpr uint64_t kUsPerSecond = 1'000'000;

uint64_t to_us(const timespec& time) {
  return static_cast<uint64_t>(time.tv_sec) * kUsPerSecond +
         static_cast<uint64_t>(time.tv_nsec / kNsPerUs);
}

uint64_t to_us(const timeval& time) {
  return static_cast<uint64_t>(time.tv_sec) * kUsPerSecond + static_cast<uint64_t>(time.tv_usec);
}

}  // namespace

void stop_clock_at(const timeval* time) {
  stopped_at = time;
}

extern "C" {

int nanosleep(const timespec* requested, timespec* remaining) {
  const fake_usb::library_call here;
  fake_usb::world& world = fake_usb::the_world();
  if (!world.active) {
    const int error = clock_nanosleep(CLOCK_REALTIME, 0, requested, remaining);
    errno = error;
    return error == 0 ? 0 : -1;
  }
  const uint64_t until = world.now + to_us(*requested);
  if (world.advance(until, [] { return false; })) return 0;
  const uint64_t left = until - world.now;
  if (remaining != nullptr) {
    remaining->tv_sec = static_cast<time_t>(left / kUsPerSecond);
    remaining->tv_nsec = static_cast<long>(left % kUsPerSecond) * kNsPerUs;
  }
  errno = EINTR;
  return -1;
}

/// The real time, moved on by what the program believes to have slept, unless it is stopped.
int gettimeofday(timeval* now, void* /*zone*/) noexcept {
  if (stopped_at != nullptr) {
    *now = *stopped_at;
    return 0;
  }
  timespec real{};
  clock_gettime(CLOCK_REALTIME, &real);
  const uint64_t us = to_us(real) + fake_usb::the_world().now;
  now->tv_sec = static_cast<time_t>(us / kUsPerSecond);
  now->tv_usec = static_cast<suseconds_t>(us % kUsPerSecond);
  return 0;
}

/// Both clocks: a program on virtual time still waits for pipes and terminals in real time.
int setitimer(__itimer_which_t which, const itimerval* setting, itimerval* before) noexcept {
  fake_usb::world& world = fake_usb::the_world();
  world.tick_period = to_us(setting->it_interval);
  world.next_tick = world.now + to_us(setting->it_value);
  return static_cast<int>(syscall(SYS_setitimer, which, setting, before));
}

}  // extern "C"
