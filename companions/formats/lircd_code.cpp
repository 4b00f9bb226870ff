// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/formats/lircd_code.h"

#include <numeric>

#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr int kMostBits = 64;  // of one field

/// Puts one frame together: header, plead, pre_data, pre, code, post, post_data, ptrail, foot.
class frame {
 public:
  frame(const lircd_remote& remote, bool header, bool foot)
      : remote_(remote), header_(header), foot_(foot) {}

  std::vector<int> render(uint64_t code) {
    position_ = remote_.pre_data_bits + remote_.bits + remote_.post_data_bits;
    if (header_) add(remote_.header);
    add(true, remote_.plead);
    add_field(remote_.pre_data, remote_.pre_data_bits);
    if (remote_.pre_data_bits > 0) add(remote_.pre);
    add_field(code, remote_.bits);
    if (remote_.post_data_bits > 0) add(remote_.post);
    add_field(remote_.post_data, remote_.post_data_bits);
    add(true, remote_.ptrail);
    if (foot_) {  // the other way round than everything else
      add(false, remote_.foot[1]);
      add(true, remote_.foot[0]);
    }
    return std::move(durations_);
  }

  /// What is sent in place of the fields while the key is held.
  std::vector<int> render_repeat() {
    if (header_) add(remote_.header);
    add(true, remote_.plead);
    add(remote_.repeat);
    add(true, remote_.ptrail);
    return std::move(durations_);
  }

 private:
  void add(bool mark, int us) {
    // A frame that begins with a space begins at its first mark.
    if (us > 0 && (mark || !durations_.empty())) append(durations_, mark, us);
  }

  void add(const mark_space& both) {
    add(true, both[0]);
    add(false, both[1]);
  }

  /// Takes `count` bits from the field, beginning with the one that is sent first.
  void add_field(uint64_t field, int count) {
    const int step = remote_.bits_by == lircd_remote::coding::kNibbles   ? 4
                     : remote_.bits_by == lircd_remote::coding::kTwoBits ? 2
                                                                         : 1;
    for (int sent = 0; sent < count; sent += step) {
      unsigned symbol = 0;
      for (int i = sent; i < std::min(sent + step, count); ++i) {
        const int place = remote_.least_first ? i : count - 1 - i;
        symbol = symbol << 1 | static_cast<unsigned>(field >> place & 1);
      }
      position_ -= step;
      add_symbol(symbol);
    }
  }

  void add_symbol(unsigned symbol) {
    const std::array<const mark_space*, 4> shapes = {&remote_.zero, &remote_.one, &remote_.two,
                                                     &remote_.three};
    const mark_space& shape = *shapes[symbol & 3];
    switch (remote_.bits_by) {
      case lircd_remote::coding::kSpaceFirst:
        add(false, shape[1]);
        add(true, shape[0]);
        break;
      case lircd_remote::coding::kTwoPhase: {
        const bool is_double =
            position_ >= 0 && position_ < kMostBits && (remote_.rc6_mask >> position_ & 1) == 1;
        const bool mark_first = symbol == 0;
        const int factor = is_double ? 2 : 1;
        add(mark_first, factor * shape[mark_first ? 0 : 1]);
        add(!mark_first, factor * shape[mark_first ? 1 : 0]);
        break;
      }
      case lircd_remote::coding::kNibbles:
        add(true, remote_.zero[0]);
        add(false, remote_.zero[1] + static_cast<int>(symbol) * remote_.one[1]);
        break;
      default:
        add(shape);
    }
  }

  const lircd_remote& remote_;
  bool header_, foot_;
  int position_ = 0;  // of the bit that was added last, counted from the end of all fields
  std::vector<int> durations_;
};

}  // namespace

void add_gap(const lircd_remote& remote, int gap, std::vector<int>& frame) {
  if (frame.size() % 2 == 0 && !frame.empty() && remote.bits_by == lircd_remote::coding::kRaw)
    return;
  // The gap takes the place of the last bit's space.
  if (gap > 0 && frame.size() % 2 == 0 && !frame.empty()) frame.pop_back();
  const auto sent = std::accumulate(frame.begin(), frame.end(), int64_t{0});
  const int64_t rest = remote.const_length ? gap - sent : gap;
  if (rest > 0) append(frame, false, static_cast<int>(rest));
}

std::optional<std::string> render_lircd(const lircd_remote& remote,
                                        const std::vector<uint64_t>& codes, pattern& to) {
  if (remote.bits_by == lircd_remote::coding::kUnknown)
    return "the flags name a coding that is not known here";
  for (const int count : {remote.bits, remote.pre_data_bits, remote.post_data_bits}) {
    if (count < 0 || count > kMostBits) return "a field of over 64 bits";
  }
  std::vector<int> all;
  for (const uint64_t code : codes) {
    auto one = frame(remote, true, true).render(code);
    if (one.empty()) return "the remote tells no lengths of bits";
    add_gap(remote, remote.gap, one);
    if (all.size() % 2 == 1) return "several codes need a gap between them";
    all.insert(all.end(), one.begin(), one.end());
    if (all.size() > kMostPatternDurations) return kTooManyDurations;
  }
  to.durations = std::move(all);
  const int gap = remote.repeat_gap > 0 ? remote.repeat_gap : remote.gap;
  if (remote.repeat[0] > 0) {
    to.repeat = frame(remote, remote.repeat_header, false).render_repeat();
    add_gap(remote, gap, to.repeat);
  } else if (remote.no_head_repeat || remote.no_foot_repeat) {
    to.repeat = frame(remote, !remote.no_head_repeat, !remote.no_foot_repeat).render(codes.front());
    add_gap(remote, gap, to.repeat);
  } else {
    to.held = true;
  }
  return {};
}

}  // namespace companions
