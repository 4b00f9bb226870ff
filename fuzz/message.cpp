// SPDX-License-Identifier: GPL-3.0-or-later
// Any sections as a received signal, read with the installed definitions. A byte is the number of
// durations of a lead-in, one the number of bits, then these and a gap follow.
#include "lib/irp/message.h"

#include <fstream>

#include "fuzz/input.h"

namespace {

/// Takes bytes from the front; zeros at the end.
class bytes {
 public:
  bytes(const uint8_t* data, size_t size) : at_(data), end_(data + size) {}
  [[nodiscard]] bool empty() const { return at_ == end_; }
  int next() { return empty() ? 0 : *at_++; }
  int next_us() { return next() << 8 | next(); }

 private:
  const uint8_t *at_, *end_;
};

const irp::Protocols& definitions() {
  static const irp::Protocols protocols = [] {
    irp::Protocols found;
    std::ifstream file(PROTOCOLS);
    require(found.add(file).empty() && !found.all().empty());
    return found;
  }();
  return protocols;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const irp::MessageReader reader(definitions());
  std::vector<irp::Section> signal;
  for (bytes in(data, size); !in.empty();) {
    irp::Section section;
    for (int count = in.next() % 8; count > 0; --count) section.lead_in.push_back(in.next_us());
    const int bits = in.next();
    for (int i = 0, byte = 0; i < bits; ++i, byte <<= 1) {
      if (i % 8 == 0) byte = in.next();
      section.bits.push_back((byte & 0x80) != 0);
    }
    section.gap_us = in.next_us();
    signal.push_back(std::move(section));
  }
  const auto found = reader.read(signal);
  if (!found) return 0;
  require(found->check != found->name.empty());
  require(found->first <= found->last && found->last < signal.size());
  if (found->check)
    definitions().find(found->name)->complete(found->fields);  // within their ranges
  return 0;
}
