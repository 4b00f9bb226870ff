// SPDX-License-Identifier: GPL-3.0-or-later
#include "src/common.h"

#include <endian.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <span>

#include "lib/liblog/logging.h"
#include "lib/libutil/interrupt.h"
#include "lib/libutil/output.h"
#include "lib/transport/hid.h"

namespace {

constexpr int kDeviceInterface = 2;
constexpr uint32_t kTimingInterface = 1;
constexpr uint64_t kReopenPauseUs = 5000;

constexpr uint32_t kShortCommand = 32;
constexpr uint32_t kLongCommand = 64;
using short_command = std::array<uint8_t, kShortCommand>;
using long_command = std::array<uint8_t, kLongCommand>;

constexpr uint16_t kListenMajor = 4;
constexpr uint16_t kListenMinor = 6;

// The layout of a timing report. A first report has a zero word and the elapsed time in front of
// its entries; a continuation's entries begin within its word, which is not zero.
constexpr size_t kFirstWordAt = 1;
constexpr size_t kElapsedAt = 3;
constexpr size_t kFirstEntriesAt = 5;
constexpr int kFirstEntries = 30;
constexpr size_t kMoreEntriesAt = 2;
constexpr int kMoreEntries = 31;

// Records on the wire: without padding, and little-endian whatever this machine's order is.

/// The argument of "usb_if".
struct [[gnu::packed]] zarvo_usb_t {
  uint32_t iface;
  uint8_t set;
};
static_assert(sizeof(zarvo_usb_t) == 5);

/// The result of "rbget" and the argument of "rbset".
struct [[gnu::packed]] rb_settings_t {
  uint32_t enable;
  uint32_t rsvd0, rsvd1, rsvd2;
  uint8_t high_add;
  uint8_t low_add;
};
static_assert(sizeof(rb_settings_t) == 18);

/// The argument of "rbsetlen".
struct [[gnu::packed]] rb_timing_buf_len {
  int16_t len;
};
static_assert(sizeof(rb_timing_buf_len) == 2);

/// The argument of "irtranset".
struct [[gnu::packed]] ir_tran_set_t {
  int16_t len;
  uint16_t ik;
  uint8_t repeat;
};
static_assert(sizeof(ir_tran_set_t) == 5);

template <typename Record>
Record load(const uint8_t* from) {
  Record record;
  std::memcpy(&record, from, sizeof(record));
  return record;
}

/// A command's data: the record and zeros behind it.
template <typename Data, typename Record>
Data data_of(const Record& record) {
  Data data{};
  static_assert(sizeof(record) <= data.size());
  std::memcpy(data.data(), &record, sizeof(record));
  return data;
}

int16_t store_count(uint16_t count) {
  return static_cast<int16_t>(htole16(count));
}

uint16_t load_word(const uint8_t* from) {
  return le16toh(load<uint16_t>(from));
}

/// One command; a point of interrupt.h.
int exchange(transport::dev_t* dev, const char* cmd, uint8_t* data, uint32_t len) {
  const int result = dev_send_cmd(dev, cmd, data, len);
  interrupt::checkpoint();
  return result;
}

transport::dev_t* open_device() {
  transport::libhid_priv wanted{VANTREL_USB_VID, VANTREL_USB_PID, kDeviceInterface};
  return transport::dev_open(transport::kHid, &wanted);
}

version_t query_version(transport::dev_t* dev) {
  std::array<uint8_t, kVersionReplySize> reply{};
  exchange(dev, "getversion", reply.data(), kVersionReplySize);
  return parse_version(reply.data());
}

/// Sends entries in as many commands as they need. False when one fails.
bool upload(transport::dev_t* dev, const char* cmd, std::span<const uint16_t> entries) {
  constexpr size_t kChunk = transport::kCmdDataSize / sizeof(uint16_t);
  long_command argument{};
  while (!entries.empty()) {
    const size_t size = std::min(entries.size(), kChunk);
    // What a short last chunk leaves behind it is not cleared: the device knows the length.
    for (size_t i = 0; i < size; i++) {
      const uint16_t entry = htole16(entries[i]);
      std::memcpy(argument.data() + i * sizeof(entry), &entry, sizeof(entry));
    }
    if (exchange(dev, cmd, argument.data(), kLongCommand) < 0) return false;
    entries = entries.subspan(size);
  }
  return true;
}

/// Adds entries up to the end mark. 1 when it is there, else 0. The entry count wraps at 256, so
/// that a signal that never ends stays within the packet.
int add_entries(ir_packet* p, const uint8_t* entries, int most) {
  for (int i = 0; i < most; i++) {
    const auto entry = load_word(entries + sizeof(uint16_t) * static_cast<size_t>(i));
    if (entry == 0 && p->len != 0) return 1;
    p->buf[p->len++] = entry;
  }
  return 0;
}

}  // namespace

