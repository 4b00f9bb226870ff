// SPDX-License-Identifier: GPL-3.0-or-later
// The libusb functions that the program calls, over the simulated bus.
#include <libusb.h>

#include <algorithm>
#include <cstring>

#include "tests/support/fake_world.h"

using fake_usb::the_world;

struct libusb_device {
  fake_usb::device* target;
};

struct libusb_device_handle {
  fake_usb::device* target;
};

namespace {

/// Records the call and gives what it was told to fail with, or 0.
int call(const char* function, const std::string& arguments = "") {
  the_world().record(function + arguments);
  return the_world().failure(function);
}

}  // namespace

extern "C" {

int libusb_init(libusb_context** /*context*/) {
  return call(__func__);
}

void libusb_exit(libusb_context* /*context*/) {
  call(__func__);
}

ssize_t libusb_get_device_list(libusb_context* /*context*/, libusb_device*** list) {
  if (const int failure = call(__func__)) return failure;
  const size_t count = the_world().devices.size();
  *list = new libusb_device*[count + 1]();
  for (size_t i = 0; i < count; i++) (*list)[i] = new libusb_device{the_world().devices[i].get()};
  return static_cast<ssize_t>(count);
}

void libusb_free_device_list(libusb_device** list, int unref_devices) {
  call(__func__, fake_usb::text(" ", unref_devices));
  for (libusb_device** entry = list; *entry != nullptr; entry++) delete *entry;
  delete[] list;
}

int libusb_get_device_descriptor(libusb_device* dev, libusb_device_descriptor* descriptor) {
  if (const int failure = call(__func__)) return failure;
  descriptor->idVendor = dev->target->vid;
  descriptor->idProduct = dev->target->pid;
  descriptor->iManufacturer = 1;
  return 0;
}

int libusb_open(libusb_device* dev, libusb_device_handle** handle) {
  if (const int failure = call(__func__, fake_usb::text(" ", dev->target->path))) return failure;
  if (dev->target->refusals > 0) {
    dev->target->refusals--;
    return LIBUSB_ERROR_ACCESS;
  }
  *handle = new libusb_device_handle{dev->target};
  return 0;
}

void libusb_close(libusb_device_handle* handle) {
  call(__func__);
  delete handle;
}

int libusb_claim_interface(libusb_device_handle* /*handle*/, int interface_number) {
  return call(__func__, fake_usb::text(" ", interface_number));
}

int libusb_release_interface(libusb_device_handle* /*handle*/, int interface_number) {
  return call(__func__, fake_usb::text(" ", interface_number));
}

int libusb_get_string_descriptor_ascii(libusb_device_handle* handle, uint8_t /*index*/,
                                       unsigned char* data, int length) {
  if (const int failure = call(__func__, fake_usb::text(" ", length))) return failure;
  const std::string& text = handle->target->manufacturer;
  const size_t count = std::min(text.size(), static_cast<size_t>(length));
  std::memcpy(data, text.data(), count);
  return static_cast<int>(count);
}

int libusb_reset_device(libusb_device_handle* /*handle*/) {
  return call(__func__);
}

int libusb_control_transfer(libusb_device_handle* /*handle*/, uint8_t request_type, uint8_t request,
                            uint16_t value, uint16_t index, unsigned char* /*data*/,
                            uint16_t length, unsigned int timeout) {
  const int failure = call(__func__, fake_usb::text(" ", int{request_type}, " ", int{request}, " ",
                                                    value, " ", index, " ", length, " ", timeout));
  return failure != 0 ? failure : length;
}

int libusb_interrupt_transfer(libusb_device_handle* /*handle*/, unsigned char endpoint,
                              unsigned char* /*data*/, int length, int* transferred,
                              unsigned int timeout) {
  const int failure = call(__func__, fake_usb::text(" ", int{endpoint}, " ", length, " ", timeout));
  if (failure == 0) *transferred = length;
  return failure;
}

}  // extern "C"
