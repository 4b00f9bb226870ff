// SPDX-License-Identifier: GPL-3.0-or-later
// The signal analysis through its plain entry, with everything a caller may hand over: any counts
// that fit the list, an extra part, every interface level, a resume state of any bits, a table of
// cycle counts or none. All buffers are heap copies of just the size that the header asks for.
//
// An input is a header of 8 bytes, 64 bytes of resume state if the header says so, then durations
// of 2 bytes each (4 if the header says so):
//   level, single bursts, repeat bursts, extra bursts, flags, carrier in Hz (3 bytes)
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "fuzz/input.h"
#include "lib/ir/DecodeIR/DecodeIR.h"

namespace {

constexpr size_t kHeaderBytes = 8;
constexpr size_t kContextWords = 16;
constexpr size_t kFrequencyWord = 6;
constexpr int kFrequencyLevel = 8;
constexpr int kLastPlainLevel = 2;
constexpr unsigned kStartMask = 0xFFFFF;
constexpr int kLevels = 10;
constexpr int kPressBursts = 40;
constexpr int kMostBursts = 110;  // some more than a frame may have
constexpr int kMostCalls = 24;
constexpr size_t kProtocolChars = 64;
constexpr size_t kTextChars = 255;

enum flag : uint8_t {
  kContextGiven = 1,
  kFrequencyTable = 2,
  kWideDurations = 4,
  kNegativeSingle = 8,
  kNegativeRepeat = 16,
  kErrorGiven = 32,
};

bool is_text(const char* text, size_t room) {
  return std::memchr(text, 0, room) != nullptr;
}

/// Hands out an input from its front, then zeros.
class Input {
 public:
  explicit Input(std::span<const uint8_t> bytes) : rest_(bytes) {}

  template <typename T>
  T take() {
    T value = 0;
    const size_t count = std::min(sizeof(T), rest_.size());
    if (count > 0) std::memcpy(&value, rest_.data(), count);
    rest_ = rest_.subspan(count);
    return value;
  }

 private:
  std::span<const uint8_t> rest_;
};

/// Most parts are no longer than a press, as longer ones take much longer; the highest bytes stand
/// for as many bursts as a frame may have.
int bursts_of(uint8_t byte) {
  constexpr uint8_t kFirstLong = 0xF0;
  return byte < kFirstLong ? byte % (kPressBursts + 1) : kMostBursts - (UINT8_MAX - byte);
}

struct Call {
  std::vector<unsigned> context = std::vector<unsigned>(kContextWords);
  std::vector<int> bursts, hex = {-1, -1, -1, -1};
  std::vector<uint32_t> cycles;
  std::unique_ptr<char[]> protocol = std::make_unique<char[]>(kProtocolChars);
  std::unique_ptr<char[]> misc = std::make_unique<char[]>(kTextChars);
  std::unique_ptr<char[]> error = std::make_unique<char[]>(kTextChars);
  int level, single, repeat, device, carrier, obc = -1;

  explicit Call(Input input) {
    level = input.take<uint8_t>() % kLevels;
    single = bursts_of(input.take<uint8_t>());
    repeat = bursts_of(input.take<uint8_t>());
    const int extra = bursts_of(input.take<uint8_t>());
    const auto flags = input.take<uint8_t>();
    carrier = input.take<uint8_t>();
    carrier |= input.take<uint16_t>() << 8;
    if ((flags & kNegativeSingle) != 0) single = -single;
    if ((flags & kNegativeRepeat) != 0) repeat = -repeat;
    device = -extra;  // 0 and -1 announce nothing

    if ((flags & kContextGiven) != 0) {
      for (unsigned& word : context) word = input.take<uint32_t>();
    }
    const int parts = std::max(single, 0) + std::max(repeat, 0) + (extra > 1 ? extra : 0);
    for (int i = 0; i < 2 * parts; ++i) {
      bursts.push_back((flags & kWideDurations) != 0 ? input.take<int32_t>()
                                                     : input.take<uint16_t>());
    }
    bursts.shrink_to_fit();
    if (level >= kFrequencyLevel) point_to_cycles(flags, size_t(parts));
    if ((flags & kErrorGiven) != 0) std::fill_n(error.get(), kTextChars - 1, 'e');
  }

  void point_to_cycles(uint8_t flags, size_t parts) {
    const uint32_t* table = nullptr;
    if ((flags & kFrequencyTable) != 0) {
      for (size_t i = 0; i < parts; ++i) cycles.push_back(uint32_t(bursts[2 * i]) / 26);
      cycles.shrink_to_fit();
      table = cycles.data();
    }
    std::memcpy(&context[kFrequencyWord], &table, sizeof table);
  }

  // Where the search stopped: first burst, length, recogniser.
  [[nodiscard]] std::array<unsigned, 3> place() const {
    return {context[0] & kStartMask, context[1] >> 16, context[1] & 0xFF};
  }

  // True when there may be more to find.
  bool ask() {
    int device_io = device;
    int sub_device_io = -level;
    _DecodeIR(context.data(), bursts.data(), carrier, single, repeat, protocol.get(), &device_io,
              &sub_device_io, &obc, hex.data(), misc.get(), error.get());
    if (single + repeat <= 1) return false;
    require(is_text(protocol.get(), kProtocolChars));
    require(is_text(misc.get(), kTextChars));
    require(is_text(error.get(), kTextChars));
    return protocol[0] != 0;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < kHeaderBytes) return 0;
  Call call(Input({data, size}));
  std::array<unsigned, 2> table = {call.context[kFrequencyWord], call.context[kFrequencyWord + 1]};
  auto before = call.place();
  for (int i = 0; i < kMostCalls && call.ask(); ++i) {
    // As the header asks: the pointer, whose place also returns the carrier, and what the call has
    // replaced in word 0.
    std::copy(table.begin(), table.end(), call.context.begin() + kFrequencyWord);
    if (call.level > kLastPlainLevel) {
      call.context[0] = (call.context[0] & kStartMask) | (call.context[2] & ~kStartMask);
    }
    require(call.place() > before);  // so that the calls end
    before = call.place();
  }
  return 0;
}
