// SPDX-License-Identifier: GPL-3.0-or-later
// One analysis of one infrared signal: the search for candidate frames, the recognisers that
// look at each candidate, and the bookkeeping of repeats.
//
// A signal is a list of bursts; a burst is a mark (on-time) and the space (off-time) after it,
// both in µs. A candidate frame is a run of 2 to 100 bursts that starts after a gap. The search
// grows the frame burst by burst and hands it to the 32 recognisers in table order; the first
// that writes `protocol` ends the search.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "lib/ir/DecodeIR/slicer.h"
#include "lib/ir/DecodeIR/statistics.h"

class Signal;
namespace gap {
struct answer;
struct coding;
struct ditto;
}  // namespace gap

/// What a frame must at least be for a recogniser to look at it. The search tests the bounds
/// before it calls the member, and the member tests them again, so that each answers alone.
struct frame_bounds {
  int min_bursts = 2;
  int max_bursts = 100;
  float min_gap = 0;         // µs of trailing gap
  float min_gap_before = 0;  // µs of gap before the frame
};

/// One row of the recogniser table.
struct recogniser {
  const char* name;
  void (Signal::*member)();
  frame_bounds bounds;
};

/// The recognisers in call order; the index in this table is what the resume state stores.
extern const std::array<recogniser, 32> kRecognisers;

class Signal {
 public:
  static constexpr float kEndGapUs = 999999.0F;  // stands for the silence after the signal
  static constexpr int kMostBursts = 100;        // of one frame
  static constexpr float kLongestInsideUs = 14000.0F;
  static constexpr int kDittoRecogniser = 10;  // tryGap counts dittos

  /// The twelve arguments of _DecodeIR (DecodeIR.h explains them), and the recognisers to run.
  Signal(unsigned int* context, const int* bursts, int freq, int singleCount, int repeatCount,
         char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc, char* error,
         std::span<const recogniser, 32> recognisers = kRecognisers);
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  ~Signal() = default;

  /// Finds the next frame that a recogniser names; `protocol` stays empty when there is none.
  void decode();
  /// decode, and the repeats of what it found: the results of a whole key press.
  void decode2();

  /// Called by a recogniser that is sure of its match: for as many start positions as the frame
  /// has bursts, weaker claims (below `level`) inside it are to be held back.
  void setPreempt(int level);
  /// Called by the recogniser that reports a result: stores where the next call goes on.
  void setzContext();
  /// Carrier of bursts first to end - 1 in Hz from the caller's cycle counts; 0 when unknown.
  [[nodiscard]] int getFreq(int first, int end) const;

  // The recognisers, in table order. Each leaves `protocol` empty or fills the results and
  // calls setzContext.
  void tryXMP();
  void tryZenith();
  void tryX10();
  void tryXX();
  void tryTDC();
  void trySejin();
  void tryQ1();
  void tryQ2();
  void tryDirecTV();
  void trySomfy();
  void tryGap();
  void tryRC5();
  void tryRC6();
  void tryCanalSat();
  void tryNokia();
  void tryPCTV();
  void tryF12();
  void trySony();
  void trySingleBurstSize();
  void tryGXB();
  void tryAsync();
  void tryAirboard();
  void tryAirAsync();
  void tryAK();
  void trySunfire();
  void tryGrundig16();
  void tryPid13();
  void tryLutron();
  void tryElan();
  void tryBryston();
  void tryHumax();
  void tryAdNotam();

 protected:
  // --- The candidate frame, for the recognisers -------------------------------------------
  /// Durations of the frame's i-th burst, 0 the first. REQUIRES: 0 <= i < frameLength_.
  [[nodiscard]] float on(int i) const { return frame_[2 * i]; }
  [[nodiscard]] float off(int i) const { return frame_[2 * i + 1]; }
  [[nodiscard]] float burst(int i) const { return on(i) + off(i); }
  /// Bursts of the signal from the frame's first one to its last, those after the frame included.
  [[nodiscard]] int burstsFromFrame() const { return lastBurst_ - frameStart_; }
  [[nodiscard]] bool within(const frame_bounds& bounds) const {
    return frameLength_ >= bounds.min_bursts && frameLength_ <= bounds.max_bursts &&
           trailingGap_ >= bounds.min_gap && gapBefore_ >= bounds.min_gap_before;
  }
  /// Whether a pulse of t µs spans less than half a carrier cycle.
  [[nodiscard]] bool unmodulated(float t) const {
    return static_cast<float>(frameFreq_) * t < 500000.0F;
  }
  [[nodiscard]] bool framedLeft(float t) const { return gapBefore_ >= t; }
  [[nodiscard]] bool framed(float t) const { return framingGap_ >= t; }
  /// Whether one of the two lead-in bursts recorded by the pulse-distance recogniser fits.
  [[nodiscard]] bool lead_in(float minTotal, float maxTotal, float maxOn, float minOff,
                             float extra) const;

  /// Expresses the frame, its trailing gap excluded, in units; refuses by the statistics first.
  bool sliceFrame(const slice_rule& rule, slicer* frame) const;

