// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/formats/ir_protocols.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "lib/irp/protocol.h"

namespace companions {

namespace {

/// A is the address and C the command, each as one number, least significant byte first. Toggle
/// bits are 0: the files do not tell them.
struct row {
  std::string_view name;
  std::string_view definition;
};

constexpr std::array<row, 14> kRows = {{
    {"NEC",
     "{38k,564}<1,-1|1,-3>(16,-8,A:8,~A:8,C:8,~C:8,1,^108m,(16,-4,1,^108m)*)[A:0..255,C:0..255]"},
    {"NECext",
     "{38k,564}<1,-1|1,-3>(16,-8,A:16,C:16,1,^108m,(16,-4,1,^108m)*)[A:0..65535,C:0..65535]"},
    {"NEC42",
     "{38k,564}<1,-1|1,-3>(16,-8,A:13,~A:13,C:8,~C:8,1,^108m,(16,-4,1,^108m)*)[A:0..8191,C:0.."
     "255]"},
    {"NEC42ext",
     "{38k,564}<1,-1|1,-3>(16,-8,A:26,C:16,1,^108m,(16,-4,1,^108m)*)[A:0..67108863,C:0..65535]"},
    {"Samsung32", "{38k,564}<1,-1|1,-3>(8,-8,A:8,A:8,C:8,~C:8,1,^108m)*[A:0..255,C:0..255]"},
    {"RC5", "{36k,msb,889}<1,-1|-1,1>(1:1,1:1,0:1,A:5,C:6,^114m)*[A:0..31,C:0..63]"},
    {"RC5X", "{36k,msb,889}<1,-1|-1,1>(1:1,0:1,0:1,A:5,C:6,^114m)*[A:0..31,C:0..127]"},
    {"RC6",
     "{36k,444,msb}<-1,1|1,-1>(6,-2,1:1,0:3,<-2,2|2,-2>(0:1),A:8,C:8,^107m)*[A:0..255,C:0..255]"},
    {"SIRC", "{40k,600}<1,-1|2,-1>(4,-1,C:7,A:5,^45m)*[A:0..31,C:0..127]"},
    {"SIRC15", "{40k,600}<1,-1|2,-1>(4,-1,C:7,A:8,^45m)*[A:0..255,C:0..127]"},
    {"SIRC20", "{40k,600}<1,-1|2,-1>(4,-1,C:7,A:13,^45m)*[A:0..8191,C:0..127]"},
    // Vendor, its parity, two genres, the command in two parts around the id, and the check.
    {"Kaseikyo",
     "{37k,432}<1,-1|1,-3>(8,-4,A:8:8,A:8:16,P:4,A:4:4,A:4:0,C:4:0,C:6:4,A:2:24,"
     "(X^Y^Z):8,1,-173)*{V=(A:8:8)^(A:8:16),P=(V:4)^(V:4:4),X=P+(A:4:4)*16,Y=(A:4)+(C:4)*16,"
     "Z=(C:6:4)+(A:2:24)*64}[A:0..67108863,C:0..1023]"},
    {"RCA", "{58k,460}<1,-2|1,-4>(8,-8,A:4,C:8,~A:4,~C:8,1,-16)*[A:0..15,C:0..255]"},
    {"Pioneer", "{40k,564}<1,-1|1,-3>(16,-8,A:8,~A:8,C:8,~C:8,1,^108m)*[A:0..255,C:0..255]"},
}};

}  // namespace

std::optional<std::string> render_code(const ir_code& code, pattern& to) {
  const auto* const its = std::find_if(kRows.begin(), kRows.end(),
                                       [&](const row& one) { return one.name == code.protocol; });
  if (its == kRows.end()) return "\"" + code.protocol + "\" is no protocol known here";
  try {
    const irp::Protocol protocol(std::string(its->name), its->definition);
    irp::Rendering sent = protocol.render({{"A", code.address}, {"C", code.command}});
    to.carrier_hz = protocol.carrier();
    to.durations = std::move(sent.parts.front().durations);
    to.held = sent.parts.size() == 1;
    if (!to.held) to.repeat = std::move(sent.parts[1].durations);
  } catch (const irp::Error& why) {
    return code.protocol + " does not hold this address and command: " + why.what();
  }
  return {};
}

}  // namespace companions
