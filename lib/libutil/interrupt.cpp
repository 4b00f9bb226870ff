// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/interrupt.h"

#include <sys/time.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>

namespace interrupt {
namespace {

// The first tick leaves a reader of standard output that is only slow some time.
constexpr suseconds_t kFirstTickUs = 100'000;
constexpr suseconds_t kTickUs = 20'000;

volatile std::sig_atomic_t signal_noted = 0;
void (*end_program)(int signal) = nullptr;

void set_ticks(suseconds_t interval_us, suseconds_t first_us) {
  const itimerval setting = {{0, interval_us}, {0, first_us}};
  setitimer(ITIMER_REAL, &setting, nullptr);
}

/// A tick (SIGALRM) has nothing to do but to come.
void note(int signal) {
  if (signal != SIGINT || signal_noted != 0) return;
  signal_noted = signal;
  const int unchanged = errno;
  set_ticks(kTickUs, kFirstTickUs);
  errno = unchanged;
}

void note_signal(int signal, int flags) {
  struct sigaction action = {};
  action.sa_handler = note;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

void block(std::initializer_list<int> signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals) sigaddset(&set, signal);
  sigprocmask(SIG_BLOCK, &set, nullptr);
}

}  // namespace

void install(void (*end)(int signal)) {
  end_program = end;
  take_back();
}

void take_back() {
  note_signal(SIGALRM, 0);
  note_signal(SIGINT, SA_RESTART);  // reads and writes wait on for the first tick
}

bool noted() {
  return signal_noted != 0;
}

void checkpoint() {
  if (!noted()) return;
  block({SIGINT});
  signal_noted = 0;  // what `end` does passes points of its own
  end_program(SIGINT);
}

void let_waits_be() {
  set_ticks(0, 0);
  block({SIGALRM});
}

}  // namespace interrupt