version_t parse_version(const uint8_t* reply) {
  auto version = load<version_t>(reply);
  version.major_version = le16toh(version.major_version);
  version.minor_version = le16toh(version.minor_version);
  version.patch_version = le16toh(version.patch_version);
  version.scm_hash = le32toh(version.scm_hash);
  version.type[sizeof(version.type) - 1] = '\0';
  return version;
}

int zarvo_init(appdata_priv* session) {
  session->dev = open_device();
  interrupt::checkpoint();
  if (session->dev == nullptr) {
    _log(3, "[I] device not found\n");
    return 0;
  }
  if (tessarin_iface_en(session->dev, 1) < 0) {
    _log(1, "[E] %s(%d): could not set iface\n", __func__, __LINE__);
    zarvo_deinit(session);
  }
  return 0;
}

int zarvo_deinit(appdata_priv* session) {
  if (session->dev != nullptr) dev_close(session->dev);
  session->dev = nullptr;
  return 0;
}

int tessarin_iface_en(transport::dev_t* dev, int en) {
  const zarvo_usb_t wanted{htole32(kTimingInterface), static_cast<uint8_t>(en)};
  auto argument = data_of<short_command>(wanted);
  return exchange(dev, "usb_if", argument.data(), kShortCommand);
}

int zv_get_version(transport::dev_t* dev, uint8_t* buf, uint8_t /*len*/) {
  if (dev == nullptr) return -1;
  if (buf == nullptr) {
    _log(1, "[E] %s(%d): invalid buffer\n", __func__, __LINE__);
    return -1;
  }
  return exchange(dev, "getversion", buf, kVersionReplySize) < 0 ? 1 : 0;
}

int zv_version_compare(transport::dev_t* dev, uint16_t major, uint16_t minor) {
  if (dev == nullptr) return -1;
  const version_t found = query_version(dev);
  _log(1, "[E] %s(%d): Zarvo tessarin found version: %d.%d.%d 0x%X [%s]\n", __func__, __LINE__,
       found.major_version, found.minor_version, found.patch_version, found.scm_hash, found.type);
  if (found.major_version == major) return found.minor_version < minor ? -1 : 0;
  return found.major_version > major ? -1 : 0;  // this way round: see the header
}

int zv_rb_settings_get(transport::dev_t* dev, uint32_t* wake_en, uint8_t* high, uint8_t* low) {
  long_command data{};
  if (exchange(dev, "rbget", data.data(), kLongCommand) < 0) return -1;
  const auto settings = load<rb_settings_t>(data.data());
  *wake_en = le32toh(settings.enable);
  *high = settings.high_add;
  *low = settings.low_add;
  return 0;
}

int zv_rb_settings_set(transport::dev_t* dev, uint32_t wake_en, uint8_t high, uint8_t low) {
  const rb_settings_t settings{htole32(wake_en), 0, 0, 0, high, low};
  auto data = data_of<long_command>(settings);
  return exchange(dev, "rbset", data.data(), kLongCommand) < 0 ? -1 : 0;
}

int zv_rb_wake_sig(transport::dev_t* dev, const uint16_t* buf, uint8_t len) {
  auto header = data_of<long_command>(rb_timing_buf_len{store_count(len)});
  if (exchange(dev, "rbsetlen", header.data(), kLongCommand) < 0) return -1;
  // Counted in 8 bits: the device has no room for 128 entries or more.
  const auto bytes = static_cast<uint8_t>(sizeof(uint16_t) * len);
  if (upload(dev, "rbwakesig", {buf, bytes / sizeof(uint16_t)})) return 0;
  _log(1, "[E] %s(%d): error sending data, ceck device log\n", __func__, __LINE__);
  return -1;
}

