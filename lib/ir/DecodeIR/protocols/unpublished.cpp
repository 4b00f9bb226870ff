// SPDX-License-Identifier: GPL-3.0-or-later
// Protocols that have a place in the call order and no public definition.
//
// "?1-%02X-%02X-%02X": nothing says how its frames look or what could be checked.
// "AirB%d-", "AirAsync%d-": the air conditioners' and keyboards' codes that send bytes with a start
//   and a stop bit, one bit per 840 us or so; no definition says what the bytes mean or how they
//   are checked, and any train of long pulses would fit their framing.
// AK: nothing says what it sends.
// pid-0013 is known to send 8 bits by pulse width; its timings and meaning are not public.
//
// A guess would take frames from the recognisers behind it, so they find nothing.
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {

std::optional<answer> unpublished(const frame&) {
  return {};
}

}  // namespace analysis
