// SPDX-License-Identifier: GPL-3.0-or-later
// What a pattern costs on its way through decode, step by step.
// What the code under test prints goes to a temporary file; the results go to standard output.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/count_allocations.h"
#include "lib/csv.h"
#include "lib/ir/DecodeIR/DecodeIR.h"
#include "lib/ir/arduino/arduino.h"
#include "lib/ir/decode_families.h"
#include "lib/ir/ir.h"
#include "lib/ir/ir_hash.h"
#include "src/cmds/decode.h"
#include "src/common.h"

namespace {

constexpr long kOutputLimit = 64L << 20;

std::string nec_line(uint32_t bits) {
  std::string line = "9024,4512";
  for (int i = 31; i >= 0; --i) line += (bits >> i & 1) != 0 ? ",564,1692" : ",564,564";
  return line + ",564";
}

// No analyzer stays with it, so the catch-all hashes it.
std::string unknown_line() {
  std::string line = "6000,3000";
  for (int i = 0; i < 20; ++i) line += i % 3 == 0 ? ",420,1260" : ",420,420";
  return line + ",420";
}

/// Device 5, function 21 in half bits of 889 µs: a one is a space and a mark.
std::string rc5_line() {
  constexpr uint32_t kBits = 0b1'0'00101'010101;  // second start bit, toggle, device, function
  std::vector<int> durations = {889};
  bool mark = true;
  const auto add = [&](bool is_mark) {
    if (is_mark == mark) {
      durations.back() += 889;
    } else {
      durations.push_back(889);
    }
    mark = is_mark;
  };
  for (int i = 12; i >= 0; --i) {
    const bool one = (kBits >> i & 1) != 0;
    add(!one);
    add(one);
  }
  if (!mark) durations.pop_back();
  std::string line;
  for (const int us : durations) line += std::to_string(us) + ',';
  return line;
}

/// Two halves of eight nibbles, each space longer by 136 µs a step; both add up to 0 modulo 16.
std::string xmp_line() {
  std::string line;
  for (const int nibble : {0, 9, 0, 15, 4, 4, 0, 0}) {
    line += "210," + std::to_string(760 + 136 * nibble) + ',';
  }
  line += "210,13800,";
  for (const int nibble : {0, 10, 0, 0, 2, 4, 0, 0}) {
    line += "210," + std::to_string(760 + 136 * nibble) + ',';
  }
  return line + "210";
}

std::string noise_line(int bursts) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> us(100, 2500);
  std::string line;
  for (int i = 0; i < 2 * bursts - 1; ++i) line += std::to_string(us(random)) + ',';
  return line;
}

ir_packet packet_of(const std::string& line) {
  std::array<uint16_t, 255> list = {};
  ir_packet packet = {};
  packet.len = static_cast<uint8_t>(csv_to_buf(line.c_str(), list.data(), sizeof list));
  std::copy_n(list.begin(), packet.len, packet.buf);
  return packet;
}

// Standard output is a file here; it starts again before it grows large.
void keep_output_small() {
  if (std::ftell(stdout) > kOutputLimit) std::rewind(stdout);
}

template <class Code>
void measure(benchmark::State& state, Code code) {
  code();  // what is allocated once
  const size_t before = allocations_so_far();
  for (auto _ : state) {
    code();
    keep_output_small();
  }
  const auto allocations = static_cast<double>(allocations_so_far() - before);
  state.counters["allocations"] = allocations / static_cast<double>(state.iterations());
  state.SetItemsProcessed(state.iterations());
}

void parse(benchmark::State& state) {
  const std::string line = nec_line(0x00FF08F7);
  std::array<uint16_t, 100> list = {};
  measure(state,
          [&] { benchmark::DoNotOptimize(csv_to_buf(line.c_str(), list.data(), sizeof list)); });
}
BENCHMARK(parse);

void print(benchmark::State& state) {
  ir_packet packet = packet_of(nec_line(0x00FF08F7));
  measure(state, [&] { print_raw(&packet); });
}
BENCHMARK(print);

// Prints as well, and decodes once on the way.
void print_and_decode(benchmark::State& state) {
  ir_packet packet = packet_of(nec_line(0x00FF08F7));
  measure(state, [&] { print_pronto(&packet); });
}
BENCHMARK(print_and_decode);

void own_decoder(benchmark::State& state, const std::string& line) {
  const ir_packet packet = packet_of(line);
  measure(state, [&] {
    ir_t event = ir_event_of(packet);
    ir_decode_packet(&event);
  });
}
BENCHMARK_CAPTURE(own_decoder, nec, nec_line(0x00FF08F7));
BENCHMARK_CAPTURE(own_decoder, unknown, unknown_line());

void hash(benchmark::State& state) {
  const ir_packet packet = packet_of(unknown_line());
  measure(state, [&] { benchmark::DoNotOptimize(ir_hash(packet.buf, packet.len, 2400)); });
}
BENCHMARK(hash);

// The path of a pattern with the program's own decoders alone.
void own_family_path(benchmark::State& state) {
  const std::string line = nec_line(0x00FF08F7);
  measure(state, [&] {
    ir_packet packet = packet_of(line);
    print_raw(&packet);
    print_pronto(&packet);
    ir_t event = ir_event_of(packet);
    ir_decode_packet(&event);
    std::fflush(stdout);
  });
}
BENCHMARK(own_family_path);

void signal_analysis(benchmark::State& state, const std::string& line) {
  ir_packet packet = packet_of(line);
  measure(state, [&] { DecodeIR(&packet, packet.len); });
}
BENCHMARK_CAPTURE(signal_analysis, nec, nec_line(0x00FF08F7));
BENCHMARK_CAPTURE(signal_analysis, rc5, rc5_line());
BENCHMARK_CAPTURE(signal_analysis, xmp, xmp_line());
BENCHMARK_CAPTURE(signal_analysis, noise50, noise_line(50));
BENCHMARK_CAPTURE(signal_analysis, noise100, noise_line(100));

void matchers(benchmark::State& state, const std::string& line) {
  ir_packet packet = packet_of(line);
  measure(state, [&] { arduino_decode(&packet, packet.len); });
}
BENCHMARK_CAPTURE(matchers, nec, nec_line(0x00FF08F7));
BENCHMARK_CAPTURE(matchers, unknown, unknown_line());

void whole_path(benchmark::State& state, const std::string& line) {
  measure(state, [&] { decode_line(line.c_str()); });
}
BENCHMARK_CAPTURE(whole_path, nec, nec_line(0x00FF08F7));
BENCHMARK_CAPTURE(whole_path, unknown, unknown_line());

/// A file in the temporary folder that goes when the program ends.
class TemporaryFile {
 public:
  TemporaryFile() { ::close(::mkstemp(path_.data())); }
  ~TemporaryFile() { ::unlink(path_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp/vantrel-bench-XXXXXX";
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  std::ofstream results("/dev/fd/" + std::to_string(::dup(STDOUT_FILENO)));
  const std::unique_ptr<benchmark::BenchmarkReporter> reporter(
      benchmark::CreateDefaultDisplayReporter());
  reporter->SetOutputStream(&results);
  const TemporaryFile output;
  if (!results || std::freopen(output.path().c_str(), "w", stdout) == nullptr) return 1;
  benchmark::RunSpecifiedBenchmarks(reporter.get());
  return 0;
}
