// SPDX-License-Identifier: GPL-3.0-or-later
#include "src/cmds/decode_listen.h"

#include <cstdio>

#include "lib/libutil/output.h"
#include "src/cmds/decode.h"
#include "src/common.h"

namespace {

constexpr uint16_t kRequiredMajor = 4;
constexpr uint16_t kRequiredMinor = 7;

void print_and_decode(ir_packet* p) {
  std::printf("RAW:    ");
  print_raw(p);
  std::printf("PRONTO: ");
  print_pronto(p);
  decodeit(p);
  output::flush();
}

}  // namespace

bool can_decode_live(const appdata_priv& session) {
  return zv_version_compare(session.dev, kRequiredMajor, kRequiredMinor) >= 0;
}

int decode_listen(appdata_priv& session) {
  tessarin_iface_en(session.dev, 1);
  return listen_for_signals(&session, print_and_decode);
}
