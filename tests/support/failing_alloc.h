// SPDX-License-Identifier: GPL-3.0-or-later
// Lets one allocation fail. For programs linked with -Wl,--wrap=malloc,--wrap=calloc, which
// turns the calls of the code under test here; the C and C++ libraries keep the real functions.
#pragma once

/// The allocation after `successes` further ones fails, with ENOMEM; those after it succeed.
void fail_allocation_after(int successes);

/// No allocation fails. Returns whether the planned failure came.
bool stop_failing_allocations();
