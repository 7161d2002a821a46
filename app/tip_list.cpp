// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/tip_list.h"

#include <string_view>

#include "util/errors.h"
#include "util/file_system.h"
#include "util/text_lines.h"

namespace tallow {

bool TipList::Load(const std::string& path) {
  if (path.empty()) return false;
  try {
    const auto content = ReadWholeFile(path);
    if (!content) return false;
    for (const std::string_view line : SplitLines(*content)) tips_.emplace_back(line);
  } catch (const FileError&) {
    return false;
  }
  Next();
  return true;
}

void TipList::Next() {
  if (tips_.empty()) return;
  current_ = std::uniform_int_distribution<std::size_t>(1, tips_.size())(random_);
}

std::string TipFilePath(const std::string& application_folder, const std::string& program_folder) {
  const std::string own = application_folder + kTipFile;
  const std::string shipped = program_folder + kTipFile;
  return !FileExists(own) && FileExists(shipped) ? shipped : own;
}

std::string NoTipsText() {
  const std::string name = kTipFile;
  return "That the " + name + " file was not found? \r\n\r\nCreate a text file named " + name +
         " using NotePad with 1 tip per line. Then place it in the same directory as the "
         "application. ";
}

}  // namespace tallow
