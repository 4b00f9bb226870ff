// SPDX-License-Identifier: GPL-3.0-or-later
#include "src/session.h"

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

// Numbers on the wire are little-endian, as is every machine this runs on.
template <typename T>
T load(const uint8_t* from) {
  T value;
  std::memcpy(&value, from, sizeof(value));
  return value;
}

template <typename T>
void store(uint8_t* to, T value) {
  std::memcpy(to, &value, sizeof(value));
}

transport::dev_t* open_device() {
  transport::libhid_priv wanted{VANTREL_USB_VID, VANTREL_USB_PID, kDeviceInterface};
  return transport::dev_open(transport::kHid, &wanted);
}

version_t query_version(transport::dev_t* dev) {
  std::array<uint8_t, kVersionReplySize> reply{};
  dev_send_cmd(dev, "getversion", reply.data(), kVersionReplySize);
  return parse_version(reply.data());
}

/// Sends the bytes in as many commands as they need. `caller` names the function in the message.
int upload(transport::dev_t* dev, const char* cmd, std::span<const uint8_t> bytes,
           const char* caller) {
  long_command argument{};
  while (!bytes.empty()) {
    const size_t size = std::min(bytes.size(), transport::kCmdDataSize);
    std::copy_n(bytes.begin(), size, argument.begin());
    // What a short last chunk leaves behind it is not cleared: the device knows the length.
    if (dev_send_cmd(dev, cmd, argument.data(), kLongCommand) < 0) {
      _log(1, "[E] %s(%d): error sending data, ceck device log\n", caller, __LINE__);
      return -1;
    }
    bytes = bytes.subspan(size);
  }
  return 0;
}

bool is_timing_report(int count, const transport::timing_report& report) {
  const bool right_length = static_cast<uint8_t>(count) == transport::kTimingReportSize;
  const bool right_id = report[0] == transport::kTimingReportId;
  constexpr const char* kCaller = "zv_ir_packet_poll";
  if (!right_length) _log(1, "[E] %s(%d): Wrong response length = %d\n", kCaller, __LINE__, count);
  if (!right_id) _log(1, "[E] %s(%d): %s: wrong report id\n", kCaller, __LINE__, kCaller);
  if (right_length && right_id) return true;
  _log(1, "[E] %s(%d): Device Closed, Watiing...\n", kCaller, __LINE__);
  return false;
}

/// Adds entries up to the end mark. 1 when it is there, else 0. The entry count wraps at 256, so
/// that a signal that never ends stays within the packet.
int add_entries(ir_packet* p, const uint8_t* entries, int most) {
  for (int i = 0; i < most; i++) {
    const auto entry = load<uint16_t>(entries + sizeof(uint16_t) * static_cast<size_t>(i));
    if (entry == 0 && p->len != 0) return 1;
    p->buf[p->len++] = entry;
  }
  return 0;
}

}  // namespace

version_t parse_version(const uint8_t* reply) {
  version_t version{.major_version = load<uint16_t>(reply),
                    .minor_version = load<uint16_t>(reply + 2),
                    .patch_version = load<uint16_t>(reply + 4),
                    .scm_hash = load<uint32_t>(reply + 6),
                    .type = {}};
  std::memcpy(version.type, reply + 10, sizeof(version.type) - 1);
  return version;
}

int zarvo_init(appdata_priv* session) {
  session->dev = open_device();
  if (session->dev == nullptr) {
    _log(3, "[I] device not found\n");
    return 0;
  }
  interrupt::checkpoint();
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
  short_command argument{};
  store(argument.data(), kTimingInterface);
  argument[4] = static_cast<uint8_t>(en);
  return dev_send_cmd(dev, "usb_if", argument.data(), kShortCommand);
}

int zv_get_version(transport::dev_t* dev, uint8_t* buf, uint8_t /*len*/) {
  if (dev == nullptr) return -1;
  if (buf == nullptr) {
    _log(1, "[E] %s(%d): invalid buffer\n", __func__, __LINE__);
    return -1;
  }
  return dev_send_cmd(dev, "getversion", buf, kVersionReplySize) < 0 ? 1 : 0;
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
  if (dev_send_cmd(dev, "rbget", data.data(), kLongCommand) < 0) return -1;
  *wake_en = load<uint32_t>(data.data());
  *high = data[16];
  *low = data[17];
  return 0;
}

int zv_rb_settings_set(transport::dev_t* dev, uint32_t wake_en, uint8_t high, uint8_t low) {
  long_command data{};
  store(data.data(), wake_en);
  data[16] = high;
  data[17] = low;
  return dev_send_cmd(dev, "rbset", data.data(), kLongCommand) < 0 ? -1 : 0;
}

int zv_rb_wake_sig(transport::dev_t* dev, const uint16_t* buf, uint8_t len) {
  long_command header{};
  store(header.data(), static_cast<int16_t>(len));
  if (dev_send_cmd(dev, "rbsetlen", header.data(), kLongCommand) < 0) return -1;
  // Counted in 8 bits: the device has no room for 128 entries or more.
  const auto size = static_cast<uint8_t>(sizeof(uint16_t) * len);
  return upload(dev, "rbwakesig", {reinterpret_cast<const uint8_t*>(buf), size}, __func__);
}

int zv_transmit_raw(transport::dev_t* dev, const uint16_t* buf, uint16_t len, uint16_t ik,
                    uint8_t repeat) {
  long_command header{};
  store(header.data(), static_cast<int16_t>(len));
  store(header.data() + 2, ik);
  header[4] = repeat;
  if (dev_send_cmd(dev, "irtranset", header.data(), kLongCommand) < 0) return -1;
  const auto size = static_cast<uint16_t>(sizeof(uint16_t) * len);
  return upload(dev, "irtransraw", {reinterpret_cast<const uint8_t*>(buf), size}, __func__);
}

int zv_transmit_kill(transport::dev_t* dev) {
  long_command argument{};
  return dev_send_cmd(dev, "irtranskil", argument.data(), kLongCommand) < 0 ? -1 : 0;
}

int zv_ir_packet_poll(transport::dev_t* dev, ir_packet* p) {
  if (dev == nullptr) return -1;
  transport::timing_report report;
  const int count = transport::hid_read_timing(dev, report);
  if (count == 0) return 0;
  if (!is_timing_report(count, report)) return -1;

  if (load<uint16_t>(report.data() + kFirstWordAt) != 0) {
    return add_entries(p, report.data() + kMoreEntriesAt, kMoreEntries);
  }
  p->len = 0;
  p->elapsed = load<uint16_t>(report.data() + kElapsedAt);
  return add_entries(p, report.data() + kFirstEntriesAt, kFirstEntries);
}

int wait_for_device(transport::dev_t** dev) {
  // This may take long, and a reader wants to know why nothing comes.
  if (!output::flush()) return -1;
  // A device that just came back may refuse to open until its access rights are set.
  while ((*dev = open_device()) == nullptr) pause_us(kReopenPauseUs);
  interrupt::checkpoint();

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
  const interrupt::wait waiting;
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}
