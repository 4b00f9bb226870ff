// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/transport/transport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "lib/liblog/logging.h"
#include "lib/transport/hid.h"
#include "lib/transport/libusb.h"

namespace transport {

namespace {

static_assert(sizeof(pkt_t) == 130 && sizeof(cmd_pkt_t) == 64);
static_assert(offsetof(cmd_pkt_t, data) == kCmdDataOffset);

/// What a backend may touch of a packet. Commands up to sizeof(pkt_t) pass the length check, two
/// bytes more than a packet has; every backend refuses a length like that.
uint32_t payload_length(uint32_t len) {
  return std::min<uint32_t>(len, sizeof(pkt_t::data));
}

int _recv_packet(dev_t* dev, uint8_t type, pkt_t* pkt, uint32_t len) {
  *pkt = {};
  pkt->type = type;
  pkt->len = static_cast<uint8_t>(len);
  const int result = dev->recv_pkv(dev, type, pkt->data, payload_length(len));
  if (result < 0 && result != kInterrupted) {
    _log(1, "[E] %s(%d): %s: recv packet error = %d\n", __func__, __LINE__, __func__, result);
  }
  return result;
}

/// Copies a reply's data from the packet, with zeros for what lies past its end.
void copy_out(const pkt_t& pkt, uint8_t* data, size_t len) {
  const size_t present = std::min(len, sizeof(pkt.data) - kCmdDataOffset);
  std::memcpy(data, pkt.data + kCmdDataOffset, present);
  std::memset(data + present, 0, len - present);
}

/// The request packet of a command whose name and length are good.
cmd_pkt_t make_request(const char* cmd, const uint8_t* data, uint32_t len) {
  cmd_pkt_t request{};
  std::memcpy(request.cmd, cmd, std::strlen(cmd));
  if (len > kCmdDataOffset) {
    std::memcpy(request.data, data, std::min<size_t>(len - kCmdDataOffset, kCmdDataSize));
  }
  return request;
}

/// The command exchange of backends that carry packets.
int _dev_send_cmd(dev_t* dev, const char* cmd, uint8_t* data, uint32_t len) {
  if (len > sizeof(pkt_t)) {
    _log(1, "[E] %s(%d): size %d is greater than max command length: %d\n", __func__, __LINE__,
         static_cast<int>(len), static_cast<int>(sizeof(pkt_t)));
    return -1;
  }
  if (cmd == nullptr) {
    _log(1, "[E] %s(%d): invalid command\n", __func__, __LINE__);
    return -1;
  }
  if (const size_t name_length = std::strlen(cmd); name_length >= kCmdNameSize) {
    _log(1, "[E] %s(%d): command string to long: %d > %d\n", __func__, __LINE__,
         static_cast<int>(name_length), static_cast<int>(kCmdNameSize));
    return -1;
  }

  const cmd_pkt_t request = make_request(cmd, data, len);
  pkt_t pkt{PKTYPE_CMD, static_cast<uint8_t>(len), {}};
  std::memcpy(pkt.data, &request, sizeof(request));
  const int sent = dev->send_pkv(dev, PKTYPE_CMD, pkt.data, payload_length(len));
  if (sent < 0) return sent;

  const int received = _recv_packet(dev, PKTYPE_CMD, &pkt, len);
  if (received == kInterrupted) return kInterrupted;
  if (received < 0) {
    _log(1, "[E] %s(%d): recv timeout\n", __func__, __LINE__);
    return -1;
  }
  if (static_cast<uint8_t>(received) != PKTYPE_CMD) {
    // The number shown is always 0, not the type received.
    _log(1, "[E] %s(%d): Wrong packet type: 0x%02x \n", __func__, __LINE__, 0);
    return -1;
  }
  cmd_pkt_t reply;
  std::memcpy(&reply, pkt.data, sizeof(reply));
  if (std::strncmp(reply.cmd, request.cmd, kCmdNameSize) != 0) {
    _log(1, "[E] %s(%d): Wrong response: '%.*s'\n", __func__, __LINE__,
         static_cast<int>(kCmdNameSize), reply.cmd);
    return -1;
  }
  if (reply.status != 0) {
    _log(1, "[E] %s(%d): Command error: %d\n", __func__, __LINE__, reply.status);
    return -1;
  }

  // All of `len` comes back though only len - 12 went out: callers' buffers have room for it, and
  // the last 12 bytes are zeros of the receive buffer.
  copy_out(pkt, data, len);
  return 0;
}

}  // namespace

dev_t* dev_open(uint8_t type, void* priv) {
  auto* dev = new (std::nothrow) dev_t{};
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): can't allocate memory\n", __func__, __LINE__);
    return nullptr;
  }
  int opened = 0;
  if (type == kHid) {
    opened = hid_dev_open(dev, priv);
    dev->send_cmd = _dev_send_cmd;
  } else if (type == kRawUsb) {
    opened = libusb_dev_open(dev, priv);
    dev->send_cmd = libusb_dev_send_cmd;
  }
  if (opened >= 0) return dev;
  delete dev;
  return nullptr;
}

int dev_close(dev_t* dev) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  if (dev->close != nullptr) dev->close(dev);
  std::free(dev->priv);
  delete dev;
  return 1;
}

int dev_flush(dev_t* dev) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  return dev->flush(dev);
}

int dev_write(dev_t* dev, uint8_t* buf, uint32_t len) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  return dev->write(dev, buf, len);
}

int dev_read(dev_t* dev, uint8_t* buf, uint32_t len) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  return dev->read(dev, buf, len);
}

int dev_send_cmd(dev_t* dev, const char* cmd, uint8_t* data, uint32_t len) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  return dev->send_cmd(dev, cmd, data, len);
}

int dev_send_data(dev_t* dev, uint8_t* data, uint32_t len) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): no device found\n", __func__, __LINE__);
    return kNoDevice;
  }
  const int sent = dev->send_pkv(dev, PKTYPE_DATA, data, len);
  if (sent < 0) {
    std::printf("%s: send packet error\n", __func__);
    return sent;
  }
  pkt_t acknowledgement;
  const int received = _recv_packet(dev, PKTYPE_DATA, &acknowledgement, 1);
  if (received < 0) {
    std::printf("%s:  recv timeout\n", __func__);
    return -1;
  }
  if (static_cast<uint8_t>(received) != PKTYPE_DATA) {
    std::printf("Wrong packet type: 0x%02x \n", 0);  // always 0, as for commands
    return -1;
  }
  if (acknowledgement.data[0] != 0) {
    std::printf("Data error\n");
    return -1;
  }
  std::memset(data, 0, len);
  return 0;
}

}  // namespace transport
