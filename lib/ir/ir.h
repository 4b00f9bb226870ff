// SPDX-License-Identifier: GPL-3.0-or-later
// The program's own decoders: protocols, events, the registries, and the ways in.
#pragma once

#include <sys/time.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "lib/ir/ir_packet.h"
#include "lib/libutil/list.h"

/// The numbers are fixed: they index the bit masks of the decoders.
enum rc_proto : uint32_t {
  RC_PROTO_UNKNOWN = 0,
  RC_PROTO_OTHER = 1,
  RC_PROTO_RC5 = 2,
  RC_PROTO_RC5X_20 = 3,
  RC_PROTO_RC5_SZ = 4,
  RC_PROTO_JVC = 5,
  RC_PROTO_SONY12 = 6,
  RC_PROTO_SONY15 = 7,
  RC_PROTO_SONY20 = 8,
  RC_PROTO_NEC = 9,
  RC_PROTO_NECX = 10,
  RC_PROTO_NEC32 = 11,
  RC_PROTO_SANYO = 12,
  RC_PROTO_MCIR2_KBD = 13,
  RC_PROTO_MCIR2_MSE = 14,
  RC_PROTO_RC6_0 = 15,
  RC_PROTO_RC6_6A_20 = 16,
  RC_PROTO_RC6_6A_24 = 17,
  RC_PROTO_RC6_6A_32 = 18,
  RC_PROTO_RC6_MCE = 19,
  RC_PROTO_SHARP = 20,
  RC_PROTO_XMP = 21,
  RC_PROTO_CEC = 22,
  RC_PROTO_IMON = 23,
  RC_PROTO_RCMM12 = 24,
  RC_PROTO_RCMM24 = 25,
  RC_PROTO_RCMM32 = 26,
  RC_PROTO_ORTEK = 27,
  // 28 is not assigned
  RC_PROTO_DENON = 29,
  RC_PROTO_ZARVO = 30,
  RC_PROTO_NOKIA = 31,
  RC_PROTO_TDC = 32,
  RC_PROTO_AMINO = 33,
};

/// A decoded result. A decoder leaves the fields that it does not set as they were.
struct ir_prot {
  rc_proto protocol;
  uint32_t scancode;
  uint32_t hash;
  uint32_t bits;
};

/// One event as the decoders see it.
struct ir_t {
  uint8_t count;  // entries of buf (at most 200 are looked at), the index of an edge in the feed
  uint16_t buf[200];  // durations in µs, a mark first; zero past the count
  timeval ts, tf;     // start and end
  uint16_t tp, te;    // te: ms since the previous event
  uint32_t hash;      // of the timings, written by decoders that hash
  uint8_t repeat;     // set by analyzers that see a repeat frame
  ir_prot p;
};

/// One registered analyzer or decoder: static and writable, owned by the module of its name.
struct protocol {
  list_head node;        // place in its registry
  const char* category;  // "irprotocol" or "iranalyzer"
  const char* name;      // shown in the listings
  void* iface;           // its IR_PROTOCOL_HANDLER or IR_PROTOCOL_ANALYZER
};

/// A decoder: what it claims and how it reads an event.
struct IR_PROTOCOL_HANDLER {
  list_head node = {};
  uint64_t protocols;                       // bit n: decodes rc_proto n; 0: the catch-all
  int (*decode)(ir_t* event, ir_prot* p);   // fills p and reports; the result is not looked at
  uint32_t (*hash)(ir_t* event) = nullptr;  // reserved
  int (*encode)(rc_proto protocol, uint32_t scancode, ir_t* event, unsigned int max) = nullptr;
  uint32_t carrier;          // Hz
  uint32_t min_timeout = 0;  // µs of silence that end a frame, 0: not fixed
};

/// An edge analyzer: every duration adds its distance from the expected one to `acc`.
struct IR_PROTOCOL_ANALYZER {
  list_head node = {};  // active or dropped
  /// Scores one duration in µs; its index is ir->count.
  void (*analyze)(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self);
  /// Scores durations in µs from the first one on until it is to drop out. Returns the index of
  /// that one, or their number. Null: analyze is called for each.
  size_t (*analyze_all)(std::span<const uint16_t> durations, IR_PROTOCOL_ANALYZER* self) = nullptr;
  /// Called for the winner: the rc_proto that it stands for.
  uint32_t (*finish)(uint32_t ticks, ir_t* ir, IR_PROTOCOL_ANALYZER* self);
  /// Called after every decode, whoever won; may be null.
  void (*reset)(IR_PROTOCOL_ANALYZER* self) = nullptr;
  void* priv = nullptr;    // the analyzer's own memory
  uint16_t acc = 0;        // error sum in µs, wraps
  uint8_t result = 0;      // of the analyzer while it leads
  bool remembers = false;  // whether a score depends on the signals before
  // Of the last signal that analyze_all scored:
  size_t dropped_at = 0;  // the index at which it dropped out, else the number of durations
  uint16_t last_acc = 0;
};

/// Append a record to its registry. Called by the REGFUNC__… constructors in the order of
/// startup::priority; the record lives for ever.
void _register_protocol_iranalyzer(protocol* p);
void _register_protocol_irprotocol(protocol* p);

/// The event that decoders see of a packet: its first 200 durations, all else zero.
ir_t ir_event_of(const ir_packet& packet);

/// Analyses and decodes an event: the decoder fills ir->p and reports its line. Returns the
/// analyzers' choice, which the decoder may have refined. REQUIRES: no duration over 14000 µs.
int ir_decode_packet(ir_t* ir);

/// The same on a bare timing array (its length modulo 256); the result is discarded.
int ir_decode_buf(const uint16_t* buf, uint8_t len);

/// Runs the decoder that claims `matched`: 0, or -1 when the catch-all ran instead.
int ir_decode(ir_t* event, rc_proto matched, ir_prot* p);

/// Reserved: does nothing and returns 0.
int ir_encode(rc_proto protocol, uint32_t scancode, ir_t* event, unsigned int max);

/// Prints the names of the decoders in search order.
void print_all_protocols();
