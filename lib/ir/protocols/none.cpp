// SPDX-License-Identifier: GPL-3.0-or-later
// The catch-all for signals that no analyzer or decoder claims: a hash of the timings, the same
// for every press of a key, stands in for the scancode.
#include "lib/ir/ir_hash.h"
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"

namespace {

int ir_general_hash(ir_t* event, ir_prot* p) {
  event->hash = ir_hash(event->buf, event->count, kHashMaxEdgeUs);
  p->scancode = event->hash;
  p->protocol = RC_PROTO_UNKNOWN;
  report_scancode("UNKNOWN", p->scancode, 0);
  return 0;
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = 0,
    .decode = ir_general_hash,
    .carrier = 38000,
};

constinit protocol registration = {{}, "irprotocol", "ir_prot_none", &handler};

[[gnu::constructor(startup::kProtocolNone)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
