// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "details/child_reader.h"

namespace tallow {

/// The path of the picture in a folder: "cover" or "folder" with ".jpg", ".jpeg" or ".png", in any
/// letter case. A cover is preferred to a folder, and JPEG to PNG; of names that differ only in
/// letter case, the one that comes first in the order of bytes is taken.
///
/// \param folder ends in a separator
/// \returns empty when there is none
std::string FindFolderPicture(const std::string& folder);

/// Reads the file of the picture in a folder, see FindFolderPicture.
/// \returns empty when there is none, or when it cannot be read
std::string ReadFolderPicture(const std::string& folder);

/// Reads the cover of a song: the picture in its tags, else that in its folder. The cover is the
/// file of an image, which was not looked into.
///
/// Files are read in a child process, as ChildReader describes it, except those that IsPlainMp3.
/// A child runs for one file only.
///
/// \param children empty: all files are read in this process, which a damaged file may then end
/// \param stopped  ends the call soon; its result is then of no use
/// \returns empty when the song has no cover
std::string ReadCover(const std::string& path, const std::optional<ChildSettings>& children,
                      const std::function<bool()>& stopped);

}  // namespace tallow
