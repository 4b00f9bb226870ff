// SPDX-License-Identifier: GPL-3.0-or-later
// Renders examples/patterns.csv: a key of each of the well-known protocols as a receiver delivers
// it. Usage: render_examples > examples/patterns.csv
#include <cstdio>
#include <exception>
#include <string>

#include "tests/support/contract.h"

namespace {

constexpr uint64_t kSeed = 23;

struct Example {
  const char* title;
  const char* protocol;
  irp::Parameters parameters;
};

const Example kExamples[] = {
    {"NEC", "NEC1", {{"D", 4}, {"F", 8}}},
    {"Samsung", "NECx2", {{"D", 7}, {"S", 7}, {"F", 2}}},
    {"Sony, 12 bits", "Sony12", {{"D", 1}, {"F", 21}}},
    {"Sony, 20 bits", "Sony20", {{"D", 26}, {"S", 73}, {"F", 57}}},
    {"RC5", "RC5", {{"D", 0}, {"F", 12}, {"T", 0}}},
    {"RC6", "RC6", {{"D", 4}, {"F", 92}, {"T", 1}}},
    {"Media Center", "MCE", {{"D", 4}, {"S", 15}, {"F", 28}, {"T", 0}}},
    {"JVC", "JVC", {{"D", 3}, {"F", 23}}},
    {"Sharp", "Sharp", {{"D", 1}, {"F", 22}}},
    {"Denon", "Denon", {{"D", 2}, {"F", 225}}},
    {"Panasonic", "Panasonic", {{"D", 128}, {"S", 0}, {"F", 61}}},
    {"XMP", "XMP-1", {{"D", 0}, {"S", 15}, {"F", 33}}},
    {"Nokia, 32 bits", "Nokia32", {{"D", 38}, {"S", 4}, {"X", 28}, {"F", 47}, {"T", 0}}},
    {"RCA", "RCA-38", {{"D", 15}, {"F", 42}}},
    {"Dish Network", "Dish_Network", {{"D", 0}, {"S", 0}, {"F", 21}}},
    {"DirecTV", "DirecTV_P2", {{"D", 12}, {"F", 213}}},
    {"TDC", "TDC-38", {{"D", 15}, {"S", 3}, {"F", 69}}},
};

/// What a remote in the same room does to a signal.
const Receiver kReceiver = {{10, 30}, {0.02, 0.03}, 0.01, {1}};

void print(const Example& example) {
  const irp::Protocol& protocol = irp::protocol(example.protocol);
  std::printf("# %s (%s", example.title, example.protocol);
  for (const auto& [name, value] : example.parameters) {
    std::printf(", %s = %lld", name.c_str(), static_cast<long long>(value));
  }
  Random random(kSeed, example.protocol);
  const auto sent = contract::single_frame(protocol, protocol.complete(example.parameters));
  std::printf(")\n%s\n", irp::csv(receive(sent, random, kReceiver)).c_str());
}

}  // namespace

int main() try {
  std::printf("# One key of each protocol as a receiver delivers it, in µs, mark first.\n");
  for (const Example& example : kExamples) print(example);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "render_examples: %s\n", error.what());
  return 1;
}
