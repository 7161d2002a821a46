// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_list.h"

#include <utility>

#include "util/file_system.h"
#include "util/like.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

class GivenDriveList : public DriveList {
 public:
  GivenDriveList(const std::vector<std::string>& folders, std::unique_ptr<DriveList> system)
      : system_(std::move(system)) {
    for (const std::string& folder : folders) list_.append(EnsureTrailingBackslash(folder)) += '\0';
    list_ += '\0';
  }

  std::string GetLogicalDriveList() const override { return list_; }
  int TypeOf(const std::string& root) const override {
    // A drive that cannot be accessed is kept as fixed: the search then reports the problem.
    return StateOfFolder(root) != FolderState::kNotThere ? kFixedDrive : kNoDrive;
  }
  int ListedTypeOf(const std::string& /*root*/) const override { return kFixedDrive; }
  bool IsMountPoint(const std::string& folder) const override {
    return system_->IsMountPoint(folder);
  }
  bool MayFollow(const std::string& linked_folder) const override {
    return system_->MayFollow(linked_folder);
  }

 private:
  std::string list_;
  std::unique_ptr<DriveList> system_;
};

}  // namespace

std::unique_ptr<DriveList> GivenDrives(const std::vector<std::string>& folders) {
  return std::make_unique<GivenDriveList>(folders, SystemDrives());
}

std::string NextDriveFromList(std::string& list) {
  const std::size_t end = list.find('\0');
  if (end == std::string::npos) return {};
  std::string root = list.substr(0, end);
  list.erase(0, end + 1);
  return root;
}

bool IsEndOfDriveList(std::string_view list) noexcept {
  // Without this check, the loop over a list without any NUL would not end.
  return list.find('\0') == std::string_view::npos || list == std::string_view("\0", 1);
}

std::string_view DescribeDriveType(int type, std::string_view root) noexcept {
  switch (type) {
    case kUnknownDrive:
      return "The drive type cannot be determined";
    case kNoDrive:
      return "The root directory does not exist";
    case kRemovableDrive:
      return root.starts_with('a') || root.starts_with('b') ? "Floppy drive" : "Removable drive";
    case kFixedDrive:
      return "Hard drive; can not be removed";
    case kRemoteDrive:
      return "Remote (network) drive";
    case kCdRom:
      return "CD-ROM drive";
    case kRamDisk:
      return "RAM disk";
    default:
      return {};
  }
}

bool IsSearched(std::string_view drive_type_text) {
  return Like(ToLower(drive_type_text), "*hard*");
}

}  // namespace tallow
