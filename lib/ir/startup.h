// SPDX-License-Identifier: GPL-3.0-or-later
// The order in which analyzers and bit decoders register themselves, and with that the order in
// which they are asked: of two analyzers with the same error the first one wins.
// lib/libutil/startup.h says how.
#pragma once

#include "lib/libutil/startup.h"

namespace startup {

enum infrared_priority : int {
  kAnalyzerNec = kFirstInfrared,
  kAnalyzerRc5,
  kAnalyzerMce,
  kAnalyzerXmp,
  kAnalyzerOrtek,
  kAnalyzerSharp,
  kAnalyzerSony,
  kAnalyzerDenon,
  kAnalyzerZarvo,
  kAnalyzerNokia,
  kAnalyzerTdc,

  kProtocolXmp = kFirstInfrared + 100,
  kProtocolSony,
  kProtocolDenon,
  kProtocolNec,
  kProtocolNone,
  kProtocolRc5,
  kProtocolRc6,
  kProtocolZarvo,
  kProtocolNokia,
  kProtocolTdc,
};

}  // namespace startup
