// SPDX-License-Identifier: GPL-3.0-or-later
// Every name of a signal: c++ decode_signal.cpp $(pkg-config --cflags --libs DecodeIR) && ./a.out
#include <DecodeIR.h>

#include <array>
#include <iostream>
#include <vector>

int main() {
  std::vector<int> sony = {2400, 600, 600, 600,  1200, 600, 600, 600, 600, 600, 1200, 600, 600,
                           600,  600, 600, 1200, 600,  600, 600, 600, 600, 600, 600,  600, 26400};
  const int bursts = static_cast<int>(sony.size()) / 2;
  std::array<unsigned, 2> context = {0, 0};
  while (true) {
    std::array<char, 64> protocol = {};
    std::array<char, 255> misc = {};
    std::array<char, 255> error = {};
    std::array<int, 4> hex = {};
    int device = -1;
    int sub_device = -1;
    int obc = -1;
    _DecodeIR(context.data(), sony.data(), 40000, bursts, 0, protocol.data(), &device, &sub_device,
              &obc, hex.data(), misc.data(), error.data());
    if (protocol[0] == '\0') break;
    std::cout << protocol.data() << ": device " << device << ", function " << obc << " ("
              << misc.data() << ")\n";
  }
}
