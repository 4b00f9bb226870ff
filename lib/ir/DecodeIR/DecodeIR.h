/* SPDX-License-Identifier: GPL-3.0-or-later */
/* Names the protocol of an infrared remote-control signal from its timings alone.
 *
 * Link with -lDecodeIR (`pkg-config --cflags --libs DecodeIR`). The functions keep no state
 * between calls and may run in several threads at once, except DecodeIR, which prints.
 */
#ifndef DECODEIR_H
#define DECODEIR_H

#include <stddef.h> /* NOLINT(modernize-deprecated-headers): C programs include this file */

#ifdef __cplusplus
extern "C" {
#endif

struct ir_packet; /* ir_packet.h: a captured pattern of up to 255 durations */

/* Finds the next interpretation of a signal.
 *
 * A signal is a list of bursts; a burst is a mark and the space after it, two ints in
 * microseconds. The single part is sent once, the repeat part as long as a key is held.
 *
 *   context      In and out: where the search goes on. {0, 0} starts; passing back what a call
 *                left yields the next interpretation; when a call leaves `protocol` empty there
 *                are no more. Two words, or more at a higher interface level (see subDevice).
 *   bursts       2 * (singleCount + repeatCount) durations, and the extra part's (see device).
 *                Only read. The last space of a signal without repeat part counts as silence.
 *   freq         Carrier in Hz, 0 for an unmodulated signal.
 *   singleCount  Bursts of the single part.
 *   repeatCount  Bursts of the repeat part, 0 for none. Of one burst or fewer in all nothing is
 *                read and nothing written. Negative counts are taken as 0.
 *   protocol     Out: the protocol's name, empty when nothing (more) was found. 64 chars.
 *   device       Out: device number, -1 for none. In: a value n below -1 announces that -n
 *                further bursts, the extra part, follow the repeat part.
 *   subDevice    Out: subdevice number, -1 for none. In: a value n below -1 selects the
 *                interface level -n (2 otherwise):
 *                  3  context[2]: start of the first frame
 *                  4  context[3]: context[1] as of the first frame
 *                  5  the caller's cycle counts, if any, give the carrier of each frame
 *                  6  context[4], [5]: the context of the last frame
 *                  8  context[6], [7] hold a pointer to the caller's cycle counts, an array of
 *                     32-bit slots, one a burst, with the carrier cycles of its mark in the low
 *                     16 bits; or null. context[6] returns the first frame's carrier in Hz.
 *                  9  context[8]: (second repeat kind + 1) << 24 | (repeat kind + 1) << 16 |
 *                     count
 *                The high 12 bits of context[0] then say which of these were written.
 *                Before the next call of a sequence the caller puts back what a call has replaced:
 *                device and subDevice; above level 2 the high 12 bits of context[0], which stand
 *                in those of context[2]; from level 8 on the pointer in context[6], [7].
 *   obc          Out: function number, -1 for none.
 *   hex          Out: four ints: the code bytes as universal-remote code tables write them, -1
 *                for none.
 *   misc         Out: how often the frame repeats, and a remark. 255 chars.
 *   error        In: a C string. Out: an empty one, or what a recogniser found wrong. 255 chars.
 *
 * Throws std::bad_alloc to C++ callers when out of memory. A signal of more than 1048575 bursts
 * is not searched.
 */
void _DecodeIR(unsigned int* context, int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error);

/* Prints the first interpretation of a packet on standard output, one line beginning
 * ":: DECODEIR ::". `count` is the number of durations to look at, normally packet->len. */
void DecodeIR(struct ir_packet* packet, size_t count);

/* Copies the name with this index (0 to 50) of the list of protocols to `out` (at least 16
 * chars), an empty text for any other index. Returns out. */
char* EnumerateProtocols(int index, char* out);

/* 1 when `name` begins, in any case of letters, with a name of that list, else 0. */
int ProtocolSupportLevel(char* name);

/* Copies the version, "2.45", to `out` (at least 5 chars). Returns out. */
char* Version(char* out);

#ifdef __cplusplus
}
#endif

#endif
