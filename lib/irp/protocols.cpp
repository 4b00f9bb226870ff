// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/protocols.h"

#include <strings.h>

#include <algorithm>

namespace irp {
namespace {

bool same_letters(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) == 0;
}

}  // namespace

bool next_line(std::istream& text, std::string& line, size_t longest) {
  line.clear();
  for (char c = 0; text.get(c);) {
    if (c == '\n') return true;
    if (line.size() <= longest) line += c;
  }
  return !line.empty();
}

std::vector<BadDefinition> Protocols::add(std::istream& text) {
  std::vector<BadDefinition> faults;
  std::string line;
  bool decoded = false;
  for (size_t number = 1; next_line(text, line, kLongestLine); ++number) {
    if (line.ends_with('\r')) line.pop_back();
    if (line == "#!decoded") decoded = true;
    if (line == "#!messages") decoded = false;
    if (line.empty() || line.starts_with('#')) continue;
    const size_t tab = line.find('\t');
    if (line.size() > kLongestLine) {
      faults.push_back({number, kLongestLine + 1, "the line is too long"});
    } else if (tab == std::string::npos || tab == 0) {
      faults.push_back({number, 1, "expected a name, a tab and a definition"});
    } else {
      try {
        add(std::make_unique<Protocol>(line.substr(0, tab), line.substr(tab + 1)), decoded);
      } catch (const SyntaxError& fault) {
        faults.push_back({number, tab + 1 + fault.column, fault.what()});
      }
    }
  }
  return faults;
}

void Protocols::add(std::unique_ptr<const Protocol> protocol, bool decoded) {
  if (decoded) {
    decoded_.insert(protocol->name());
  } else {
    decoded_.erase(protocol->name());
  }
  const auto [place, is_new] = places_.try_emplace(protocol->name(), protocols_.size());
  if (is_new) {
    protocols_.push_back(std::move(protocol));
  } else {
    protocols_[place->second] = std::move(protocol);
  }
}

const Protocol* Protocols::find(std::string_view name) const {
  if (const auto exact = places_.find(name); exact != places_.end()) {
    return protocols_[exact->second].get();
  }
  const std::string wanted(name);
  const auto alike = std::ranges::find_if(
      protocols_, [&](const auto& protocol) { return same_letters(protocol->name(), wanted); });
  return alike == protocols_.end() ? nullptr : alike->get();
}

}  // namespace irp
