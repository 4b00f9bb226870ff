# SPDX-License-Identifier: GPL-3.0-or-later
"""Names a signal through ctypes, which needs the library and nothing else."""
import ctypes

library = ctypes.CDLL("libDecodeIR.so.2")
sony = [2400, 600, 600, 600, 1200, 600, 600, 600, 600, 600, 1200, 600, 600,
        600, 600, 600, 1200, 600, 600, 600, 600, 600, 600, 600, 600, 26400]

context = (ctypes.c_uint * 2)(0, 0)
protocol = ctypes.create_string_buffer(64)
misc = ctypes.create_string_buffer(255)
error = ctypes.create_string_buffer(255)
device, sub_device, obc = (ctypes.c_int(-1) for _ in range(3))
library._DecodeIR(context, (ctypes.c_int * len(sony))(*sony), 40000, len(sony) // 2, 0, protocol,
                  ctypes.byref(device), ctypes.byref(sub_device), ctypes.byref(obc),
                  (ctypes.c_int * 4)(), misc, error)
print(f"{protocol.value.decode()}: device {device.value}, function {obc.value} ({misc.value.decode()})")