int zv_transmit_raw(transport::dev_t* dev, const uint16_t* buf, uint16_t len, uint16_t ik,
                    uint8_t repeat) {
  auto header = data_of<long_command>(ir_tran_set_t{store_count(len), htole16(ik), repeat});
  if (exchange(dev, "irtranset", header.data(), kLongCommand) < 0) return -1;
  const auto bytes = static_cast<uint16_t>(sizeof(uint16_t) * len);
  if (upload(dev, "irtransraw", {buf, bytes / sizeof(uint16_t)})) return 0;
  _log(1, "[E] %s(%d): error sending data, ceck device log\n", __func__, __LINE__);
  return -1;
}

int zv_transmit_kill(transport::dev_t* dev) {
  long_command argument{};
  return exchange(dev, "irtranskil", argument.data(), kLongCommand) < 0 ? -1 : 0;
}

int zv_ir_packet_poll(transport::dev_t* dev, ir_packet* p) {
  if (dev == nullptr) return -1;
  transport::timing_report report;
  const int count = transport::hid_read_timing(dev, report);
  interrupt::checkpoint();
  if (count == 0) return 0;
  const bool right_length = static_cast<uint8_t>(count) == transport::kTimingReportSize;
  const bool right_id = report[0] == transport::kTimingReportId;
  if (!right_length) _log(1, "[E] %s(%d): Wrong response length = %d\n", __func__, __LINE__, count);
  if (!right_id) _log(1, "[E] %s(%d): %s: wrong report id\n", __func__, __LINE__, __func__);
  if (!right_length || !right_id) {
    _log(1, "[E] %s(%d): Device Closed, Watiing...\n", __func__, __LINE__);
    return -1;
  }

  if (load_word(report.data() + kFirstWordAt) != 0) {
    return add_entries(p, report.data() + kMoreEntriesAt, kMoreEntries);
  }
  p->len = 0;
  p->elapsed = load_word(report.data() + kElapsedAt);
  return add_entries(p, report.data() + kFirstEntriesAt, kFirstEntries);
}

int wait_for_device(transport::dev_t** dev) {
  // This may take long, and a reader wants to know why nothing comes.
  if (!output::flush()) return -1;
  // A device that just came back may refuse to open until its access rights are set.
  while ((*dev = open_device()) == nullptr) pause_us(kReopenPauseUs);

  const version_t found = query_version(*dev);
  std::printf("Zarvo tessarin found version: %d.%d.%d 0x%X [%s]\n", found.major_version,
              found.minor_version, found.patch_version, found.scm_hash, found.type);
  // Each part on its own: 5.0 is refused.
  if (found.major_version >= kListenMajor && found.minor_version >= kListenMinor) {
    output::flush();
    tessarin_iface_en(*dev, 1);
    return 0;
  }
  std::printf("Error: version required to listen >= 4.6.x\n");
  return -1;
}

int listen_for_signals(appdata_priv* session, void (*on_signal)(ir_packet* p)) {
  ir_packet packet{};
  while (output::error() == 0) {
    switch (zv_ir_packet_poll(session->dev, &packet)) {
      case 0:
        break;
      case 1:
        on_signal(&packet);
        break;
      case -1:
        std::printf("error, disconnecting\n");
        zarvo_deinit(session);
        if (wait_for_device(&session->dev) < 0) return -1;
        break;
      default:
        std::printf("UNKNOWN ERROR\n");
    }
  }
  return -1;
}

void pause_us(uint64_t us) {
  constexpr uint64_t kUsPerSecond = 1'000'000;
  constexpr long kNsPerUs = 1000;
  timespec left{.tv_sec = static_cast<time_t>(us / kUsPerSecond),
                .tv_nsec = static_cast<long>(us % kUsPerSecond) * kNsPerUs};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) interrupt::checkpoint();
  interrupt::checkpoint();
}
