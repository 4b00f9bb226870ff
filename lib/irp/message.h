// SPDX-License-Identifier: GPL-3.0-or-later
// Reads definitions backwards: which of them sends these bits, and with which numbers? For messages
// of air conditioners and other frames that are too long for the decoders. Every definition with
// symbols of a mark and a space can be read; a new one in the file of definitions is a new message.
//
// A name needs its check. The plain fields of a definition are read from the bits, everything is
// computed from them again, and every bit must agree: constants, complements, copies and what the
// definition computes.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lib/irp/protocols.h"

namespace irp {

/// A stretch of bits of a received signal, and the durations around it in µs.
struct Section {
  /// Marks and spaces in turn, a mark first, before the first bit; empty for none. A mark with no
  /// bits behind it is the lead-in of a section without bits.
  std::vector<int> lead_in;
  /// In the order sent. A symbol of two lengths is one bit, 1 the longer; one of four lengths is
  /// two bits, the higher first.
  std::vector<bool> bits;
  int gap_us = 0;  // the space behind the last mark; 0 where the signal ends
};

struct Message {
  std::string name;    // of the definition; empty when the check fails
  Parameters fields;   // its parameters, as read; empty when the check fails
  bool check;          // whether all that can be checked agrees
  size_t first, last;  // the sections of the signal that it takes, counted from 0
};

class MessageReader {
 public:
  /// Keeps what it needs to know of the definitions that can be read. They must outlive it.
  explicit MessageReader(const Protocols& protocols);
  ~MessageReader();
  MessageReader(const MessageReader&) = delete;
  MessageReader& operator=(const MessageReader&) = delete;

  /// The first message in a signal, or nothing. `check` is false when lead-in, lengths and
  /// constants are those of a definition but what it computes disagrees. Of several definitions
  /// that hold, the one with the nearest lead-in counts; of those alike in it, the one defined
  /// last.
  std::optional<Message> read(std::span<const Section> signal) const;

  /// Whether messages of this definition can be named.
  bool reads(const Protocol& protocol) const;

 private:
  struct Layout;
  std::map<size_t, std::vector<Layout>> layouts_;  // by the bits of their first section
};

}  // namespace irp
