// SPDX-License-Identifier: GPL-3.0-or-later
// From a signal's last report to its line at the other end of a pipe, on the simulated device.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "src/common.h"
#include "tests/support/fake_usb.h"
#include "tests/support/fake_world.h"

namespace {

/// Standard output into a pipe that the benchmark reads, as long as it lives.
class output_pipe {
 public:
  output_pipe() : terminal_(dup(STDOUT_FILENO)) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) std::abort();
    std::fflush(stdout);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    read_end_ = ends[0];
  }
  ~output_pipe() {
    dup2(terminal_, STDOUT_FILENO);
    close(terminal_);
    close(read_end_);
  }
  output_pipe(const output_pipe&) = delete;
  output_pipe& operator=(const output_pipe&) = delete;

  [[nodiscard]] ssize_t read_line() const {
    std::array<char, 8192> line{};
    return read(read_end_, line.data(), line.size());
  }

 private:
  int terminal_;
  int read_end_ = -1;
};

void last_report_to_pipe(benchmark::State& state, void (*print)(ir_packet*)) {
  fake_usb::reset();
  fake_usb::play("device");
  appdata_priv session{};
  zarvo_init(&session);
  auto& input = fake_usb::the_world().devices.front()->input;
  const std::vector<uint16_t> nec = [] {
    std::vector<uint16_t> entries = {9024, 4512};
    for (int i = 0; i < 32; i++) entries.insert(entries.end(), {564, 564});
    entries.push_back(564);
    return entries;
  }();
  const std::vector<fake_usb::bytes> reports = fake_usb::timing_reports(nec, 40);
  {
    const output_pipe pipe;
    ir_packet packet{};
    for (auto _ : state) {
      state.PauseTiming();
      fake_usb::the_world().calls.clear();
      input.assign(reports.begin(), reports.end());
      for (size_t i = 1; i < reports.size(); i++) zv_ir_packet_poll(session.dev, &packet);
      state.ResumeTiming();
      if (zv_ir_packet_poll(session.dev, &packet) != 1) std::abort();
      print(&packet);
      std::fflush(stdout);
      if (pipe.read_line() <= 0) std::abort();
    }
    state.SetItemsProcessed(state.iterations());
  }
  zarvo_deinit(&session);
}

BENCHMARK_CAPTURE(last_report_to_pipe, raw, print_raw);
BENCHMARK_CAPTURE(last_report_to_pipe, comma, print_comma_delim);
BENCHMARK_CAPTURE(last_report_to_pipe, pronto, print_pronto);

}  // namespace

BENCHMARK_MAIN();
