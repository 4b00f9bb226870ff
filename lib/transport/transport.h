// SPDX-License-Identifier: GPL-3.0-or-later
// One open device, whatever carries its packets, and the command exchange with its firmware.
//
// A command has a name of at most 10 characters and a small binary argument; the reply echoes
// the name and brings a status and a result. All numbers on the wire are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>

namespace transport {

/// The packet types that a backend carries.
enum pktype : uint8_t {
  PKTYPE_NONE = 0,
  PKTYPE_RESET = 1,
  PKTYPE_CMD = 2,
  PKTYPE_DATA = 3,
  PKTYPE_INVALID = 255,
};

/// The backends of dev_open.
inline constexpr uint8_t kRawUsb = 0;
inline constexpr uint8_t kHid = 2;

inline constexpr int kNoDevice = -6;

/// A wait that SIGINT cut short: not logged, as nothing is wrong with the device. No function here
/// ends the program; the caller passes a point of lib/libutil/interrupt.h.
inline constexpr int kInterrupted = -4;

/// A packet in memory. A backend gets a pointer to `data` and the length.
struct pkt_t {
  uint8_t type;
  uint8_t len;
  uint8_t data[128];
};

inline constexpr size_t kCmdNameSize = 11;  // with its NUL
inline constexpr size_t kCmdDataOffset = 12;
inline constexpr size_t kCmdDataSize = 52;

/// A command or its reply on the wire: the first 32 or all 64 bytes of it.
struct cmd_pkt_t {
  char cmd[kCmdNameSize];
  uint8_t status;  // in a reply: 0, or the device's error code
  uint8_t data[kCmdDataSize];
};

/// An open device: from dev_open, released by dev_close, owned by the caller in between.
/// A backend fills what it serves and leaves the rest null.
struct dev_t {
  int (*write)(dev_t*, uint8_t* buf, uint32_t len);
  int (*read)(dev_t*, uint8_t* buf, uint32_t len);
  /// Sends one packet. Returns a count of 0 or more, or a negative error, already logged.
  int (*send_pkv)(dev_t*, uint8_t type, uint8_t* buf, uint32_t len);
  /// Receives one packet into `buf` (`len` payload bytes). Returns its type, negative on failure.
  int (*recv_pkv)(dev_t*, uint8_t type, uint8_t* buf, uint32_t len);
  /// Discards what the device has queued.
  int (*flush)(dev_t*);
  /// Releases what the backend holds, all but `priv`.
  int (*close)(dev_t*);
  /// One command exchange; set by dev_open.
  int (*send_cmd)(dev_t*, const char* cmd, uint8_t* data, uint32_t len);
  void* handle;  // the backend's device handle
  void* priv;    // the backend's copy of its open parameters, from malloc, freed by dev_close
};

/// Opens the device that `priv` describes: a libhid_priv for kHid, a libusb_priv for kRawUsb.
/// Null when there is none or it does not open. Any other type gives a handle with no operation.
dev_t* dev_open(uint8_t type, void* priv);

/// Closes and frees. 1, or kNoDevice for null.
int dev_close(dev_t* dev);

/// Discards what the device has queued. The backend's result, or kNoDevice for null.
int dev_flush(dev_t* dev);

/// Raw access. No backend offers it. REQUIRES: the operation is filled in.
int dev_write(dev_t* dev, uint8_t* buf, uint32_t len);
int dev_read(dev_t* dev, uint8_t* buf, uint32_t len);

/// Sends the command `cmd` with `len` - 12 argument bytes from `data` and waits for its reply,
/// whose result overwrites `data`: `len` - 12 bytes and 12 zeros. `data` holds `len` bytes.
/// 0; kNoDevice for null; -1 when the exchange failed (logged; `data` is untouched); kInterrupted;
/// or the backend's negative result when nothing could be sent. Nothing is tried again.
int dev_send_cmd(dev_t* dev, const char* cmd, uint8_t* data, uint32_t len);

/// Sends one data packet of `len` bytes and waits for the acknowledgement, which then fills
/// `data`: 0 and zeros. 0, kNoDevice, -1 or the backend's negative result.
int dev_send_data(dev_t* dev, uint8_t* data, uint32_t len);

}  // namespace transport
