/* SPDX-License-Identifier: GPL-3.0-or-later */
/* Names the protocol of an infrared signal from its timings alone. */
#ifndef DECODEIR_H
#define DECODEIR_H

#include "lib/ir/ir_packet.h"

#ifdef __cplusplus
extern "C" {
#endif

void _DecodeIR(unsigned int* context, int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error);
void DecodeIR(struct ir_packet* packet, size_t count);
char* EnumerateProtocols(int index, char* out);
int ProtocolSupportLevel(char* name);
char* Version(char* out);

#ifdef __cplusplus
}
#endif

#endif
