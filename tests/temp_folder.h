// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "util/atomic_file.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {

/// Removes a folder with its content, as far as possible.
///
/// Not std::filesystem::remove_all, which on Windows (GCC 12) never returns if another thread
/// removes one of the files at the same time.
inline void RemoveTree(const std::filesystem::path& path) {
  std::error_code error;
  std::vector<std::filesystem::path> inside;
  for (std::filesystem::directory_iterator at(path, error), end; !error && at != end;
       at.increment(error))
    inside.push_back(at->path());
  for (const std::filesystem::path& entry : inside) {
    std::error_code ignored;
    const bool is_removed = std::filesystem::remove(entry, ignored);
    if (!is_removed && std::filesystem::symlink_status(entry, ignored).type() ==
                           std::filesystem::file_type::directory)
      RemoveTree(entry);
  }
  std::filesystem::remove(path, error);
}

/// A temporary folder, deleted with its content at the end of the scope.
class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> count{0};
    std::random_device random;
    const auto base = std::filesystem::temp_directory_path() /
                      ("tallow-test-" + std::to_string(random()) + "-" + std::to_string(++count));
    path_ = EnsureTrailingBackslash(base.string());
    CreateFolders(path_);
    path_ = EnsureTrailingBackslash(AbsolutePath(path_));
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() { RemoveTree(std::filesystem::path(path_)); }

  /// Ends in a separator.
  const std::string& path() const { return path_; }

  /// The path of a file or folder inside; slashes in the argument become the system's separator.
  std::string operator/(std::string_view inside) const {
    std::string path = path_ + std::string(inside);
    if (kSeparator != '/')
      for (char& c : path)
        if (c == '/') c = kSeparator;
    return path;
  }

  /// Makes a folder inside, and those above it; returns its path, which ends in a separator.
  std::string Folder(std::string_view inside) const {
    std::string path = EnsureTrailingBackslash(*this / inside);
    CreateFolders(path);
    return path;
  }

  /// Makes a file inside, and the folders above it; returns its path.
  std::string File(std::string_view inside, std::string_view content = "x") const {
    std::string path = *this / inside;
    CreateFolders(std::string(FolderOfPath(path)));
    // A file name of maximum length is too long for the temporary name of the atomic write.
    if (NameOfPath(path).size() > 200)
      std::ofstream(std::filesystem::path(path), std::ios::binary) << content;
    else
      WriteFileAtomically(path, content);
    return path;
  }

 private:
  std::string path_;
};

/// A name that no file can have, so the system can neither find such a file nor report that it is
/// absent.
#ifdef _WIN32
inline const std::string kImpossibleName = "a?.mp3";
#else
inline const std::string kImpossibleName = std::string(5000, 'x') + ".mp3";
#endif

/// The system's separator as a text, for paths in portable tests.
inline const std::string kSep(1, kSeparator);

/// Whether file names are case-insensitive on this system.
inline const bool kPathsIgnoreCase = IsSamePathText("a", "A");

}  // namespace tallow
