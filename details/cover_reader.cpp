// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/cover_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "details/embedded_picture.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// By preference.
constexpr std::array<std::string_view, 6> kNames{"cover.jpg",  "cover.jpeg",  "cover.png",
                                                 "folder.jpg", "folder.jpeg", "folder.png"};

std::string ReadPictureOfTags(const std::string& path, const std::optional<ChildSettings>& children,
                              const std::function<bool()>& stopped) {
  if (auto plain = ReadPlainPicture(path, {.stopped = stopped})) return *std::move(plain);
  if (children) return ChildReader(*children).ReadPicture(path, stopped);
  return ReadEmbeddedPicture(path, {.max_bytes = kMaxBytesForPicture, .stopped = stopped});
}

}  // namespace

std::string FindFolderPicture(const std::string& folder) {
  const FolderListing listing = ListFolder(folder, {});
  std::size_t best = kNames.size();
  std::string name;
  for (const FileEntry& file : listing.files) {
    const auto found = std::ranges::find(kNames, ToLower(file.name));
    const auto place = static_cast<std::size_t>(found - kNames.begin());
    if (place == kNames.size() || place > best || (place == best && file.name > name)) continue;
    best = place;
    name = file.name;
  }
  return name.empty() ? std::string() : folder + name;
}

std::string ReadFolderPicture(const std::string& folder) {
  const std::string path = FindFolderPicture(folder);
  if (path.empty()) return {};
  try {
    return ReadWholeFile(path, kMaxPictureBytes).value_or(std::string());
  } catch (const FileError&) {
    return {};
  }
}

std::string ReadCover(const std::string& path, const std::optional<ChildSettings>& children,
                      const std::function<bool()>& stopped) {
  std::string picture = ReadPictureOfTags(path, children, stopped);
  if (!picture.empty() || stopped()) return picture;
  return ReadFolderPicture(std::string(FolderOfPath(path)));
}

}  // namespace tallow
