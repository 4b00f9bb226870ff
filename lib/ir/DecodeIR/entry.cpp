// SPDX-License-Identifier: GPL-3.0-or-later
// The functions that the component shows to the outside.
#include "lib/ir/DecodeIR/DecodeIR.h"
#include "lib/ir/DecodeIR/signal.h"

void _DecodeIR(unsigned int* context, int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error) {
  if (int64_t{singleCount} + repeatCount <= 1) return;
  Signal(context, bursts, freq, singleCount, repeatCount, protocol, device, subDevice, obc, hex,
         misc, error)
      .decode2();
}

char* EnumerateProtocols(int /*index*/, char* out) {
  *out = '\0';
  return out;
}

int ProtocolSupportLevel(char* /*name*/) {
  return 0;
}

char* Version(char* out) {
  *out = '\0';
  return out;
}