  // --- How a recogniser answers -----------------------------------------------------------
  // The result buffers belong to the caller; names and remarks stay within these lengths.
  static constexpr int kMostNameChars = 63;
  static constexpr int kMostRemarkChars = 199;
  static constexpr int kMostMiscChars = 254;  // the repeat description and the remark
  /// Claims the frame: writes the name and the numbers (-1 for none) and calls setzContext.
  void claim(const char* name, int device, int subDevice, int obc, int hex0 = -1);
  static constexpr int kExtendedLevel = 2;  // preemption inside a frame that was extended
  /// Makes the frame being claimed longer: the bursts behind it belong to it, and no recogniser is
  /// to claim them once more. REQUIRES: frameLength_ <= bursts <= burstsFromFrame().
  void extendFrame(int bursts) {
    frameLength_ = bursts;
    trailingGap_ = off(bursts - 1);
    setPreempt(kExtendedLevel);
  }
  /// Whether the frame starts inside one that was extended.
  [[nodiscard]] bool insideExtended() const { return preemptLevel_ >= kExtendedLevel; }
  /// Writes the remark of the frame being claimed.
  [[gnu::format(printf, 2, 3)]] void remark(const char* fmt, ...);

  // --- The bit buffer ---------------------------------------------------------------------
  static constexpr int kMostBits = 128;
  void cleanup();
  /// Decode `count` bursts from decodeAt_ on: a one where the on-time (decodeX) or the burst
  /// length (decodeX2) exceeds threshold_.
  void decodeX(int count);
  void decodeX2(int count);
  /// Appends one bit, for codes that the two above cannot read. All three stop the program with
  /// an assertion rather than overrun the buffer.
  void appendBit(bool bit);
  [[nodiscard]] unsigned getBit(int n) const;
  [[nodiscard]] unsigned getLsb(int first, int count) const;
  void makeMsb();
  [[nodiscard]] unsigned getMsb(int first, int count) const;

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
  std::unique_ptr<float[]> bursts_;  // single, repeat, repeat again, extra, four zeros
  int nSingle_, nRepeat_, nExtra_;   // bursts
  int lastBurst_;                    // bursts that a frame may reach to (exclusive)
  int extraStart_ = 0;               // first burst of the extra part, 0 for none
  int freq_;                         // Hz, as the caller gave it
  int interfaceLevel_ = 2;
  bool hasRepeatInfo_;
  const uint32_t* cycles_ = nullptr;  // the caller's cycle counts, one slot a burst
  int secondCopy_ = 0;                // first burst of the repeat part's second copy, which the
  int copiedBursts_ = 0;              // caller does not have, and its bursts

  // --- The candidate frame ----------------------------------------------------------------
  const float* frame_ = nullptr;  // its first on-time
  int frameStart_ = 0;            // the same as a burst number
  int frameLength_ = 2;           // bursts
  int frameFreq_ = 0;             // Hz
  float totalDuration_ = 0;       // µs, without the trailing gap
  float largestDuration_ = 0;     // µs, the trailing gap excluded
  float gapBefore_ = 0;           // µs, 1e9 before burst 0
  float trailingGap_ = 0;         // µs
  float framingGap_ = 0;          // µs, the smaller of the two gaps
  setOn setOn_;
  setOff setOff_;
  setBurst setBurst_;

  // --- The search -------------------------------------------------------------------------
  int recogniserIndex_ = 0;
  int preemptCountdown_ = 0;
  int preemptLevel_ = 0;
  int matchedRecogniser_ = -1;  // the one that ended the last search, -1 when it found nothing

  // --- What a recogniser tells the bookkeeping; cleared at each decode ----------------------
  int dittos_ = 0;            // dittos counted after the frame
  bool nameVariant_ = false;  // JVC: lead-in present; RCA: long first mark; X10: first frame
  int repeatKind_ = -1;       // the two repeat-kind words of the interface
  int repeatKind2_ = -1;
  std::array<char, 16> suffix_{};  // "-f16", "-rnc", "-Yamaha" of a NEC name

  // Kept from one decode to the next, unlike the words above.
  bool xmpFlag_ = false;  // XMP: frames that follow may continue the result

  /// The two bursts that may be a lead-in, each with the duration recorded with it.
  struct leadIn {
    const float* burst = nullptr;
    float recorded = 0;
  };
  std::array<leadIn, 2> leadIns_;

  std::array<uint8_t, kMostBits / 8> cBits_{};
  int nBit_ = 0;
  const float* decodeAt_ = nullptr;
  float threshold_ = 0;

 private:
  struct place;
  struct result;
  /// What a further result is to the press that began with the kept one.
  enum class verdict { kCopy, kX10Copy, kSupersedes, kAbsorbed, kEnd };

  // The steps of tryGap.
  bool gapRow();
  bool gapDitto();
  void gapUnknown();
  void countDittos(const gap::coding& wire, const gap::ditto& form, float scale, float bias);
  void answerGap(const gap::answer& found, int level);

  void searchFrom(int start);
  bool tryFrame();
  bool callRecognisers();

  [[nodiscard]] result currentResult() const;
  [[nodiscard]] verdict judge(const result& kept, const place& last, const result& next,
                              bool endMarker) const;
  static bool belongsToSolidtek(const result& kept, const result& next);
  static bool isSonyByProduct(std::string_view remark);
  void restore(const result& kept, const place& last);
  void finish(const result& kept, const place& last, int frames);
  void writeLevels(const result& kept, const place& last, int repeatWord);
  void describeRepeats(const result& kept, int frames);

  std::span<const recogniser, 32> recognisers_;
  float shortestGap_;  // the least trailing gap that any recogniser looks at
};

/// The low `count` bits of `value` in reversed order.
[[nodiscard]] unsigned msb(unsigned value, int count);
/// The exclusive-or of all 32 bits: 0 or 1.
[[nodiscard]] int parity(unsigned value);
