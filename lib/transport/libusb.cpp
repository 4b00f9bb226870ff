// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/transport/libusb.h"

#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "lib/liblog/logging.h"

namespace transport {

namespace {

constexpr int kNotOpen = -19;

libusb_device_handle* handle = nullptr;

std::string_view expected_manufacturer(const libusb_priv& wanted) {
  return {wanted.mfr, strnlen(wanted.mfr, sizeof(wanted.mfr))};
}

bool has_manufacturer(libusb_device_handle* opened, uint8_t index, const libusb_priv& wanted) {
  std::array<unsigned char, 256> text{};
  const int length =
      libusb_get_string_descriptor_ascii(opened, index, text.data(), static_cast<int>(text.size()));
  if (length < 0) {
    _log(1, "[E] %s(%d): Cannot query device, is the GUI open?\n", "libusb_dev_open", __LINE__);
    return false;
  }
  const std::string_view found(reinterpret_cast<const char*>(text.data()),
                               std::min(static_cast<size_t>(length), text.size()));
  if (found != expected_manufacturer(wanted)) {
    _log(1, "[E] %s(%d): manufacturer string mismatch\n", "libusb_dev_open", __LINE__);
    return false;
  }
  return true;
}

/// Opens a device whose ids match. Null when it does not open or is not the one.
libusb_device_handle* open_match(libusb_device* candidate, uint8_t manufacturer_index,
                                 const libusb_priv& wanted) {
  _log(3, "[I] Matched VID:0x%04X PID: 0x%04X\n", wanted.VID, wanted.PID);
  _log(3, "[I] opening device\n");
  libusb_device_handle* opened = nullptr;
  libusb_open(candidate, &opened);
  if (opened == nullptr) {
    _log(2, "[W] %s(%d): can't open usb device\n", "libusb_dev_open", __LINE__);
    return nullptr;
  }
  _log(3, "[I] device opened\n");
  libusb_claim_interface(opened, wanted.interface);
  if (has_manufacturer(opened, manufacturer_index, wanted)) return opened;
  libusb_close(opened);
  return nullptr;
}

int open_first_match(libusb_device** list, size_t count, const libusb_priv& wanted) {
  for (size_t i = 0; i < count; i++) {
    libusb_device_descriptor descriptor{};
    if (libusb_get_device_descriptor(list[i], &descriptor) < 0) {
      _log(1, "[E] %s(%d): failed to get device descriptor", "libusb_dev_open", __LINE__);
      return -1;
    }
    if (descriptor.idVendor != wanted.VID || descriptor.idProduct != wanted.PID) continue;
    handle = open_match(list[i], descriptor.iManufacturer, wanted);
    if (handle != nullptr) return 0;
  }
  return -1;
}

}  // namespace

int libusb_dev_open(dev_t* dev, void* p) {
  const auto& wanted = *static_cast<const libusb_priv*>(p);
  if (const int result = libusb_init(nullptr); result < 0) {
    _log(1, "[E] %s(%d): can not initialize libusb\n", __func__, __LINE__);
    return result;
  }
  libusb_device** list = nullptr;
  const ssize_t count = libusb_get_device_list(nullptr, &list);
  if (count < 0) {
    _log(1, "[E] %s(%d): libusb cnt < 0\n", __func__, __LINE__);
    return static_cast<int>(count);
  }
  const int result = open_first_match(list, static_cast<size_t>(count), wanted);
  libusb_free_device_list(list, 1);
  if (result < 0) return result;

  auto* priv = static_cast<libusb_priv*>(std::malloc(sizeof(libusb_priv)));
  if (priv == nullptr) {
    _log(1, "[E] %s(%d): can't allocate memory\n", __func__, __LINE__);
    libusb_close(handle);
    handle = nullptr;
    return -1;
  }
  *priv = wanted;
  *dev = {};
  dev->close = libusb_dev_close;
  dev->handle = handle;
  dev->priv = priv;
  return 0;
}

int libusb_dev_send_cmd(dev_t* /*dev*/, const char* cmd, uint8_t* data, uint32_t /*len*/) {
  if (handle == nullptr) return kNotOpen;
  if (data == nullptr) {
    _log(1, "[E] %s(%d): data pointer invlaid\n", __func__, __LINE__);
    return -1;
  }
  if (cmd != nullptr && std::string_view(cmd) == "libusb_interrupt") {
    const auto* transfer = reinterpret_cast<const libusb_interrupt*>(data);
    return libusb_interrupt_transfer(handle, transfer->endpoint, transfer->buf, transfer->length,
                                     transfer->transferred, transfer->timeout);
  }
  auto* message = reinterpret_cast<libusb_msg*>(data);
  const uint16_t length = std::min<uint16_t>(message->wLength, sizeof(message->buf));
  return libusb_control_transfer(handle, message->bmRequestType, message->bRequest, message->wValue,
                                 message->wIndex, message->buf, length, message->timeout);
}

int libusb_dev_close(dev_t* dev) {
  if (dev == nullptr || dev->handle == nullptr) {
    _log(1, "[E] %s(%d): device is null\n", __func__, __LINE__);
    return -1;
  }
  libusb_reset_device(handle);
  libusb_release_interface(handle, static_cast<const libusb_priv*>(dev->priv)->interface);
  libusb_close(handle);
  libusb_exit(nullptr);
  dev->handle = nullptr;
  handle = nullptr;
  return 0;
}

int libusb_send_packet(dev_t* /*dev*/, uint8_t /*type*/, uint8_t* /*buf*/, uint32_t /*len*/) {
  return 0;
}

int libusb_recv_packet(dev_t* /*dev*/, uint8_t /*type*/, uint8_t* /*buf*/, uint32_t /*len*/) {
  return 0;
}

int libusb_flush(dev_t* /*dev*/) {
  return 0;
}

}  // namespace transport
