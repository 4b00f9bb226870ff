// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/fake_usb.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "tests/support/fake_world.h"

namespace fake_usb {

namespace {

constexpr uint64_t kUsPerMs = 1000;
constexpr size_t kTimingReportSize = 65;

[[noreturn]] void give_up(const std::string& why) {
  std::fprintf(stderr, "fake_usb: %s\n", why.c_str());
  std::abort();
}

uint64_t to_us(const std::string& ms) {
  return static_cast<uint64_t>(std::stod(ms) * kUsPerMs);
}

bytes to_bytes(const std::vector<std::string>& words) {
  bytes result;
  for (const std::string& word : words) {
    result.push_back(static_cast<uint8_t>(std::stoul(word, nullptr, 16)));
  }
  return result;
}

device& last_device() {
  if (the_world().devices.empty()) give_up("the script needs a device first");
  return *the_world().devices.back();
}

void set_properties(device& target, const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos) give_up(text("not a property: ", word));
    const std::string key = word.substr(0, equals);
    const std::string value = word.substr(equals + 1);
    if (key == "vid") {
      target.vid = static_cast<uint16_t>(std::stoul(value, nullptr, 16));
    } else if (key == "pid") {
      target.pid = static_cast<uint16_t>(std::stoul(value, nullptr, 16));
    } else if (key == "iface") {
      target.iface = std::stoi(value);
    } else if (key == "mfr") {
      target.manufacturer = value;
    } else if (key == "refuses") {
      target.refusals = std::stoi(value);
    } else if (key == "version") {
      std::istringstream parts(value);
      for (uint16_t& part : target.version) {
        parts >> part;
        parts.ignore();  // the dot
      }
    } else {
      give_up(text("unknown property: ", word));
    }
  }
}

void unplug(device& target) {
  target.present = false;
  target.generation++;
  target.input.clear();
}

/// The handler may end the program; when it returns, the wait it came in is cut short. A blocked
/// signal leaves the wait alone.
void come(int signal) {
  sigset_t blocked;
  sigprocmask(SIG_BLOCK, nullptr, &blocked);
  the_world().interrupted = sigismember(&blocked, signal) == 0;
  std::raise(signal);
}

void interrupt_program() {
  come(SIGINT);
}

void wait_for_signal() {
  pause();
  the_world().interrupted = true;
}

void flood(device& target, uint64_t at, uint64_t period) {
  the_world().events.emplace(at, [&target, at, period] {
    if (!target.present) return;
    target.input.push_back(timing_reports({9000, 4500, 560}, 40).front());
    flood(target, at + period, period);
  });
}

void schedule(uint64_t at, const std::vector<std::string>& words) {
  device* target = the_world().devices.empty() ? nullptr : &last_device();
  const std::string what = words.front();
  const std::vector<std::string> rest(words.begin() + 1, words.end());
  auto& events = the_world().events;
  if (what == "sigint") {
    events.emplace(at, interrupt_program);
    return;
  }
  if (what == "deadline") {
    events.emplace(at, [] { give_up("the program goes on beyond its deadline"); });
    return;
  }
  if (what == "hang") {
    events.emplace(at, wait_for_signal);
    return;
  }
  if (target == nullptr) give_up("the script needs a device first");
  if (what == "signal") {
    constexpr std::string_view kElapsed = "elapsed=";
    uint16_t elapsed_ms = 40;
    std::vector<uint16_t> entries;
    for (const std::string& word : rest) {
      const bool says_elapsed = word.starts_with(kElapsed);
      const auto value =
          static_cast<uint16_t>(std::stoul(word.substr(says_elapsed ? kElapsed.size() : 0)));
      if (says_elapsed) {
        elapsed_ms = value;
      } else {
        entries.push_back(value);
      }
    }
    events.emplace(at, [target, entries, elapsed_ms] {
      for (bytes& report : timing_reports(entries, elapsed_ms)) {
        target->input.push_back(std::move(report));
      }
    });
  } else if (what == "report") {
    events.emplace(at, [target, report = to_bytes(rest)] { target->input.push_back(report); });
  } else if (what == "unplug") {
    events.emplace(at, [target] { unplug(*target); });
  } else if (what == "plug") {
    events.emplace(at, [target, rest] {
      target->present = true;
      set_properties(*target, rest);
    });
  } else {
    give_up(text("unknown event: ", what));
  }
}

