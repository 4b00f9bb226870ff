// SPDX-License-Identifier: GPL-3.0-or-later
// The listen command: prints every signal that the device receives, as it arrives.
#include <cstdio>

#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"
#include "src/common.h"

namespace {

constexpr uint16_t kRequiredMajor = 4;
constexpr uint16_t kRequiredMinor = 6;

void (*print_it)(ir_packet* p) = print_raw;

void print_and_flush(ir_packet* p) {
  print_it(p);
  output::flush();
}

auto chosen_printer(const dictionary* opts) {
  if (dict_has_key(opts, "raw") != 0) return print_raw;
  if (dict_has_key(opts, "pronto") != 0) return print_pronto;
  if (dict_has_key(opts, "analysir") != 0) return print_analysir;
  if (dict_has_key(opts, "comma") != 0) return print_comma_delim;
  return print_raw;
}

int listen(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
           dictionary* opts) {
  auto* session = static_cast<appdata_priv*>(appdata);
  if (zv_version_compare(session->dev, kRequiredMajor, kRequiredMinor) < 0) {
    _log(1, "[E] %s(%d): Error: version >= 4.6.x required\n", __func__, __LINE__);
    return -1;
  }
  tessarin_iface_en(session->dev, 1);
  if (dict_has_key(opts, "elapsed") != 0) set_elapsed_flag(1);
  print_it = chosen_printer(opts);
  return listen_for_signals(session, print_and_flush);
}

// The pronto option works whatever its description says, and distance does nothing.
const cmd_opt listen_opts[] = {
    {"elapsed", "show elapsed time", 'e', "elapsed"},
    {"pronto", "not yet supported", 'p', "pronto"},
    {"raw",
     "print out timing, compatible with IR Scrutinizer\n"
     "                           +9045 -4456 +610",
     'r', "raw"},
    {"analysir",
     "comma delimited timing in microseconds\n"
     "                           :e:45\n"
     "                           0, 9045, 4456, 610",
     'a', "analysir"},
    {"comma",
     "comma delimited list\n"
     "                           9045, 4456, 610",
     'c', "comma"},
    {"distance", "distance\n", 'd', "distance"},
    {nullptr, nullptr, 0, nullptr},
};

const cmd cmd_entry_listen = {
    .name = "listen",
    .handler = listen,
    .summary = "listens to incoming tessarin report id",
    .help = "usage: listen <opts>",
    .priv = nullptr,
    .options = listen_opts,
};

cmd_mgr listen_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__listen() {
  listen_mgr.cmd = &cmd_entry_listen;
  _register_cmd(&listen_mgr);
}

}  // namespace
