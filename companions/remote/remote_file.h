// SPDX-License-Identifier: GPL-3.0-or-later
// An .ir remote file that keys are written into, one entry a key:
//
//   Filetype: IR signals file
//   Version: 1
//   #
//   name: Power
//   type: parsed
//   protocol: NEC
//   address: 04 00 00 00
//   command: 08 00 00 00
//
// Whatever else the file holds stays as it is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/formats/pattern.h"

namespace companions {

class remote_file {
 public:
  /// Reads the file, which need not exist yet. Throws std::runtime_error when it cannot be read, is
  /// no .ir file, or is in a folder that cannot be written.
  explicit remote_file(std::string path);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] size_t keys() const { return entries_.size(); }
  [[nodiscard]] bool has(std::string_view name) const;
  /// Puts a key in the place of the first one of its name, or at the end.
  void put(const pattern& key);
  /// Writes the file anew; it is never there half-written. Throws std::runtime_error.
  void save() const;

 private:
  struct entry {
    std::string name;
    std::string text;  // its lines, without the "#" that parts it from the next
  };

  std::string path_;
  std::string head_;
  std::vector<entry> entries_;
};

}  // namespace companions
