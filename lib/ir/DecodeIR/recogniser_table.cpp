// SPDX-License-Identifier: GPL-3.0-or-later
// The order in which the recognisers see a candidate frame: the first to claim it wins, so each
// refuses every frame that a later one owns.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

const std::array<recogniser, 32> kRecognisers = {{
    {"XMP", &Signal::tryXMP, kXmpBounds},
    {"Zenith", &Signal::tryZenith, kZenithBounds},
    {"X10", &Signal::tryX10, kX10Bounds},
    {"XX", &Signal::tryXX, kXxBounds},
    {"TDC", &Signal::tryTDC, kTdcBounds},
    {"Sejin", &Signal::trySejin, kSejinBounds},
    {"Q1", &Signal::tryQ1, kNeverBounds},
    {"Q2", &Signal::tryQ2, kSolidtekBounds},
    {"DirecTV", &Signal::tryDirecTV, kDirecTvBounds},
    {"Somfy", &Signal::trySomfy, kSomfyBounds},
    {"Gap", &Signal::tryGap, kGapBounds},
    {"RC5", &Signal::tryRC5, kRc5Bounds},
    {"RC6", &Signal::tryRC6, kRc6Bounds},
    {"CanalSat", &Signal::tryCanalSat, kCanalSatBounds},
    {"Nokia", &Signal::tryNokia, kNokiaBounds},
    {"PCTV", &Signal::tryPCTV, kPctvBounds},
    {"F12", &Signal::tryF12, kF12Bounds},
    {"Sony", &Signal::trySony, kSonyBounds},
    {"SingleBurstSize", &Signal::trySingleBurstSize, kSingleBurstSizeBounds},
    {"GXB", &Signal::tryGXB, kGxbBounds},
    {"Async", &Signal::tryAsync, kNeverBounds},
    {"Airboard", &Signal::tryAirboard, kNeverBounds},
    {"AirAsync", &Signal::tryAirAsync, kNeverBounds},
    {"AK", &Signal::tryAK, kNeverBounds},
    {"Sunfire", &Signal::trySunfire, kSunfireBounds},
    {"Grundig16", &Signal::tryGrundig16, kGrundig16Bounds},
    {"Pid13", &Signal::tryPid13, kNeverBounds},
    {"Lutron", &Signal::tryLutron, kLutronBounds},
    {"Elan", &Signal::tryElan, kElanBounds},
    {"Bryston", &Signal::tryBryston, kBrystonBounds},
    {"Humax", &Signal::tryHumax, kHumaxBounds},
    {"AdNotam", &Signal::tryAdNotam, kAdNotamBounds},
}};
