// SPDX-License-Identifier: GPL-3.0-or-later
// The state behind fake_usb.h, shared by the fakes of the two libraries and the clock.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace fake_usb {

using bytes = std::vector<uint8_t>;

struct device {
  uint16_t vid = 0x1209;
  uint16_t pid = 0x0001;
  int iface = 2;
  std::string path;
  std::string manufacturer = "Vantrel";
  std::array<uint16_t, 3> version{4, 8, 0};
  int refusals = 0;  // opens that still fail
  bool present = true;
  int generation = 0;  // grows with every unplugging: older handles stay dead
  std::deque<bytes> input;
};

struct fault {
  std::string command;
  int countdown;  // 0 for every time, else the how-manieth from now
  std::string kind;
  std::vector<std::string> arguments;
};

/// Ctrl-C in a library call.
struct call_interrupt {
  std::string call;
  int countdown;  // the how-manieth from now
};

struct world {
  bool active = false;
  uint64_t now = 0;
  std::vector<std::unique_ptr<device>> devices;
  std::multimap<uint64_t, std::function<void()>> events;
  std::vector<fault> faults;
  std::map<std::string, int> failures;
  std::vector<std::string> calls;
  bool forgetful = false;  // `calls` stays empty
  int open_handles = 0;
  bool interrupted = false;  // the wait, by a signal whose handler returned
  std::vector<call_interrupt> call_interrupts;
  // The program's timer: SIGALRM comes every so many µs, 0 for never.
  uint64_t tick_period = 0;
  uint64_t next_tick = 0;

  /// Moves time to `until`, letting happen what is due. Stops early, with false, when `ready`
  /// holds or a signal came.
  bool advance(uint64_t until, const std::function<bool()>& ready);

  void record(std::string call);
  /// The code with which `function` is told to fail, or 0.
  [[nodiscard]] int failure(const std::string& function) const;

  void handle_write(device& target, const bytes& report, bool* failed);
};

world& the_world();

extern int library_calls;  // that the program is in: what happens there is not its own doing

/// Lasts as long as a call of a library function.
struct library_call {
  library_call() { library_calls++; }
  ~library_call() { library_calls--; }
  library_call(const library_call&) = delete;
  library_call& operator=(const library_call&) = delete;
};

/// The parts in a row.
template <typename... Parts>
std::string text(const Parts&... parts) {
  std::ostringstream result;
  (result << ... << parts);
  return result.str();
}

std::string to_hex(const bytes& data);

/// Timing reports as the device sends them.
std::vector<bytes> timing_reports(const std::vector<uint16_t>& entries, uint16_t elapsed_ms);

}  // namespace fake_usb
