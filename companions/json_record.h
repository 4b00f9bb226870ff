// SPDX-License-Identifier: GPL-3.0-or-later
// The JSON object of one pattern. Its keys, which stay as they are:
//
//   source, line             the file ("-" for standard input) and the line, counted from 1
//   format                   "comma", "analysir", "raw" or "pronto"
//   durations                µs, marks positive, spaces negative
//   repeat                   the same of a Pronto text's repeat sequence
//   elapsed_ms               ms since the pattern before, where the text says it
//   carrier_hz, once_pairs, repeat_pairs   of a Pronto text
//   program                  {protocol, scancode, bits} or null; bits null where not counted
//   analysis                 [{protocol, device, subdevice, obc, hex, misc}, …], the likeliest
//                            first; numbers that the protocol does not have are null
//   arduino                  {type, value, bits} or null
//
// A line or pattern that cannot be decoded has source, line, error, and column or entry: the
// place of the fault in the line's characters or among the durations, counted from 1.
#pragma once

#include <string>

#include "companions/formats/inputs.h"

namespace companions {

struct record {
  std::string json;  // one line, without its newline
  bool fault;        // it holds an error
  bool named;        // the signal analysis or the mark/space matchers know the protocol
};

record make_record(const input& from);

}  // namespace companions
