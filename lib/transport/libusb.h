// SPDX-License-Identifier: GPL-3.0-or-later
// The raw USB backend: control and interrupt transfers of the caller's own making, over libusb.
//
// It carries no packets: a command is a transfer description, see libusb_dev_send_cmd. It serves
// one device at a time, and no command of the program uses it.
#pragma once

#include <cstdint>

#include "lib/transport/transport.h"

namespace transport {

/// Which device to open.
struct libusb_priv {
  uint16_t VID;
  uint16_t PID;
  uint8_t interface;  // the interface to claim
  uint8_t port;       // not used
  char mfr[45];       // the manufacturer string that it must have
  uint8_t debug;      // not used
};

/// A control transfer.
struct libusb_msg {
  uint8_t bmRequestType;
  uint8_t bRequest;
  uint16_t wValue;
  uint16_t wIndex;
  uint8_t buf[256];      // the data stage
  uint16_t wLength;      // bytes of buf
  unsigned int timeout;  // ms
};

/// An interrupt transfer.
struct libusb_interrupt {
  unsigned char endpoint;
  uint8_t* buf;
  int length;            // bytes of buf
  int* transferred;      // receives the count
  unsigned int timeout;  // ms
};

/// Opens the device that the libusb_priv at `p` describes, its manufacturer string included.
/// 0, libusb's negative code, or -1 when there is no such device.
int libusb_dev_open(dev_t* dev, void* p);

/// Makes one transfer: `data` is a libusb_interrupt when `cmd` is "libusb_interrupt", otherwise a
/// libusb_msg; `len` is not used. A null `dev` stands for the device that was opened last. libusb's
/// result; -19 without an open device; -1 without `data`; -2 for a data stage that is too long.
int libusb_dev_send_cmd(dev_t* dev, const char* cmd, uint8_t* data, uint32_t len);

/// The close operation: resets, releases and closes. 0, or -1 when nothing is open.
int libusb_dev_close(dev_t* dev);

/// These do nothing and return 0. No open handle has them: never dev_flush a raw USB device.
int libusb_send_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len);
int libusb_recv_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len);
int libusb_flush(dev_t* dev);

}  // namespace transport
