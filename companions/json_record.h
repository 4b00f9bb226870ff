// SPDX-License-Identifier: GPL-3.0-or-later
// The JSON object of one pattern. Its keys, which stay as they are:
//
//   schema                   1
//   source, line             the file ("-" for standard input) and the line, counted from 1
//   time                     UTC, when it was read, of input that is no regular file
//   format                   the text form, such as "comma" or "pronto"
//   durations                µs, marks positive, spaces negative
//   repeat                   the same of a repeat sequence
//   elapsed_ms               ms since the pattern before, where the text says it
//   carrier_hz               where the text says it
//   once_pairs, repeat_pairs of a Pronto text
//   program                  of the first frame: {protocol, scancode, bits} or null; bits null
//   where
//                            not counted
//   analysis                 of the whole: [{protocol, device, subdevice, obc, hex, misc}, …], the
//                            likeliest first; numbers that the protocol does not have are null
//   arduino                  of the first frame: {type, value, bits} or null
//   frames                   [{entry, count, gap, program, arduino}, …]: what lies between spaces
//   of
//                            over 14 ms, its first entry counted from 1; gap null where it ends
//   coding                   {kind, unit, bits_per_symbol, sections: [{lead_in, bits, lsb, msb,
//                            gap}, …]}: the shape of the whole, its bytes in hexadecimal
//   message                  {name, fields, check, sections} or null: the definition that the
//                            sections from … to carry; name and fields null unless the check holds
//
// A line that is no pattern has schema, source, line, column and error: the place of the fault in
// the line's characters, counted from 1.
#pragma once

#include <optional>
#include <string>

#include "companions/formats/inputs.h"
#include "lib/irp/message.h"

namespace companions {

struct record {
  std::string json;  // one line, without its newline
  bool fault;        // it holds an error
  bool named;        // the signal analysis, the matchers or a message know the protocol
};

/// `time` is when it was read, nothing for input that keeps.
record make_record(const input& from, const irp::MessageReader& messages,
                   const std::optional<std::string>& time = {});

}  // namespace companions
