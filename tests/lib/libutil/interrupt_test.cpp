// SPDX-License-Identifier: GPL-3.0-or-later
// The ticks that cut waits short; what they do to a program is in tests/src/interrupt_test.cpp.
#include "lib/libutil/interrupt.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <csignal>

namespace {

/// The time to the next tick and from one to the next, in µs.
std::pair<suseconds_t, suseconds_t> ticks() {
  itimerval left{};
  getitimer(ITIMER_REAL, &left);
  return {left.it_value.tv_usec, left.it_interval.tv_usec};
}

int ended_by = 0;

TEST(Interrupt, TicksGoOnUntilTheProgramHasEnded) {
  ended_by = 0;
  interrupt::install([](int signal) {
    ended_by = signal;
    interrupt::let_waits_be();
  });
  interrupt::checkpoint();
  EXPECT_EQ(ended_by, 0);

  std::raise(SIGINT);
  EXPECT_TRUE(interrupt::noted());
  const auto [first, interval] = ticks();
  EXPECT_GT(first, 0);
  EXPECT_EQ(interval, 20'000) << "a wait that begins after a tick is cut short by the next";

  const itimerval soon = {{0, 20'000}, {0, 90'000}};
  setitimer(ITIMER_REAL, &soon, nullptr);
  std::raise(SIGINT);
  EXPECT_LE(ticks().first, 90'000) << "Ctrl-C held down does not put the first tick off";

  interrupt::checkpoint();
  EXPECT_EQ(ended_by, SIGINT);
  EXPECT_EQ(ticks(), std::pair(suseconds_t{0}, suseconds_t{0}));
  EXPECT_FALSE(interrupt::noted()) << "points passed from here on do not end it again";

  sigset_t blocked;
  sigprocmask(SIG_SETMASK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGINT), 1);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int signal : {SIGINT, SIGALRM}) std::signal(signal, SIG_DFL);
}

}  // namespace
