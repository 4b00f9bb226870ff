// SPDX-License-Identifier: GPL-3.0-or-later
// The device as the commands see it (the session's hooks, its operations, what it receives) and
// the printers: one pattern, one line of text on standard output, in one of four formats.
//
// Whatever waits here is a point of lib/libutil/interrupt.h: with session->dev and *dev always the
// device that is open, so that the stop hook closes it.
//
// Results are 0 for success and negative for failure, already logged, unless said otherwise.
// Durations are µs, mark and space in turn, a mark first.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lib/ir/ir_packet.h"
#include "lib/transport/transport.h"
#include "src/appdata.h"

/// The firmware's answer to "getversion": what it is on the wire, and in this machine's order once
/// parse_version has read it.
struct [[gnu::packed]] version_t {
  uint16_t major_version;
  uint16_t minor_version;
  uint16_t patch_version;
  uint32_t scm_hash;
  char type[9];  // the configuration's name, NUL-terminated
};
static_assert(sizeof(version_t) == 19);

/// What zv_get_version needs room for, and the command's length.
inline constexpr uint8_t kVersionReplySize = 32;

/// Reads the record at the start of a "getversion" reply of kVersionReplySize bytes.
version_t parse_version(const uint8_t* reply);

/// The start and stop hooks. The first opens the device and switches its reports on; without a
/// device `dev` is null afterwards. The second closes it. Both always return 0.
int zarvo_init(appdata_priv* session);
int zarvo_deinit(appdata_priv* session);

/// Switches the timing reports on (1) or off (0).
int tessarin_iface_en(transport::dev_t* dev, int en);

/// Fills `buf`, at least kVersionReplySize bytes, with the version reply; `len` is not used.
/// 0, 1 when the exchange failed, -1 without a device or a buffer.
int zv_get_version(transport::dev_t* dev, uint8_t* buf, uint8_t len);

/// 0 when the device passes for at least `major`.`minor`, else -1. A device of an earlier major
/// version passes and one of a later does not. A query that fails counts as version 0.0.0.
int zv_version_compare(transport::dev_t* dev, uint16_t major, uint16_t minor);

/// The settings that wake a machine by remote control: enabled or not, and two bytes of address.
int zv_rb_settings_get(transport::dev_t* dev, uint32_t* wake_en, uint8_t* high, uint8_t* low);
int zv_rb_settings_set(transport::dev_t* dev, uint32_t wake_en, uint8_t high, uint8_t low);

/// Stores the wake signal, `len` durations, of which the device has room for fewer than 128.
int zv_rb_wake_sig(transport::dev_t* dev, const uint16_t* buf, uint8_t len);

/// Transmits `len` durations (at most 32767) `repeat` times, `ik` apart.
int zv_transmit_raw(transport::dev_t* dev, const uint16_t* buf, uint16_t len, uint16_t ik,
                    uint8_t repeat);

/// Stops a transmission in progress.
int zv_transmit_kill(transport::dev_t* dev);

/// Waits up to 10 s for one timing report and adds it to `p`, which keeps what it has between
/// calls. 1 when that completes the signal, 0 when it does not or nothing came, -1 when the
/// device is gone or sent something else.
int zv_ir_packet_poll(transport::dev_t* dev, ir_packet* p);

/// Opens the device as soon as it is there and switches its reports on. -1 when its firmware is
/// too old to listen, with *dev open, or when standard output is broken.
int wait_for_device(transport::dev_t** dev);

/// Hands every signal that the device receives to `on_signal`, whatever happens to the device in
/// between: session->dev is always the one that is open. Returns (-1) only when the device came
/// back with firmware that is too old, or when standard output is broken.
int listen_for_signals(appdata_priv* session, void (*on_signal)(ir_packet* p));

/// Sleeps `us` microseconds.
void pause_us(uint64_t us);

/// The longest duration in µs that is decoded; a longer one makes a pattern invalid.
constexpr uint16_t kLongestDurationUs = 14000;

/// 1: print_raw, print_comma_delim and print_analysir show the time since the previous pattern
/// on a line of its own first. Initially 0.
void set_elapsed_flag(int show);

/// True when no duration of the packet is over kLongestDurationUs.
bool is_valid_packet(const ir_packet& packet);

/// "+9000 -4500 +560 ", in µs.
void print_raw(ir_packet* p);

/// "9000,4500,560", in µs.
void print_comma_delim(ir_packet* p);

/// "0,9000, 4500, 560", in µs.
void print_analysir(ir_packet* p);

/// Pronto hex in carrier periods of 26 µs: "0000 006D 0002 0000 015A 00AD 0015 0602". The signal
/// is decoded on the way, which reports the decoder's line first; one of the NEC family ends in
/// the NEC repeat frame. An invalid packet prints "error: invalid packet" alone.
void print_pronto(ir_packet* p);
