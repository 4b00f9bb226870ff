// SPDX-License-Identifier: GPL-3.0-or-later
// The version command: the program's own version, and the firmware's when there is a device.
#include <array>
#include <cstdio>

#include "lib/libcmds/cmds.h"
#include "lib/libutil/startup.h"
#include "src/common.h"
#include "version_info.h"

namespace {

/// The result is the command's: a query that fails does not fail the program.
int print_firmware_version(transport::dev_t* dev) {
  std::array<uint8_t, kVersionReplySize> reply{};
  if (const int failed = zv_get_version(dev, reply.data(), kVersionReplySize)) return failed;
  const version_t firmware = parse_version(reply.data());
  std::printf(" FW Version: v%d.%d.%d\n", firmware.major_version, firmware.minor_version,
              firmware.patch_version);
  std::printf("    Git Hash: 0x%08X\n", firmware.scm_hash);
  std::printf("    Config:   %s\n", firmware.type);
  return 0;
}

int version(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
            dictionary* opts) {
  if (dict_has_key(opts, "date") != 0) {
    std::printf("Build Date: %s\nVersion:    ", kBuildDate);
  } else if (dict_has_key(opts, "pretty") != 0) {
    std::printf("Version: ");
  }
  if (dict_has_key(opts, "branch") != 0) {
    std::printf("%s (%s)\n", kVersionText, kScmBranch);
  } else {
    std::printf("%s\n", kVersionText);
  }
  transport::dev_t* const dev = static_cast<const appdata_priv*>(appdata)->dev;
  return dev == nullptr ? 0 : print_firmware_version(dev);
}

const cmd_opt version_opts[] = {
    {"pretty", "print version with context", 'p', "pretty"},
    {"date", "print build date", 'd', "date"},
    {"branch", "show the SCM branch", 'b', "branch"},
    {nullptr, nullptr, 0, nullptr},
};

const cmd cmd_entry_version = {
    .name = "version",
    .handler = version,
    .summary = "print the version",
    .help = "usage: version",
    .priv = nullptr,
    .options = version_opts,
};

cmd_mgr version_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__version() {
  version_mgr.cmd = &cmd_entry_version;
  _register_cmd(&version_mgr);
}

}  // namespace
