// SPDX-License-Identifier: GPL-3.0-or-later
// One analysis of one infrared signal: the search for candidate frames, and the bookkeeping of
// repeats.
//
// The search lets each candidate frame grow burst by burst and shows it to the 32 recognisers in
// table order; the first that answers ends the search.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/DecodeIR/recognisers.h"

class Signal {
 public:
  static constexpr float kEndGapUs = 999999.0F;  // stands for the silence after the signal
  static constexpr float kNoSpaceUs = 50;        // at most this: the signal ended with a mark
  static constexpr int kDittoRecogniser = 10;    // tryGap counts dittos

  /// The twelve arguments of _DecodeIR (DecodeIR.h explains them), and the recognisers to run.
  Signal(unsigned int* context, const int* bursts, int freq, int singleCount, int repeatCount,
         char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc, char* error,
         const analysis::recogniser_table& recognisers = analysis::kRecognisers);
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  ~Signal() = default;

  /// Finds the next frame that a recogniser names; `protocol` stays empty when there is none.
  void decode();
  /// decode, and the repeats of what it found: the results of a whole key press.
  void decode2();
  /// Tells what recognisers are asked, and what they say, until the signal is gone or null is
  /// given.
  void listen(analysis::refusal_listener* to) { frame_.listener = to; }
  /// Where decode2 found what it names.
  [[nodiscard]] const analysis::press_place& place_of_press() const { return place_; }
  /// Whether decode2 came to the end of the signal: another call, with the same context, would find
  /// nothing.
  [[nodiscard]] bool exhausted() const { return exhausted_; }

  /// For a claim that is sure of its match: for as many start positions as the frame has bursts,
  /// claims of this level and below are held back by the recognisers that claim by levels.
  void setPreempt(int level);
  /// Stores in the context where the next call goes on.
  void setzContext();
  /// Carrier of bursts first to end - 1 in Hz from the caller's cycle counts; 0 when unknown.
  [[nodiscard]] int getFreq(int first, int end) const;

  // The recognisers, in table order. Each leaves `protocol` empty or fills the results and
  // calls setzContext.
  void tryXMP() { recognise(0); }
  void tryZenith() { recognise(1); }
  void tryX10() { recognise(2); }
  void tryXX() { recognise(3); }
  void tryTDC() { recognise(4); }
  void trySejin() { recognise(5); }
  void tryQ1() { recognise(6); }
  void tryQ2() { recognise(7); }
  void tryDirecTV() { recognise(8); }
  void trySomfy() { recognise(9); }
  void tryGap() { recognise(10); }
  void tryRC5() { recognise(11); }
  void tryRC6() { recognise(12); }
  void tryCanalSat() { recognise(13); }
  void tryNokia() { recognise(14); }
  void tryPCTV() { recognise(15); }
  void tryF12() { recognise(16); }
  void trySony() { recognise(17); }
  void trySingleBurstSize() { recognise(18); }
  void tryGXB() { recognise(19); }
  void tryAsync() { recognise(20); }
  void tryAirboard() { recognise(21); }
  void tryAirAsync() { recognise(22); }
  void tryAK() { recognise(23); }
  void trySunfire() { recognise(24); }
  void tryGrundig16() { recognise(25); }
  void tryPid13() { recognise(26); }
  void tryLutron() { recognise(27); }
  void tryElan() { recognise(28); }
  void tryBryston() { recognise(29); }
  void tryHumax() { recognise(30); }
  void tryAdNotam() { recognise(31); }

  // What the candidate frame is asked; analysis::frame says what each means.
  [[nodiscard]] bool unmodulated(float t) const { return frame_.unmodulated(t); }
  [[nodiscard]] bool framedLeft(float t) const { return frame_.framedLeft(t); }
  [[nodiscard]] bool framed(float t) const { return frame_.framed(t); }
  [[nodiscard]] bool lead_in(float minTotal, float maxTotal, float maxOn, float minOff,
                             float extra) const {
    return frame_.lead_in(minTotal, maxTotal, maxOn, minOff, extra);
  }

 private:
  struct place;
  struct result;
  struct held_key;
  /// What a further result is to the press that began with the kept one.
  enum class verdict { kCopy, kX10Copy, kSupersedes, kAbsorbed, kEnd };

  [[nodiscard]] const float* burst_at(int i) const {
    return bursts_ + 2 * static_cast<ptrdiff_t>(i);
  }
  void widen_from(int first);
  void widen_to(int end);
  [[nodiscard]] int sent_bursts() const;
  [[nodiscard]] bool dittos_may_go_on(const analysis::answer& found) const;
  void search_from(int start);
  bool try_frame(const float* at, float gap);
  bool call_recognisers();
  bool recognise(int index);
  void claim(const analysis::answer& found);

  [[nodiscard]] result current_result() const;
  [[nodiscard]] verdict judge(const held_key& held, const result& next) const;
  static void count(const result& next, verdict judged, held_key* held);
  void tell_press(held_key* held);
  static bool belongs_to_solidtek(const result& kept, const result& next);
  void write_results(const analysis::answer& found);
  void finish(const result& kept, const place& last, int frames);
  void write_levels(const result& kept, const place& last, int repeat_word);
  void describe_repeats(const result& kept, int frames);

  // --- Arguments and results --------------------------------------------------------------
  unsigned int* context_;
  char* protocol_;
  char* misc_;
  char* error_;
  int* device_;
  int* subDevice_;
  int* obc_;
  int* hex_;

  // --- The signal -------------------------------------------------------------------------
  static constexpr size_t kZerosBehind = 4;
  static constexpr size_t kInPlace = 256 + kZerosBehind;  // durations: those of a packet
  std::array<float, kInPlace> in_place_;
  std::unique_ptr<float[]> allocated_;  // for a longer one
  float* bursts_ = nullptr;             // single, repeat, repeat again, extra, zeros
  // Of a long single part as many bursts are there as the search has come to need: a caller that
  // asks for press after press would have all of it copied for each.
  const int* narrow_ = nullptr;  // the caller's, null when all are there
  int widenedFrom_ = 0, widenedTo_ = 0;
  int nSingle_, nRepeat_, nExtra_;              // bursts
  int lastBurst_;                               // bursts that a frame may reach to (exclusive)
  int extraStart_ = 0;                          // first burst of the extra part, 0 for none
  float cut_us_ = analysis::frame::kSilenceUs;  // the space that it was cut in
  int freq_;                                    // Hz, as the caller gave it
  int interfaceLevel_ = 2;
  bool hasRepeatInfo_;
  const uint32_t* cycles_ = nullptr;  // the caller's cycle counts, one slot a burst
  int secondCopy_ = 0;                // first burst of the repeat part's second copy, which the
  int copiedBursts_ = 0;              // caller does not have, and its bursts

  // --- The search -------------------------------------------------------------------------
  const analysis::recogniser_table& recognisers_;
  analysis::frame frame_;
  int recogniserIndex_ = 0;
  int preemptCountdown_ = 0;
  int preemptLevel_ = 0;

  // --- What the last decode found; nothing when `protocol` is empty ---------------------------
  std::optional<analysis::answer> found_;
  // Kept from one decode to the next: frames that follow may continue the result.
  bool xmpFlag_ = false;
  bool exhausted_ = false;
  analysis::press_place place_;
};
