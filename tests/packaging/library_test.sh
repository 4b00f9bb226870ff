#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# library_test.sh PREFIX CC CXX: the examples in C, C++ and Python name their signal with the library that
# is installed in PREFIX, found through its pkg-config file.
set -euo pipefail
prefix=$1 cc=$2 cxx=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# By a name without blanks and the like, which pkg-config does not quote for a shell.
ln -s "$prefix" "$work/prefix"
prefix=$work/prefix
examples=$prefix/share/doc/libDecodeIR/examples
libraries=$(find "$prefix/" -name 'libDecodeIR.so.2' -printf '%h\n' -quit)
export PKG_CONFIG_PATH=$libraries/pkgconfig
# Prints a folder with a blank in it as the shell reads it.
eval "flags=($(pkg-config --cflags --libs DecodeIR))"

"$cc" "$examples/decode_signal.c" "${flags[@]}" -Wl,-rpath,"$libraries" -o "$work/in_c"
"$cxx" -std=c++20 "$examples/decode_signal.cpp" "${flags[@]}" -Wl,-rpath,"$libraries" -o "$work/in_cpp"
says() {  # says COMMAND...: beginning with the first press, however much it tells of it
  local said
  said=$("$@")
  echo "${*##*/}: $said"
  [[ $said == "Sony12: device 1, function 18 (no repeat)"* ]]
}
says "$work/in_c"
says "$work/in_cpp"
! command -v python3 >/dev/null || says env LD_LIBRARY_PATH="$libraries" python3 "$examples/decode_signal.py"
