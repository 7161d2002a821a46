// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "jukebox/filing_tags.h"

namespace tallow {

/// The song details of the library: their database, which is opened when it is first used.
class LibraryDetails {
 public:
  /// \param path of the database; its folder has to exist at the first use
  explicit LibraryDetails(std::string path);
  LibraryDetails(const LibraryDetails&) = delete;
  LibraryDetails& operator=(const LibraryDetails&) = delete;
  ~LibraryDetails();

  /// The function that reads the tags of a file for filing: the stored ones if size and time of
  /// change of the file are the same, otherwise those that ReadSongTags returns. It may be called
  /// on several threads at once, and after this object is destroyed.
  ReadTags TagReader() const;

 private:
  struct Stored;

  std::shared_ptr<Stored> stored_;
};

}  // namespace tallow
