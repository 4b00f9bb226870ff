// SPDX-License-Identifier: GPL-3.0-or-later
// Lets one allocation fail: malloc, calloc, strdup or fopen. For programs linked with
// failing_alloc_options, which turns the calls of the code under test here; the C library keeps
// the real functions, and so does the simulated bus, which is no part of what is tested.
#pragma once

/// The allocation after `successes` further ones fails, with ENOMEM; those after it succeed.
void fail_allocation_after(int successes);

/// Counts one more allocation. Whether it is the one that fails; errno is ENOMEM then.
bool allocation_fails_now();

/// No allocation fails. Returns whether the planned failure came.
bool stop_failing_allocations();
