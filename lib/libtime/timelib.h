// SPDX-License-Identifier: GPL-3.0-or-later
// Wall-clock helpers.
#pragma once

#include <sys/time.h>

#include <cstdint>

/// Microseconds from `start` to now.
uint64_t time_elapsed_us(const struct timeval* start);

/// 1 when at least `us` microseconds have passed since `start`, else 0.
int time_has_elapsed_us(const struct timeval* start, uint64_t us);

/// A compact local time stamp for log lines: minutes × 100 + seconds, with their fraction.
float get_tstamp();

/// Writes an epoch time as "Jan 01 00:00 1970" in local time. `date` holds `date_size` bytes, at
/// least 30; otherwise, or when it is null, logs an error and writes nothing.
void epoch_to_date(uint32_t seconds, char* date, int date_size);
