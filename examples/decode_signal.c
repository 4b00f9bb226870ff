/* SPDX-License-Identifier: GPL-3.0-or-later */
/* Names every press of a key in a signal, with its carrier:
 *
 *   cc decode_signal.c $(pkg-config --cflags --libs DecodeIR) && ./a.out
 */
#include <DecodeIR.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

enum { kLevel = 8, kPresses = 2, kBursts = 13 };

int main(void) {
  int sony[] = {2400, 600, 600,  600,  1200, 600, 600, 600, 600, 600, 1200, 600, 600,
                600,  600, 600,  1200, 600,  600, 600, 600, 600, 600, 600,  600, 200000,
                2400, 600, 1200, 600,  1200, 600, 600, 600, 600, 600, 1200, 600, 600,
                600,  600, 600,  1200, 600,  600, 600, 600, 600, 600, 600,  600, 26400};
  uint32_t cycles[kPresses * kBursts];
  const uint32_t* const table = cycles;
  unsigned context[9] = {0};
  int i;
  for (i = 0; i < kPresses * kBursts; i++) cycles[i] = (uint32_t)(sony[2 * i] / 25);

  for (;;) {
    char protocol[64] = "", misc[255] = "", error[255] = "";
    int device = -1, sub_device = -kLevel, obc = -1, hex[4];
    memcpy(&context[6], &table, sizeof table);
    _DecodeIR(context, sony, 0, kPresses * kBursts, 0, protocol, &device, &sub_device, &obc, hex,
              misc, error);
    if (protocol[0] == '\0') return 0;
    printf("%s: device %d, function %d (%s), %u Hz\n", protocol, device, obc, misc, context[6]);
    /* The call has marked which words it wrote where the state of the search stood. */
    context[0] = (context[0] & 0xFFFFF) | (context[2] & 0xFFF00000);
  }
}