void add_fault(std::vector<std::string> words) {
  fault added{words.at(1), 0, "", {}};
  size_t next = 2;
  if (std::isdigit(static_cast<unsigned char>(words.at(next).front())) != 0) {
    added.countdown = std::stoi(words.at(next++));
  }
  added.kind = words.at(next++);
  added.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
  the_world().faults.push_back(added);
}

void play_line(const std::vector<std::string>& words) {
  const std::string what = words.front();
  const std::vector<std::string> rest(words.begin() + 1, words.end());
  world& all = the_world();
  if (what == "device") {
    auto added = std::make_unique<device>();
    added->path = text("/dev/fake", all.devices.size());
    set_properties(*added, rest);
    all.devices.push_back(std::move(added));
  } else if (what == "queued") {
    last_device().input.push_back(to_bytes(rest));
  } else if (what == "at") {
    schedule(to_us(words.at(1)), {words.begin() + 2, words.end()});
  } else if (what == "forgetful") {
    all.forgetful = true;
  } else if (what == "flood") {
    const uint64_t period = to_us(words.at(1));
    flood(last_device(), all.now + period, period);
  } else if (what == "on") {
    add_fault(words);
  } else if (what == "sigint") {
    all.call_interrupts.push_back({words.at(1), words.size() > 2 ? std::stoi(words.at(2)) : 1});
  } else if (what == "fail") {
    all.failures[words.at(1)] = std::stoi(words.at(2));
  } else {
    give_up(text("unknown item: ", what));
  }
}

/// The fault that hits this command, if any; counts the command for the others.
const fault* hit(std::vector<fault>& faults, const std::string& command) {
  const fault* result = nullptr;
  for (fault& candidate : faults) {
    if (candidate.command != command) continue;
    const bool always = candidate.countdown == 0;
    if (!always && --candidate.countdown != 0) continue;
    if (!always) candidate.countdown = -1;
    result = &candidate;
  }
  return result;
}

/// What the firmware answers: the name, status 0, a result.
bytes reply_to(const device& target, const bytes& report) {
  constexpr size_t kName = 1;
  constexpr size_t kNameSize = 11;
  constexpr size_t kData = 13;
  bytes reply(report.size(), 0);
  reply[0] = static_cast<uint8_t>(report[0] - 1);
  std::copy_n(report.begin() + kName, kNameSize, reply.begin() + kName);
  const std::string command(reinterpret_cast<const char*>(reply.data() + kName));
  if (command == "getversion") {
    std::memcpy(reply.data() + kData, target.version.data(), sizeof(target.version));
    constexpr uint32_t kHash = 0x00ABCDEF;
    constexpr char kType[] = "test";
    std::memcpy(reply.data() + kData + 6, &kHash, sizeof(kHash));
    std::memcpy(reply.data() + kData + 10, kType, sizeof(kType));
  } else {
    for (size_t i = kData; i < reply.size(); i++) reply[i] = static_cast<uint8_t>(i);
  }
  return reply;
}

}  // namespace

int library_calls = 0;

world& the_world() {
  static world instance;
  return instance;
}

std::string to_hex(const bytes& data) {
  std::string result;
  for (const uint8_t byte : data) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", byte);
    if (!result.empty()) result += ' ';
    result += digits.data();
  }
  return result;
}

std::vector<bytes> timing_reports(const std::vector<uint16_t>& entries, uint16_t elapsed_ms) {
  constexpr size_t kFirst = 30;
  constexpr size_t kMore = 31;
  std::vector<uint16_t> all = entries;
  all.push_back(0);  // the end mark
  std::vector<bytes> reports;
  for (size_t done = 0; done < all.size();) {
    const bool is_first = reports.empty();
    bytes report(kTimingReportSize, 0);
    report[0] = 7;
    if (is_first) {
      std::memcpy(report.data() + 3, &elapsed_ms, sizeof(elapsed_ms));
    } else {
      report[1] = 1;
    }
    const size_t count = std::min(all.size() - done, is_first ? kFirst : kMore);
    std::memcpy(report.data() + (is_first ? 5 : 2), all.data() + done, count * sizeof(uint16_t));
    done += count;
    reports.push_back(std::move(report));
  }
  return reports;
}

bool world::advance(uint64_t until, const std::function<bool()>& ready) {
  interrupted = false;
  while (true) {
    if (ready()) return false;
    const uint64_t event_at = events.empty() ? UINT64_MAX : events.begin()->first;
    const uint64_t tick_at = tick_period == 0 ? UINT64_MAX : std::max(next_tick, now);
    if (std::min(event_at, tick_at) > until) {
      now = std::max(now, until);
      return true;
    }
    if (tick_at < event_at) {
      now = tick_at;
      next_tick = now + tick_period;
      come(SIGALRM);
      if (interrupted) return false;
      continue;
    }
    const auto event = events.extract(events.begin());
    now = std::max(now, event.key());
    event.mapped()();
    if (interrupted) return false;
  }
}

