// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The carrier frequency in kHz, rounded, that the frequency word of a Pronto text stands for;
/// 0 for the word 0.
int toFrequencyKHz(int code);
