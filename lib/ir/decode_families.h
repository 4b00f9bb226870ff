// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "lib/ir/ir_packet.h"

/// Runs every decoder family on a packet, in the order in which their lines are shown; what they
/// find goes through report_result. REQUIRES: no duration over 14000 µs.
void decode_families(ir_packet* packet);
