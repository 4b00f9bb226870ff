// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/transport/hid.h"

#include <hidapi.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "lib/liblog/logging.h"
#include "lib/libutil/interrupt.h"

namespace transport {

namespace {

constexpr uint32_t kShortCommand = 32;
constexpr uint32_t kLongCommand = 64;
constexpr size_t kReportPayload = 64;

constexpr int kReplyTimeoutMs = 10'000;
constexpr int kDrainTimeoutMs = 100;
constexpr uint8_t kFill = 0xFF;

/// Reports read per id at most while draining, several times what the kernel queues. A device
/// that never falls quiet would keep the drain from ending.
constexpr int kMostDrained = 256;

struct report_kind {
  uint8_t id;
  size_t size;  // with the id
};

constexpr report_kind kShortReply{1, 33};
constexpr report_kind kShortRequest{2, 33};
constexpr report_kind kAcknowledgement{3, 2};
constexpr report_kind kData{4, 65};
constexpr report_kind kLongReply{5, 65};
constexpr report_kind kLongRequest{6, 65};

using report_buffer = std::array<uint8_t, 1 + kReportPayload>;

hid_device* device(const dev_t* dev) {
  return static_cast<hid_device*>(dev->handle);
}

void drain(dev_t* dev) {
  // hidapi gives whatever report comes next: the id in the buffer selects nothing.
  for (const uint8_t id : {kShortReply.id, kAcknowledgement.id, kLongReply.id}) {
    for (int i = 0; i < kMostDrained; i++) {
      std::array<uint8_t, kReportPayload> report{id};
      if (hid_read_timeout(device(dev), report.data(), report.size(), kDrainTimeoutMs) <= 0) break;
    }
  }
}

hid_device* open_first_match(const libhid_priv& wanted, const hid_device_info* list) {
  for (const hid_device_info* info = list; info != nullptr; info = info->next) {
    if (info->vendor_id != wanted.VID || info->product_id != wanted.PID ||
        info->interface_number != wanted.iface) {
      continue;
    }
    if (hid_device* opened = hid_open_path(info->path)) return opened;
  }
  return nullptr;
}

hid_device* find_and_open(const libhid_priv& wanted) {
  hid_init();
  hid_device_info* list = hid_enumerate(0, 0);
  if (list == nullptr) {
    _log(3, "[I] error, device list couldn't enumerate\n");
    return nullptr;
  }
  hid_device* opened = open_first_match(wanted, list);
  hid_free_enumeration(list);
  return opened;
}

/// Devices are asked for their names once after the open; the answers do not matter.
void read_names(hid_device* opened) {
  std::array<wchar_t, 256> text{};
  constexpr size_t kMostCharacters = 255;
  hid_get_manufacturer_string(opened, text.data(), kMostCharacters);
  hid_get_product_string(opened, text.data(), kMostCharacters);
  hid_get_serial_number_string(opened, text.data(), kMostCharacters);
}

}  // namespace

int hid_dev_open(dev_t* dev, void* p) {
  if (dev == nullptr) {
    _log(1, "[E] %s(%d): invalid device handle\n", __func__, __LINE__);
    std::abort();
  }
  const auto& wanted = *static_cast<const libhid_priv*>(p);
  hid_device* opened = find_and_open(wanted);
  if (opened == nullptr) return -1;
  read_names(opened);

  auto* priv = static_cast<libhid_priv*>(std::malloc(sizeof(libhid_priv)));
  if (priv == nullptr) {
    _log(1, "[E] %s(%d): can't allocate memory\n", __func__, __LINE__);
    hid_close(opened);
    return -1;
  }
  *priv = wanted;
  *dev = {.write = nullptr,
          .read = nullptr,
          .send_pkv = hid_send_packet,
          .recv_pkv = hid_recv_packet,
          .flush = hid_flush,
          .close = hid_dev_close,
          .send_cmd = nullptr,
          .handle = opened,
          .priv = priv};
  drain(dev);
  return 0;
}

int hid_send_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len) {
  report_kind kind{};
  if (type == PKTYPE_DATA) {
    kind = kData;
  } else if (type != PKTYPE_CMD) {
    return -1;
  } else if (len == kShortCommand) {
    kind = kShortRequest;
  } else if (len == kLongCommand) {
    kind = kLongRequest;
  } else {
    _log(1, "[E] %s(%d): invalid cmd length\n", __func__, __LINE__);
    return -1;
  }
  report_buffer report;
  report.fill(kFill);
  report[0] = kind.id;
  std::memcpy(report.data() + 1, buf, std::min<size_t>(len, kReportPayload));
  const int written = hid_write(device(dev), report.data(), kind.size);
  if (written >= 0) return written;
  if (interrupt::noted()) return kInterrupted;
  _log(1, "[E] %s(%d): hidapi: %ls\n", __func__, __LINE__, hid_error(device(dev)));
  return written;
}

int hid_recv_packet(dev_t* dev, uint8_t type, uint8_t* buf, uint32_t len) {
  report_kind kind{};
  if (type == PKTYPE_CMD && len == kShortCommand) {
    kind = kShortReply;
  } else if (type == PKTYPE_CMD && len == kLongCommand) {
    kind = kLongReply;
  } else if (type == PKTYPE_CMD) {
    _log(1, "[E] %s(%d): invalid cmd length: %d\n", __func__, __LINE__, static_cast<int>(len));
    return -1;
  } else if (type == PKTYPE_DATA && len == 0) {
    _log(1, "[E] %s(%d): length mismatch, report_len :%d request: %d\n", __func__, __LINE__, 1, 0);
    return -1;
  } else if (type == PKTYPE_DATA) {
    kind = kAcknowledgement;
  } else {
    _log(1, "[E] %s(%d): %s: invalid packet type\n", __func__, __LINE__, __func__);
    _log(1, "[E] %s(%d): hidapi: %ls\n", __func__, __LINE__, hid_error(device(dev)));
    return -1;
  }

  report_buffer report{kind.id};
  const int count = hid_read_timeout(device(dev), report.data(), kind.size, kReplyTimeoutMs);
  if (count < 0) {
    if (interrupt::noted()) return kInterrupted;
    _log(1, "[E] %s(%d): ---timeout---\n", __func__, __LINE__);
    _log(1, "[E] %s(%d): hidapi: %ls\n", __func__, __LINE__, hid_error(device(dev)));
  }
  if (static_cast<uint8_t>(count) != kind.size) {
    _log(1, "[E] %s(%d): Wrong response length = %d\n", __func__, __LINE__, count);
    _log(1, "[E] %s(%d): hidapi: %ls\n", __func__, __LINE__, hid_error(device(dev)));
    return -1;
  }
  if (report[0] != kind.id) {
    _log(1, "[E] %s(%d): %s: wrong report id\n", __func__, __LINE__, __func__);
    _log(1, "[E] %s(%d): hidapi: %ls\n", __func__, __LINE__, hid_error(device(dev)));
    return -1;
  }
  std::memcpy(buf, report.data() + 1, std::min<size_t>(len, kReportPayload));
  return type;
}

int hid_flush(dev_t* dev) {
  drain(dev);
  return 0;
}

int hid_dev_close(dev_t* dev) {
  if (dev->handle == nullptr) return 0;
  drain(dev);
  hid_close(device(dev));
  hid_exit();
  dev->handle = nullptr;
  return 0;
}

int hid_read_timing(dev_t* dev, timing_report& report) {
  report = {kTimingReportId};
  return hid_read_timeout(device(dev), report.data(), report.size(), kReplyTimeoutMs);
}

}  // namespace transport
