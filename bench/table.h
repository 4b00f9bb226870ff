// SPDX-License-Identifier: GPL-3.0-or-later
// The results as a table of what one of a thing costs and how many go into a second.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

class Table : public benchmark::BenchmarkReporter {
 public:
  explicit Table(FILE* to) : to_(to) {}

  bool ReportContext(const Context& /*context*/) override {
    std::fprintf(to_, "%-36s %12s %14s\n", "", "each", "a second");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) {
        std::fprintf(to_, "%-36s %s\n", name_of(run).c_str(), run.error_message.c_str());
        continue;
      }
      const auto rate = run.counters.find("items_per_second");
      const double per_second = rate != run.counters.end() ? rate->second.value
                                                           : static_cast<double>(run.iterations) /
                                                                 run.real_accumulated_time;
      std::fprintf(to_, "%-36s %12s %14s\n", name_of(run).c_str(),
                   time_text(1 / per_second).c_str(), grouped(std::llround(per_second)).c_str());
    }
    std::fflush(to_);
  }

 private:
  /// Without what only says how it was measured.
  static std::string name_of(const Run& run) {
    std::string name = run.benchmark_name();
    const size_t end = name.find("/manual_time");
    if (end != std::string::npos) name.erase(end);
    return name;
  }

  static std::string time_text(double seconds) {
    constexpr double kMs = 1e-3;
    constexpr double kUs = 1e-6;
    std::array<char, 32> text{};
    if (seconds >= kMs) {
      std::snprintf(text.data(), text.size(), "%.2f ms", seconds / kMs);
    } else {
      std::snprintf(text.data(), text.size(), "%.2f us", seconds / kUs);
    }
    return text.data();
  }

  static std::string grouped(long long number) {
    std::string text = std::to_string(number);
    for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3) {
      text.insert(static_cast<size_t>(at), 1, ',');
    }
    return text;
  }

  FILE* to_;
};
