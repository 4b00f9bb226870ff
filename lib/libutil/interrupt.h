// SPDX-License-Identifier: GPL-3.0-or-later
// Where Ctrl-C may end the program.
//
// A signal can come in the middle of printf or malloc, where nothing but a system call is safe.
// So the program names its waits (for a line, for the device, for time to pass): there its data
// and its buffered output are whole, and the handler may flush, close the device and leave.
//
//   SIGINT in a wait          the program ends there and then
//   SIGINT anywhere else      it ends at the next wait, with the line it was printing complete
//   no wait within a second   it ends where it is (a full pipe that nobody reads, for one)
//   a second SIGINT           the same, at once
#pragma once

namespace interrupt {

/// Makes `handler` the SIGINT handler. It must begin by asking arrived().
void install(void (*handler)(int));

enum class moment {
  kLater,    // the handler must return; it is called again
  kSafe,     // in a wait: the handler may do whatever the program may
  kAnywhere  // the program has to end, but its buffers may be half changed
};

/// For the handler. When the answer is to end, a further SIGINT kills the process.
moment arrived(int signal);

/// A wait of no length: ends the program if a SIGINT has come.
void checkpoint();

/// A wait lasts as long as this object. Its scope may hold system calls and library calls that
/// block, and code that neither prints nor leaves data half changed.
class wait {
 public:
  wait();
  ~wait();
  wait(const wait&) = delete;
  wait& operator=(const wait&) = delete;

 private:
  int outer_;
};

/// What puts the terminal right before the program ends; null for nothing. Called from the
/// handler: system calls only.
void set_terminal_restorer(void (*restorer)());
void restore_terminal();

}  // namespace interrupt
