// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/library_details.h"

#include <mutex>
#include <utility>

#include "details/details_store.h"
#include "details/tag_reader.h"
#include "util/file_system.h"

namespace tallow {

/// The database. Worker threads that were abandoned keep it alive.
struct LibraryDetails::Stored {
  explicit Stored(std::string path_) : path(std::move(path_)) {}

  /// The store, opened by the first call.
  DetailsStore& Store() {
    std::call_once(was_opened, [this] { store.Open(path); });
    return store;
  }

  const std::string path;
  std::once_flag was_opened;
  DetailsStore store;
};

LibraryDetails::LibraryDetails(std::string path)
    : stored_(std::make_shared<Stored>(std::move(path))) {}

LibraryDetails::~LibraryDetails() = default;

ReadTags LibraryDetails::TagReader() const {
  return [stored = stored_](const std::string& path) {
    DetailsStore& store = stored->Store();
    // At the first run nothing is stored, and the disk need not be asked for the stamp.
    if (!store.IsEmpty())
      if (const auto stamp = StampOf(path))
        if (auto details = store.Find(path, *stamp)) return std::move(details->tags);
    return ReadSongTags(path);
  };
}

}  // namespace tallow
