// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/interrupt.h"

#include <sys/time.h>

#include <atomic>
#include <csignal>

namespace interrupt {
namespace {

// A signal may come just before the system call that it should have cut short: the ticks do it.
constexpr suseconds_t kTickUs = 20'000;
constexpr std::sig_atomic_t kMostTicks = 50;  // a second

volatile std::sig_atomic_t waiting = 0;
volatile std::sig_atomic_t pending = 0;
volatile std::sig_atomic_t ticks = 0;
void (*volatile terminal_restorer)() = nullptr;

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaddset(&action.sa_mask, SIGINT);
  sigaddset(&action.sa_mask, SIGALRM);
  sigaction(signal, &action, nullptr);
}

void tick_every(suseconds_t us) {
  const itimerval setting = {{0, us}, {0, us}};
  setitimer(ITIMER_REAL, &setting, nullptr);
}

void let_the_next_one_kill() {
  handle(SIGINT, SIG_DFL);
  sigset_t interrupts;
  sigemptyset(&interrupts);
  sigaddset(&interrupts, SIGINT);
  sigprocmask(SIG_UNBLOCK, &interrupts, nullptr);
}

}  // namespace

void install(void (*handler)(int)) {
  handle(SIGINT, handler);
  handle(SIGALRM, handler);
}

moment arrived(int signal) {
  const bool safe = waiting != 0;
  if (!safe && signal == SIGINT && pending == 0) {
    pending = 1;
    tick_every(kTickUs);
    return moment::kLater;
  }
  if (!safe && signal == SIGALRM) {
    ticks = ticks + 1;
    if (ticks < kMostTicks) return moment::kLater;
  }
  tick_every(0);
  pending = 0;  // the clean-up has waits of its own
  let_the_next_one_kill();
  return safe ? moment::kSafe : moment::kAnywhere;
}

void checkpoint() {
  const wait none;
}

wait::wait() : outer_(waiting) {
  waiting = 1;
  // Marked before the question: a signal between the two finds the wait.
  std::atomic_signal_fence(std::memory_order_seq_cst);
  if (pending != 0) std::raise(SIGINT);
}

wait::~wait() {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  waiting = outer_;
}

void set_terminal_restorer(void (*restorer)()) {
  terminal_restorer = restorer;
}

void restore_terminal() {
  void (*const restorer)() = terminal_restorer;
  if (restorer != nullptr) restorer();
}

}  // namespace interrupt
