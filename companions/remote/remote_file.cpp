// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/remote_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "companions/formats/form.h"
#include "companions/formats/inputs.h"

namespace companions {
namespace {

constexpr std::string_view kHead = "Filetype: IR signals file\nVersion: 1\n";
constexpr std::string_view kParting = "#\n";
constexpr std::string_view kNameKey = "name:";
constexpr std::string_view kBlanks = " \t\r";

std::string_view trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// Removes the lines at the end that are empty or a lone "#".
void drop_parting_lines(std::string& text) {
  while (!text.empty()) {
    const size_t line = text.size() < 2 ? text.npos : text.rfind('\n', text.size() - 2);
    const size_t begin = line == text.npos ? 0 : line + 1;
    std::string_view last = std::string_view(text).substr(begin);
    last.remove_suffix(last.ends_with('\n') ? 1 : 0);
    last = trim(last);
    if (!last.empty() && last != "#") return;
    text.resize(begin);
  }
}

/// The entry of a key, as the form writes it behind the head of a file.
std::string lines_of(const pattern& key) {
  std::ostringstream file;
  kIrFileForm.writer()->write(file, key);
  std::string text = file.str();
  text.erase(0, kHead.size() + kParting.size());
  return text;
}

[[noreturn]] void fail(const std::string& path, const std::string& what) {
  throw std::runtime_error(path + ": " + what);
}

}  // namespace

remote_file::remote_file(std::string path) : path_(std::move(path)), head_(kHead) {
  // Before a key is learnt that could not be kept.
  const std::filesystem::path folder = std::filesystem::path(path_).parent_path();
  if (access(folder.empty() ? "." : folder.c_str(), W_OK) != 0) fail(path_, std::strerror(errno));
  std::error_code unknown;
  if (!std::filesystem::exists(path_, unknown)) return;
  std::ifstream file;
  if (const std::string fault = open_file(path_, file); !fault.empty()) fail(path_, fault);
  head_.clear();
  std::string line;
  while (std::getline(file, line)) {
    if (entries_.empty() && head_.empty() && line.find("Filetype:") == line.npos) {
      fail(path_, "no .ir remote file, its first line is no \"Filetype:\"");
    }
    if (line.starts_with(kNameKey)) {
      entries_.push_back({std::string(trim(line.substr(kNameKey.size()))), {}});
    }
    (entries_.empty() ? head_ : entries_.back().text) += line + '\n';
  }
  if (head_.empty()) head_ = kHead;
  drop_parting_lines(head_);
  for (entry& one : entries_) drop_parting_lines(one.text);
}

bool remote_file::has(std::string_view name) const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [name](const entry& one) { return one.name == name; });
}

void remote_file::put(const pattern& key) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&key](const entry& one) { return one.name == key.name; });
  entry& place = found != entries_.end() ? *found : entries_.emplace_back();
  place = {key.name, lines_of(key)};
}

void remote_file::save() const {
  // Beside the file itself, so that it can take its place; through a link, which stays one.
  std::error_code unknown;
  std::filesystem::path target = std::filesystem::canonical(path_, unknown);
  if (unknown) target = path_;
  const std::string written = target.string() + ".new";
  std::ofstream file(written, std::ios::trunc);
  file << head_;
  for (const entry& one : entries_) file << kParting << one.text;
  file.close();
  if (!file) fail(written, std::strerror(errno));
  std::error_code failed;
  std::filesystem::rename(written, target, failed);
  if (failed) fail(path_, failed.message());
}

}  // namespace companions
