// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/other_formats.h"

namespace tallow {

void OtherFormats::Clear() noexcept {
  folders_.clear();
  files_ = 0;
}

void OtherFormats::Set(std::string_view folder, std::size_t files) {
  const auto found = folders_.find(folder);
  if (found != folders_.end()) {
    files_ -= found->second;
    folders_.erase(found);
  }
  if (files == 0) return;
  folders_.emplace(folder, files);
  files_ += files;
}

}  // namespace tallow
