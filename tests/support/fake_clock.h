// SPDX-License-Identifier: GPL-3.0-or-later
// The time of day that the code under test sees.
#pragma once

#include <sys/time.h>

/// Stops the clock at this time; null lets it run on.
void stop_clock_at(const timeval* time);
