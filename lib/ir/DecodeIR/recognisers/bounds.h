// SPDX-License-Identifier: GPL-3.0-or-later
// What a candidate frame must at least be before a recogniser looks closer: bursts, the gap after
// the frame and the gap before it, in µs. Cheap to test, so most candidates end here.
#pragma once

#include "lib/ir/DecodeIR/signal.h"

inline constexpr frame_bounds kNeverBounds{.min_bursts = 101, .min_gap = 1e9F};

inline constexpr frame_bounds kXmpBounds{
    .min_bursts = 9, .max_bursts = 9, .min_gap = 10000, .min_gap_before = 5000};
inline constexpr frame_bounds kZenithBounds{
    .min_bursts = 16, .max_bursts = 26, .min_gap = 12000, .min_gap_before = 12000};
inline constexpr frame_bounds kX10Bounds{
    .min_bursts = 10, .max_bursts = 12, .min_gap = 3400, .min_gap_before = 3400};
inline constexpr frame_bounds kXxBounds{
    .min_bursts = 6, .max_bursts = 18, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kTdcBounds{
    .min_bursts = 9, .max_bursts = 34, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kSejinBounds{
    .min_bursts = 10, .max_bursts = 18, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kSolidtekBounds{
    .min_bursts = 6, .max_bursts = 36, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kDirecTvBounds{
    .min_bursts = 10, .max_bursts = 15, .min_gap = 5000, .min_gap_before = 5000};
inline constexpr frame_bounds kSomfyBounds{
    .min_bursts = 10, .max_bursts = 10, .min_gap = 2400, .min_gap_before = 2400};
inline constexpr frame_bounds kGapBounds{.min_gap = 3600, .min_gap_before = 3600};
inline constexpr frame_bounds kRc5Bounds{
    .min_bursts = 7, .max_bursts = 20, .min_gap = 6000, .min_gap_before = 6000};
inline constexpr frame_bounds kRc6Bounds{
    .min_bursts = 11, .max_bursts = 64, .min_gap = 6000, .min_gap_before = 6000};
inline constexpr frame_bounds kCanalSatBounds{
    .min_bursts = 12, .max_bursts = 29, .min_gap = 6000, .min_gap_before = 6000};
inline constexpr frame_bounds kNokiaBounds{
    .min_bursts = 8, .max_bursts = 18, .min_gap = 5000, .min_gap_before = 5000};
inline constexpr frame_bounds kPctvBounds{
    .min_bursts = 2, .max_bursts = 12, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kF12Bounds{
    .min_bursts = 12, .max_bursts = 33, .min_gap = 6000, .min_gap_before = 6000};
inline constexpr frame_bounds kSonyBounds{
    .min_bursts = 9, .max_bursts = 21, .min_gap = 5000, .min_gap_before = 5000};
inline constexpr frame_bounds kSingleBurstSizeBounds{
    .min_bursts = 8, .max_bursts = 16, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kGxbBounds{
    .min_bursts = 15, .max_bursts = 15, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kSunfireBounds{
    .min_bursts = 25, .max_bursts = 26, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kGrundig16Bounds{
    .min_bursts = 10, .max_bursts = 18, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kLutronBounds{
    .min_bursts = 3, .max_bursts = 14, .min_gap = 8000, .min_gap_before = 8000};
inline constexpr frame_bounds kElanBounds{
    .min_bursts = 19, .max_bursts = 35, .min_gap = 6000, .min_gap_before = 6000};
inline constexpr frame_bounds kBrystonBounds{
    .min_bursts = 18, .max_bursts = 18, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kHumaxBounds{
    .min_bursts = 6, .max_bursts = 24, .min_gap = 10000, .min_gap_before = 10000};
inline constexpr frame_bounds kAdNotamBounds{
    .min_bursts = 8, .max_bursts = 76, .min_gap = 10000, .min_gap_before = 10000};