void world::record(std::string call) {
  for (call_interrupt& planned : call_interrupts) {
    if (call.starts_with(planned.call) && --planned.countdown == 0) std::raise(SIGINT);
  }
  if (forgetful) return;
  // A program that waits without letting time pass would never end here.
  constexpr size_t kMostCalls = 200'000;
  if (calls.size() >= kMostCalls) give_up(text("the program does not stop calling: ", call));
  if (const char* path = std::getenv("FAKE_USB_TRACE")) {
    // Opened for every line: the program may end at any point.
    const int fd = open(path, O_WRONLY | O_APPEND | O_CREAT, 0600);
    dprintf(fd, "%s\n", call.c_str());
    close(fd);
  }
  calls.push_back(std::move(call));
}

int world::failure(const std::string& function) const {
  const auto found = failures.find(function);
  return found == failures.end() ? 0 : found->second;
}

void world::handle_write(device& target, const bytes& report, bool* failed) {
  constexpr uint8_t kDataReport = 4;
  if (report[0] == kDataReport) {
    target.input.push_back({3, 0});
    return;
  }
  bytes reply = reply_to(target, report);
  const std::string command(reinterpret_cast<const char*>(reply.data() + 1));
  const fault* hit_by = hit(faults, command);
  if (hit_by != nullptr) {
    const std::string& kind = hit_by->kind;
    const auto argument = [hit_by] { return hit_by->arguments.at(0); };
    if (kind == "noreply") return;
    if (kind == "short") {
      reply.resize(reply.size() / 2);
    } else if (kind == "id") {
      reply[0] = to_bytes(hit_by->arguments)[0];
    } else if (kind == "name") {
      std::strncpy(reinterpret_cast<char*>(reply.data() + 1), argument().c_str(), 11);
    } else if (kind == "status") {
      reply[12] = static_cast<uint8_t>(std::stoi(argument()));
    } else if (kind == "stuck") {
      constexpr uint64_t kWriteTimeoutUs = 5'000'000;
      *failed = true;
      if (!advance(now + kWriteTimeoutUs, [] { return false; })) errno = EINTR;
      return;
    } else if (kind == "writeerror") {
      *failed = true;
      return;
    } else if (kind == "unplug") {
      unplug(target);
      return;
    } else if (kind == "sigint") {
      events.emplace(now, interrupt_program);
      return;
    } else if (kind == "flood") {
      flood(target, now, to_us(argument()));
    } else if (kind == "report") {
      target.input.push_back(to_bytes(hit_by->arguments));
    } else if (kind == "late") {
      events.emplace(now + to_us(argument()), [&target, reply] { target.input.push_back(reply); });
      return;
    } else {
      give_up(text("unknown fault: ", kind));
    }
  }
  target.input.push_back(std::move(reply));
}

void reset() {
  the_world() = {};
}

void play(std::string_view script) {
  the_world().active = true;
  std::istringstream lines{std::string(script)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream parts(line);
    std::vector<std::string> words;
    for (std::string word; parts >> word;) words.push_back(word);
    if (!words.empty() && words.front().front() != '#') play_line(words);
  }
}

uint64_t now_us() {
  return the_world().now;
}

const std::vector<std::string>& calls() {
  return the_world().calls;
}

std::vector<std::string> writes() {
  constexpr std::string_view kWrite = "write ";
  std::vector<std::string> result;
  for (const std::string& call : calls()) {
    if (call.starts_with(kWrite)) result.push_back(call.substr(kWrite.size()));
  }
  return result;
}

std::string commands() {
  std::string result;
  std::string previous;
  int repeated = 0;
  const auto finish = [&] {
    if (repeated == 0) return;
    if (!result.empty()) result += ' ';
    result += previous;
    if (repeated > 1) result += text("*", repeated);
  };
  for (const std::string& report : writes()) {
    std::istringstream digits(report);
    std::string name;
    unsigned byte = 0;
    digits >> std::hex >> byte;
    while (digits >> byte && byte != 0) name += static_cast<char>(byte);
    if (name == previous) {
      repeated++;
      continue;
    }
    finish();
    previous = name;
    repeated = 1;
  }
  finish();
  return result;
}

int open_devices() {
  return the_world().open_handles;
}

}  // namespace fake_usb
