// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "app/search/drive_list.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

class LetteredDrives : public DriveList {
 public:
  std::string GetLogicalDriveList() const override {
    const DWORD needed = GetLogicalDriveStringsW(0, nullptr);
    std::wstring buffer(needed, L'\0');
    const DWORD length = GetLogicalDriveStringsW(needed, buffer.data());
    if (length == 0 || length > needed) return {};
    // Each root ends with a NUL. The length does not include the final NUL.
    buffer.resize(length);
    return FromWide(buffer) + '\0';
  }

  int TypeOf(const std::string& root) const override {
    return static_cast<int>(GetDriveTypeW(ToWide(root).c_str()));
  }

  int ListedTypeOf(const std::string& root) const override { return TypeOf(root); }

  // A volume mounted in a folder is a junction on Windows, which a walk leaves for later like a
  // link.
  bool IsMountPoint(const std::string& /*folder*/) const override { return false; }
  bool MayFollow(const std::string& /*linked_folder*/) const override { return true; }
};

}  // namespace

std::unique_ptr<DriveList> SystemDrives() { return std::make_unique<LetteredDrives>(); }

}  // namespace tallow
