// SPDX-License-Identifier: GPL-3.0-or-later
// The HID backend: packets as HID reports, over hidapi.
//
//   report  direction  bytes  carries
//   1       in         33     reply to a 32-byte command
//   2       out        33     32-byte command
//   3       in         2      acknowledgement of a data packet
//   4       out        65     data packet
//   5       in         65     reply to a 64-byte command
//   6       out        65     64-byte command
//   7       in         65     infrared timing, see hid_read_timing
//
// The bytes count the report id. Unused bytes of an outgoing report are 0xFF.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "lib/transport/transport.h"

namespace transport {

/// Which device to open; all three must match.
struct libhid_priv {
  uint16_t VID;
  uint16_t PID;
  int iface;
};

inline constexpr uint8_t kTimingReportId = 7;
inline constexpr size_t kTimingReportSize = 65;
using timing_report = std::array<uint8_t, kTimingReportSize>;

/// Opens the first device that matches the libhid_priv at `p` and lets itself be opened, drains
/// its stale input and fills `dev`. 0, or -1 (silently, when no device opens).
int hid_dev_open(dev_t* dev, void* p);

/// The send_pkv operation: commands of 32 or 64 bytes, data of up to 64. hidapi's byte count, or
/// a negative result (logged, but for kInterrupted).
int hid_send_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len);

/// The recv_pkv operation: waits up to 10 s for the report that `type` and `len` call for. `type`,
/// -1 (nothing came, or something else did; logged) or kInterrupted.
int hid_recv_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len);

/// The flush operation: reads and drops input until 100 ms pass in quiet. Always 0.
int hid_flush(dev_t* dev);

/// The close operation: drains and closes; `handle` is null afterwards. Always 0.
int hid_dev_close(dev_t* dev);

/// Waits up to 10 s for the next report, whatever it is. Its byte count, 0 when none came, -1 when
/// the device is gone or SIGINT cut the wait short. The report's first byte holds the id of timing
/// reports when nothing came.
int hid_read_timing(dev_t* dev, timing_report& report);

}  // namespace transport
