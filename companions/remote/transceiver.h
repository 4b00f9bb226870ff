// SPDX-License-Identifier: GPL-3.0-or-later
// What hears and sends signals: a program of its own for each kind of device.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/formats/pattern.h"

namespace companions {

/// How many times a signal is sent that stands for a press by being sent over and over: as often as
/// a short press sends it, since receivers wait for a second or a third one.
constexpr int kSendsOfHeld = 3;

struct transceiver {
  std::string_view name;                       // as --with names it
  std::vector<std::string> (*hear_command)();  // prints what it hears, in one of the text forms
  /// Sends a signal; false, with the reason on standard error, when it was not sent.
  bool (*send)(const pattern& signal);
};

/// The one of this name; null for none.
const transceiver* find_transceiver(std::string_view name);
std::vector<std::string> transceiver_names();

}  // namespace companions
