// SPDX-License-Identifier: GPL-3.0-or-later
// The functions that the component shows to the outside; DecodeIR.h documents them.
#include <strings.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "lib/ir/DecodeIR/DecodeIR.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr const char* kVersion = "2.45";

// "Russsound" is spelled so in every list that callers compare with.
constexpr std::array<const char*, 51> kProtocols = {
    "Acer",       "Airboard", "Akai",    "Amino",   "Anthem",        "CanalSat", "Denon",
    "Dishplayer", "Dgtec",    "Emerson", "F12",     "Feelux",        "G.I.4DTV", "G.I. Cable",
    "Grundig",    "GXB",      "IODATA",  "Jerrold", "JVC",           "Kathrein", "Konka",
    "Lumagen",    "NEC",      "NEC1",    "NEC2",    "Old Panasonic", "OrtekMCE", "Panasonic",
    "Pioneer",    "Proton",   "RC6",     "RC5",     "RC5x",          "RCA",      "Replay",
    "Russsound",  "S16",      "S42",     "Sampo",   "Samsung",       "ScAtl-6",  "Sejin",
    "Sharp",      "Somfy",    "SONY",    "Sunfire", "TDC",           "XMP",      "Zenith5",
    "Zenith6",    "Zenith7"};

char* copy_text(char* out, const char* text) {
  std::memcpy(out, text, std::strlen(text) + 1);
  return out;
}

}  // namespace

void _DecodeIR(unsigned int* context, int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error) {
  if (int64_t{singleCount} + repeatCount <= 1) return;
  Signal(context, bursts, freq, singleCount, repeatCount, protocol, device, subDevice, obc, hex,
         misc, error)
      .decode2();
}

char* EnumerateProtocols(int index, char* out) {
  const bool listed = index >= 0 && index < static_cast<int>(kProtocols.size());
  return copy_text(out, listed ? kProtocols[static_cast<size_t>(index)] : "");
}

int ProtocolSupportLevel(char* name) {
  return std::any_of(kProtocols.rbegin(), kProtocols.rend(), [name](const char* known) {
    return strncasecmp(known, name, std::strlen(known)) == 0;
  });
}

char* Version(char* out) {
  return copy_text(out, kVersion);
}
