// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallow {

class Preferences;

// The choice is stored in the preferences, in these members of "music". Each is a list of roots and
// is stored once it is not empty; a root ends in a separator.
//
// | Member   | Roots                                                              |
// |----------|--------------------------------------------------------------------|
// | folders  | folders that the user has added, in the order of adding            |
// | ticked   | drives that are searched although they are not fixed disks         |
// | unticked | fixed disks and added folders that are not searched                |
// | unread   | ticked drives and added folders that no search has finished so far |

/// Which places the user lets Tallow search for songs. Without a choice these are the fixed disks.
/// Each change is stored at once. Paths are compared as in IsSamePathText.
class MusicChoice {
 public:
  /// \param preferences must outlive this object
  explicit MusicChoice(Preferences& preferences) : preferences_(preferences) {}

  /// Whether the fixed disks, and nothing else, are searched.
  bool IsDefault() const;

  /// The folders that the user has added.
  std::vector<std::string> Folders() const;
  /// The drives that are searched although they are not fixed disks; they may be away.
  std::vector<std::string> TickedDrives() const;

  /// Whether a place is searched.
  ///
  /// \param by_default whether it is searched without a choice: true for fixed disks and for added
  ///                   folders
  bool IsTicked(std::string_view root, bool by_default) const;
  /// Whether the user has chosen that a place is not searched.
  bool IsUnticked(std::string_view root) const;
  void Tick(const std::string& root, bool ticked, bool by_default);

  /// Adds a folder, ticked. An added one is ticked again.
  void AddFolder(const std::string& root);
  void RemoveFolder(std::string_view root);

  /// Whether no search has finished a place since it was ticked or added.
  bool IsUnread(std::string_view root) const;
  /// Call when a search has finished a place.
  void MarkRead(std::string_view root);

 private:
  std::vector<std::string> List(const char* member) const;
  bool Has(const char* member, std::string_view root) const;
  /// Adds a root to a list, or removes it; stores the list if that changes it.
  void Put(const char* member, std::string_view root, bool in_list);

  Preferences& preferences_;
};

}  // namespace tallow
