// SPDX-License-Identifier: GPL-3.0-or-later
// The hidapi functions that the program calls, over the simulated bus. They behave as the hidraw
// flavour does: a read gives whatever report is next, cut to the room there is; a handle of a
// device that went away stays dead.
#include <hidapi.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tests/support/fake_world.h"

using fake_usb::device;
using fake_usb::the_world;

struct hid_device_ {
  device* target;
  int generation;
  const wchar_t* error;
};

namespace {

bool is_alive(const hid_device* dev) {
  return dev->target->present && dev->generation == dev->target->generation;
}

int lose(hid_device* dev) {
  dev->error = L"No such device";
  return -1;
}

int leave_text_empty(wchar_t* text, size_t room) {
  the_world().record(fake_usb::text("name ", room));
  *text = L'\0';
  return 0;
}

}  // namespace

extern "C" {

int hid_init() {
  const fake_usb::library_call here;
  the_world().record("init");
  return 0;
}

int hid_exit() {
  const fake_usb::library_call here;
  the_world().record("exit");
  return 0;
}

hid_device_info* hid_enumerate(unsigned short vendor_id, unsigned short product_id) {
  const fake_usb::library_call here;
  the_world().record(fake_usb::text("enumerate ", vendor_id, " ", product_id));
  hid_device_info* first = nullptr;
  hid_device_info** end = &first;
  for (const auto& target : the_world().devices) {
    if (!target->present) continue;
    auto* info = static_cast<hid_device_info*>(std::calloc(1, sizeof(hid_device_info)));
    info->path = strdup(target->path.c_str());
    info->vendor_id = target->vid;
    info->product_id = target->pid;
    info->interface_number = target->iface;
    *end = info;
    end = &info->next;
  }
  return first;
}

void hid_free_enumeration(hid_device_info* devs) {
  const fake_usb::library_call here;
  the_world().record("free");
  while (devs != nullptr) {
    hid_device_info* next = devs->next;
    std::free(devs->path);
    std::free(devs);
    devs = next;
  }
}

hid_device* hid_open_path(const char* path) {
  const fake_usb::library_call here;
  for (const auto& target : the_world().devices) {
    if (!target->present || target->path != path) continue;
    if (target->refusals > 0) {
      target->refusals--;
      the_world().record(fake_usb::text("open ", path, " refused"));
      return nullptr;
    }
    the_world().record(fake_usb::text("open ", path));
    the_world().open_handles++;
    return new hid_device{target.get(), target->generation, L"Success"};
  }
  return nullptr;
}

void hid_close(hid_device* dev) {
  const fake_usb::library_call here;
  the_world().record("close");
  the_world().open_handles--;
  delete dev;
}

int hid_get_manufacturer_string(hid_device* /*dev*/, wchar_t* text, size_t maxlen) {
  const fake_usb::library_call here;
  return leave_text_empty(text, maxlen);
}

int hid_get_product_string(hid_device* /*dev*/, wchar_t* text, size_t maxlen) {
  const fake_usb::library_call here;
  return leave_text_empty(text, maxlen);
}

int hid_get_serial_number_string(hid_device* /*dev*/, wchar_t* text, size_t maxlen) {
  const fake_usb::library_call here;
  return leave_text_empty(text, maxlen);
}

const wchar_t* hid_error(hid_device* dev) {
  const fake_usb::library_call here;
  return dev->error;
}

int hid_write(hid_device* dev, const unsigned char* data, size_t length) {
  const fake_usb::library_call here;
  const fake_usb::bytes report(data, data + length);
  the_world().record(fake_usb::text("write ", fake_usb::to_hex(report)));
  if (!is_alive(dev)) return lose(dev);
  bool failed = false;
  the_world().handle_write(*dev->target, report, &failed);
  if (failed) return lose(dev);
  return static_cast<int>(length);
}

int hid_read_timeout(hid_device* dev, unsigned char* data, size_t length, int milliseconds) {
  const fake_usb::library_call here;
  const int id = data[0];
  const auto finish = [&](int count) {
    the_world().record(
        fake_usb::text("read ", length, " id ", id, " ", milliseconds, " -> ", count));
    return count;
  };
  fake_usb::world& world = the_world();
  const uint64_t until = world.now + static_cast<uint64_t>(milliseconds) * 1000;
  const bool in_vain =
      world.advance(until, [dev] { return !is_alive(dev) || !dev->target->input.empty(); });
  if (in_vain) {
    dev->error = L"Success";
    return finish(0);
  }
  if (!is_alive(dev)) return finish(lose(dev));
  if (world.interrupted) {
    dev->error = L"Interrupted system call";
    errno = EINTR;
    return finish(-1);
  }
  const fake_usb::bytes report = std::move(dev->target->input.front());
  dev->target->input.pop_front();
  const size_t count = std::min(length, report.size());
  std::copy_n(report.begin(), count, data);
  dev->error = L"Success";
  return finish(static_cast<int>(count));
}

}  // extern "C"
