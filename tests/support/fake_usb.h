// SPDX-License-Identifier: GPL-3.0-or-later
// A bus of simulated devices behind the hidapi and libusb functions that the program calls, and a
// clock that only the program's own waits move.
//
// Linked into every test program in place of the libraries, and built as shared libraries with
// their names for the end-to-end tests. Until play() is called there is no device and sleeping
// takes real time.
//
// A script sets the scene, one item a line, blank lines and "#" lines skipped. Times are ms of
// virtual time, bytes are hexadecimal.
//
//   device [vid=1209] [pid=0001] [iface=2] [version=4.8.0] [mfr=Vantrel] [refuses=N]
//       plugs a device in; its next N opens fail
//   queued BYTES...           a report that the last device holds from before the open
//   at T signal [elapsed=40] E1 E2...
//       the last device hears a signal, so many ms after the one before: entries in µs
//   at T report BYTES...      the last device sends a report of any bytes
//   at T unplug               the last device goes away
//   at T plug [version=...] [refuses=N]     and comes back
//   at T sigint               Ctrl-C
//   at T deadline         the program must have ended by now
//   at T hang                 real time from here on: nothing more comes until a signal does
//   flood T                   from now on a timing report every T ms, without end
//   sigint CALL [N]       Ctrl-C in the Nth library call from now whose record begins so: "open"
//   forgetful                 calls are not recorded, so that memory stays what the program takes
//   on CMD [N] FAULT          what happens on the Nth command of that name (every one without N):
//       noreply | short | id BYTE | name NAME | status N | late T | writeerror | unplug | sigint |
//       stuck (the write takes 5 s and fails) |
//       flood T | report BYTES... (comes before the reply)
//   fail FUNCTION CODE        a library function that fails with that code
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fake_usb {

/// An empty bus, virtual time 0, nothing recorded; the clock is the real one again.
void reset();

/// Adds a script to the scene. Aborts the program on a line that it does not know.
void play(std::string_view script);

/// Virtual time since reset().
uint64_t now_us();

/// Every library call so far, such as "open /dev/fake2", "write 02 67 65 ...",
/// "read 33 10000 -> 33", "close".
const std::vector<std::string>& calls();

/// The reports written so far, as text: "02 67 65 ...".
std::vector<std::string> writes();

/// The commands among them by name, with their count where the same name repeats in a row:
/// "getversion usb_if irtranset irtransraw*2".
std::string commands();

/// How many hidapi devices are open.
int open_devices();

}  // namespace fake_usb
