// SPDX-License-Identifier: GPL-3.0-or-later
// Air conditioners that send their whole state as one message of bytes: what its bytes mean is
// theirs, but each can be checked. The remark holds all of them.
//
//   Chigo-96            A a B b C c D d E e F f     a the complement of A, and so on
//   MitsubishiHeavy-88  52 AE C3 A a B b C c D d
//   Chigo-96-sum        eleven bytes and their sum
//   Voltas-80           ten bytes that add up to 255
//   Toshiba-72          A a B b C D E F K           K the exclusive-or of C to F
//   Samsung-56          one byte, from the 13th bit on, is 255 less the ones among the other bits
// Facts: public protocol definitions in IRP notation, checked with captured remotes.
#include <bit>

#include "lib/ir/DecodeIR/protocols/distance_rules.h"

namespace analysis {
namespace {

constexpr int kMessageByte = 8;

unsigned byte_sum(const reading& read, int bytes) {
  unsigned sum = 0;
  for (int i = 0; i < bytes; ++i) sum += read.get({kMessageByte * i, kMessageByte});
  return sum & 0xFF;
}

/// Whether every second byte from the bit `first` on complements the one before it.
bool pairs_differ(const reading& read, int first) {
  for (int at = first; at + 2 * kMessageByte <= read.bits.size(); at += 2 * kMessageByte) {
    const unsigned both =
        read.get({at, kMessageByte}) ^ read.get({at + kMessageByte, kMessageByte});
    if (both != 0xFF) return false;
  }
  return true;
}

}  // namespace

bool all_bytes_complemented(const reading& read) {
  return pairs_differ(read, 0);
}

bool state_complemented(const reading& read) {
  return pairs_differ(read, 3 * kMessageByte);
}

bool last_byte_is_sum(const reading& read) {
  const int before = read.bits.size() / kMessageByte - 1;
  return byte_sum(read, before) == read.get({kMessageByte * before, kMessageByte});
}

bool bytes_add_up_to_255(const reading& read) {
  return byte_sum(read, read.bits.size() / kMessageByte) == 0xFF;
}

bool toshiba_xor(const reading& read) {
  unsigned all = 0;
  for (int at = 4 * kMessageByte; at < read.bits.size(); at += kMessageByte) {
    all ^= read.get({at, kMessageByte});
  }
  return all == 0;
}

bool samsung_count(const reading& read) {
  constexpr int kCountAt = 12;
  int ones = 0;
  for (int i = 0; i < read.bits.size(); ++i) {
    const bool counted = i < kCountAt || i >= kCountAt + kMessageByte;
    ones += static_cast<int>(counted && read.bits.getBit(i) != 0);
  }
  return read.get({kCountAt, kMessageByte}) == static_cast<unsigned>(0xFF - ones);
}

bool tell_bytes(const reading& read, answer* out) {
  if (out->subdevice == 0xFF - out->device) out->subdevice = -1;
  for (int at = 0; at + kMessageByte <= read.bits.size(); at += kMessageByte) {
    out->remark.print("%02X", read.get({at, kMessageByte}));
  }
  return true;
}

}  // namespace analysis
