// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/transport/libusb.h"

#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "lib/liblog/logging.h"

namespace transport {

namespace {

constexpr int kNotOpen = -19;

// Of the device that was opened last, null once that is closed. Its dev_t has it too.
libusb_device_handle* handle = nullptr;

libusb_device_handle* handle_of(const dev_t* dev) {
  return static_cast<libusb_device_handle*>(dev->handle);
}

/// One use of the library, which ends with the object unless it is kept.
class library_use {
 public:
  library_use() = default;
  ~library_use() {
    if (!kept_) libusb_exit(nullptr);
  }
  library_use(const library_use&) = delete;
  library_use& operator=(const library_use&) = delete;
  void keep() { kept_ = true; }

 private:
  bool kept_ = false;
};

struct close_device {
  void operator()(libusb_device_handle* opened) const { libusb_close(opened); }
};
using owned_handle = std::unique_ptr<libusb_device_handle, close_device>;

struct free_list {
  void operator()(libusb_device** list) const { libusb_free_device_list(list, 1); }
};
using device_list = std::unique_ptr<libusb_device*[], free_list>;

/// The manufacturer of an open device; nothing when it does not say.
std::optional<std::string> manufacturer_of(libusb_device_handle* opened, uint8_t index) {
  std::array<unsigned char, 256> text{};
  const int length =
      libusb_get_string_descriptor_ascii(opened, index, text.data(), static_cast<int>(text.size()));
  if (length < 0) return std::nullopt;
  const size_t size = std::min(static_cast<size_t>(length), text.size());
  return std::string(reinterpret_cast<const char*>(text.data()), size);
}

std::string_view expected_manufacturer(const libusb_priv& wanted) {
  return {wanted.mfr, strnlen(wanted.mfr, sizeof(wanted.mfr))};
}

bool is_wanted(const libusb_device_descriptor& found, const libusb_priv& wanted) {
  return found.idVendor == wanted.VID && found.idProduct == wanted.PID;
}

/// Null when it cannot be opened.
owned_handle open_device(libusb_device* device) {
  _log(3, "[I] opening device\n");
  libusb_device_handle* raw = nullptr;
  libusb_open(device, &raw);
  if (raw != nullptr) _log(3, "[I] device opened\n");
  return owned_handle(raw);
}

/// A copy that dev_t can own; null when there is no memory.
libusb_priv* copy_of(const libusb_priv& wanted) {
  auto* const copy = static_cast<libusb_priv*>(std::malloc(sizeof(libusb_priv)));
  if (copy != nullptr) *copy = wanted;
  return copy;
}

void fill(dev_t* dev, libusb_device_handle* opened, libusb_priv* priv) {
  *dev = {};
  dev->close = libusb_dev_close;
  dev->handle = opened;
  dev->priv = priv;
}

}  // namespace

int libusb_dev_open(dev_t* dev, void* p) {
  const auto& wanted = *static_cast<const libusb_priv*>(p);
  if (const int result = libusb_init(nullptr); result < 0) {
    _log(1, "[E] %s(%d): can not initialize libusb\n", __func__, __LINE__);
    return result;
  }
  library_use library;
  libusb_device** all = nullptr;
  const ssize_t count = libusb_get_device_list(nullptr, &all);
  if (count < 0) {
    _log(1, "[E] %s(%d): libusb cnt < 0\n", __func__, __LINE__);
    return static_cast<int>(count);
  }
  const device_list list(all);
  owned_handle opened;
  for (size_t i = 0; i < static_cast<size_t>(count) && opened == nullptr; i++) {
    libusb_device_descriptor descriptor{};
    if (libusb_get_device_descriptor(list[i], &descriptor) < 0) {
      _log(1, "[E] %s(%d): failed to get device descriptor", __func__, __LINE__);
      return -1;
    }
    if (!is_wanted(descriptor, wanted)) continue;
    _log(3, "[I] Matched VID:0x%04X PID: 0x%04X\n", wanted.VID, wanted.PID);
    owned_handle candidate = open_device(list[i]);
    if (candidate == nullptr) {
      _log(2, "[W] %s(%d): can't open usb device\n", __func__, __LINE__);
      continue;
    }
    libusb_claim_interface(candidate.get(), wanted.interface);
    const auto manufacturer = manufacturer_of(candidate.get(), descriptor.iManufacturer);
    if (!manufacturer) {
      _log(1, "[E] %s(%d): Cannot query device, is the GUI open?\n", __func__, __LINE__);
    } else if (*manufacturer != expected_manufacturer(wanted)) {
      _log(1, "[E] %s(%d): manufacturer string mismatch\n", __func__, __LINE__);
    } else {
      opened = std::move(candidate);
    }
  }
  if (opened == nullptr) return -1;

  libusb_priv* const priv = copy_of(wanted);
  if (priv == nullptr) {
    _log(1, "[E] %s(%d): can't allocate memory\n", __func__, __LINE__);
    return -1;
  }
  handle = opened.release();
  library.keep();
  fill(dev, handle, priv);
  return 0;
}

int libusb_dev_send_cmd(dev_t* dev, const char* cmd, uint8_t* data, uint32_t /*len*/) {
  libusb_device_handle* const target = dev != nullptr ? handle_of(dev) : handle;
  if (target == nullptr) return kNotOpen;
  if (data == nullptr) {
    _log(1, "[E] %s(%d): data pointer invlaid\n", __func__, __LINE__);
    return -1;
  }
  if (cmd != nullptr && std::string_view(cmd) == "libusb_interrupt") {
    const auto* transfer = reinterpret_cast<const libusb_interrupt*>(data);
    return libusb_interrupt_transfer(target, transfer->endpoint, transfer->buf, transfer->length,
                                     transfer->transferred, transfer->timeout);
  }
  auto* message = reinterpret_cast<libusb_msg*>(data);
  if (message->wLength > sizeof(message->buf)) return LIBUSB_ERROR_INVALID_PARAM;
  return libusb_control_transfer(target, message->bmRequestType, message->bRequest, message->wValue,
                                 message->wIndex, message->buf, message->wLength, message->timeout);
}

int libusb_dev_close(dev_t* dev) {
  if (dev == nullptr || dev->handle == nullptr) {
    _log(1, "[E] %s(%d): device is null\n", __func__, __LINE__);
    return -1;
  }
  libusb_device_handle* const opened = handle_of(dev);
  libusb_reset_device(opened);
  libusb_release_interface(opened, static_cast<const libusb_priv*>(dev->priv)->interface);
  libusb_close(opened);
  libusb_exit(nullptr);
  dev->handle = nullptr;
  if (handle == opened) handle = nullptr;
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
