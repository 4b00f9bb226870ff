/* SPDX-License-Identifier: GPL-3.0-or-later */
/* Names a signal: cc decode_signal.c $(pkg-config --cflags --libs DecodeIR) && ./a.out */
#include <DecodeIR.h>
#include <stdio.h>

int main(void) {
  int sony[] = {2400, 600, 600, 600,  1200, 600, 600, 600, 600, 600, 1200, 600, 600,
                600,  600, 600, 1200, 600,  600, 600, 600, 600, 600, 600,  600, 26400};
  unsigned context[2] = {0, 0};
  char protocol[64] = "", misc[255] = "", error[255] = "";
  int device = -1, sub_device = -1, obc = -1, hex[4];
  _DecodeIR(context, sony, 40000, 13, 0, protocol, &device, &sub_device, &obc, hex, misc, error);
  printf("%s: device %d, function %d (%s)\n", protocol, device, obc, misc);
  return 0;
}
