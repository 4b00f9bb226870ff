// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/decoders.h"

#include <algorithm>

#include "lib/ir/DecodeIR/wrapper.h"
#include "lib/ir/arduino/arduino.h"
#include "lib/ir/ir.h"
#include "lib/ir/result.h"

namespace companions {

namespace {

constexpr int kMostInterpretations = 64;

/// While it lives, results come here instead of being printed.
class result_capture {
 public:
  using use = void (*)(const ir_result& result, void* to);
  result_capture(use sink, void* to) { set_result_sink(sink, to); }
  result_capture(const result_capture&) = delete;
  result_capture& operator=(const result_capture&) = delete;
  ~result_capture() { set_result_sink(nullptr, nullptr); }
};

ir_packet packet_of(std::span<const int> durations, int elapsed_ms) {
  ir_packet packet{};
  packet.len = static_cast<uint8_t>(durations.size());
  std::transform(durations.begin(), durations.end(), packet.buf,
                 [](int us) { return static_cast<uint16_t>(us); });
  packet.elapsed = static_cast<uint16_t>(elapsed_ms);
  return packet;
}

}  // namespace

bool takes_frame(std::span<const int> durations) {
  return durations.size() <= kMostDurations &&
         std::all_of(durations.begin(), durations.end(),
                     [](int us) { return us <= kLongestDurationUs; });
}

std::optional<program_answer> ask_program(std::span<const int> durations, int elapsed_ms) {
  const ir_packet packet = packet_of(durations, elapsed_ms);
  std::optional<program_answer> answer;
  const result_capture capture(
      [](const ir_result& result, void* to) {
        *static_cast<std::optional<program_answer>*>(to) =
            program_answer{std::string(result.name), result.scancode, result.bits};
      },
      &answer);
  // vantrel asks twice, once to choose the Pronto preamble; the decoders' memory of the last
  // patterns sees the same here.
  for (int run = 0; run < 2; ++run) {
    answer.reset();
    ir_t event = ir_event_of(packet);
    ir_decode_packet(&event);
  }
  return answer;
}

std::vector<analysis_answer> ask_analysis(std::span<const int> durations) {
  return ask_analysis(durations, analysis::kCarrierHz);
}

std::vector<analysis_answer> ask_analysis(std::span<const int> durations, int carrier_hz) {
  using namespace analysis;
  std::vector<int> bursts(durations.begin(), durations.end());
  bursts.push_back(kFinalSpaceUs);
  const int count = static_cast<int>(bursts.size() / 2);
  std::array<unsigned, 2> context{};
  std::vector<analysis_answer> answers;
  if (count < 2) return answers;
  for (int i = 0; i < kMostInterpretations; ++i) {
    std::array<char, kTextSize> protocol{};
    std::array<char, kTextSize> misc{};
    std::array<char, kTextSize> error{};
    analysis_answer found{{}, -1, -1, -1, {-1, -1, -1, -1}, {}};
    Signal signal(context.data(), bursts.data(), carrier_hz, count, 0, protocol.data(),
                  &found.device, &found.subdevice, &found.obc, found.hex.data(), misc.data(),
                  error.data());
    signal.decode2();
    if (protocol[0] == '\0') break;
    found.protocol = protocol.data();
    found.misc = misc.data();
    found.place = signal.place_of_press();
    answers.push_back(std::move(found));
    if (signal.exhausted()) break;
  }
  return answers;
}

std::optional<arduino_answer> ask_arduino(std::span<const int> durations) {
  const ir_packet packet = packet_of(durations, 0);
  arduino_result found{};
  if (!IRrecv::decode({packet.buf, packet.len}, found)) return {};
  return arduino_answer{found.type, found.value, static_cast<int>(found.bits)};
}

}  // namespace companions
