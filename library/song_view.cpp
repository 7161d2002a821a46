// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_view.h"

#include "util/number.h"

namespace tallow {

std::string SongView::Path() const {
  const std::string_view folder = Folder();
  const std::string_view name = Name();
  std::string path;
  path.reserve(folder.size() + name.size());
  return path.append(folder).append(name);
}

bool SongView::IsMissing() const {
  const std::string_view flag = Text(kFileIsThere);
  return flag != "1" && NumericValue(flag) == 0;
}

std::int32_t SongView::Number(SongColumn column) const { return NumericValue(Text(column)); }

}  // namespace tallow
