// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/mount_table_linux.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "app/search/drive_list.h"
#include "util/path_text.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

/// Splits a line into fields at single blanks.
std::vector<std::string_view> Split(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t blank = line.find(' ');
    fields.push_back(line.substr(0, blank));
    if (blank == std::string_view::npos) return fields;
    line.remove_prefix(blank + 1);
  }
}

/// Decodes the kernel's escapes \ooo for blanks, tabs, line breaks and backslashes.
std::string Unescape(std::string_view field) {
  const auto is_octal = [](char c) { return c >= '0' && c <= '7'; };
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 3 < field.size() && is_octal(field[i + 1]) &&
        is_octal(field[i + 2]) && is_octal(field[i + 3])) {
      text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                (field[i + 3] - '0'));
      i += 3;
    } else {
      text += field[i];
    }
  }
  return text;
}

template <std::size_t kCount>
bool IsOneOf(std::string_view type, const std::array<std::string_view, kCount>& types) noexcept {
  return std::find(types.begin(), types.end(), type) != types.end();
}

constexpr std::array<std::string_view, 28> kPseudo = {
    "autofs",      "binder",     "binfmt_misc",   "bpf",      "cgroup",    "cgroup2",
    "configfs",    "debugfs",    "devpts",        "devtmpfs", "efivarfs",  "fuse.gvfsd-fuse",
    "fuse.portal", "fuse.lxcfs", "fuse.snapfuse", "fusectl",  "hugetlbfs", "mqueue",
    "nfsd",        "nsfs",       "proc",          "pstore",   "resctrl",   "rpc_pipefs",
    "securityfs",  "selinuxfs",  "sysfs",         "tracefs"};

constexpr std::array<std::string_view, 24> kRemote = {"nfs",
                                                      "nfs4",
                                                      "cifs",
                                                      "smb3",
                                                      "smbfs",
                                                      "ncpfs",
                                                      "9p",
                                                      "afs",
                                                      "ceph",
                                                      "coda",
                                                      "lustre",
                                                      "gfs2",
                                                      "ocfs2",
                                                      "glusterfs",
                                                      "fuse.sshfs",
                                                      "fuse.ceph",
                                                      "fuse.ceph-fuse",
                                                      "fuse.glusterfs",
                                                      "fuse.davfs2",
                                                      "fuse.rclone",
                                                      "fuse.s3fs",
                                                      "fuse.curlftpfs",
                                                      "davfs",
                                                      "virtiofs"};

/// File systems on local disks whose source in the kernel's table is not always a block device:
/// file systems of several devices, and those that present a folder of another file system
/// (decrypted, joined).
constexpr std::array<std::string_view, 10> kLocal = {
    "btrfs",      "zfs",        "bcachefs",      "ecryptfs",    "fuse.gocryptfs",
    "fuse.encfs", "fuse.cryfs", "fuse.mergerfs", "fuse.bindfs", "fuse.ntfs-3g"};

constexpr std::array<std::string_view, 2> kDiscs = {"iso9660", "udf"};

constexpr std::array<std::string_view, 3> kProgramImages = {"squashfs", "erofs", "cramfs"};

}  // namespace

std::vector<Mount> ParseMountTable(std::string_view text) {
  // 36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue
  // The first six fields are fixed; optional fields follow up to a lone hyphen.
  constexpr std::size_t kFixedFields = 6;
  std::vector<Mount> mounts;
  for (const std::string_view line : SplitLines(text)) {
    const std::vector<std::string_view> fields = Split(line);
    if (fields.size() < kFixedFields) continue;
    const auto hyphen = std::find(fields.begin() + kFixedFields, fields.end(), "-");
    if (fields.end() - hyphen < 3) continue;
    Mount mount{std::string(fields[2]), Unescape(fields[3]), Unescape(fields[4]),
                Unescape(hyphen[1]), Unescape(hyphen[2])};
    std::erase_if(mounts, [&](const Mount& earlier) { return earlier.point == mount.point; });
    mounts.push_back(std::move(mount));
  }
  return mounts;
}

bool IsPseudoFileSystem(std::string_view type) noexcept { return IsOneOf(type, kPseudo); }

bool IsProgramImage(std::string_view type) noexcept { return IsOneOf(type, kProgramImages); }

int TypeOfMount(const Mount& mount, const BlockDevice& device) noexcept {
  if (mount.point == "/") return kFixedDrive;
  if (IsOneOf(mount.type, kRemote)) return kRemoteDrive;
  if (IsOneOf(mount.type, kDiscs) || IsProgramImage(mount.type)) return kCdRom;
  if (mount.type == "tmpfs" || mount.type == "ramfs") return kRamDisk;
  if (device.removable) return kRemovableDrive;
  if (device.exists || IsOneOf(mount.type, kLocal)) return kFixedDrive;
  return kUnknownDrive;
}

bool IsOnNetwork(const Mount& mount) noexcept {
  // Other FUSE file systems mostly access a network, too.
  return IsOneOf(mount.type, kRemote) ||
         (mount.type.starts_with("fuse.") && !IsOneOf(mount.type, kLocal));
}

MountedVolumes VolumesOf(const std::vector<Mount>& table,
                         const std::function<std::string(const Mount&)>& uuid_of) {
  MountedVolumes volumes;
  for (const Mount& mount : table) {
    const bool automounter = mount.type == "autofs";
    if (IsPseudoFileSystem(mount.type) && !automounter) continue;
    MountedVolume& volume = volumes.emplace_back();
    volume.root = EnsureTrailingBackslash(mount.point);
    volume.automounter = automounter;
    volume.network = IsOnNetwork(mount);
    if (automounter) continue;
    std::string name;
    if (const std::string uuid = uuid_of(mount); !uuid.empty())
      name = "uuid " + uuid;
    else if (IsOneOf(mount.type, kRemote))
      name = "source " + mount.source;
    if (!name.empty()) volume.folder = {std::move(name), EnsureTrailingBackslash(mount.root)};
  }
  return volumes;
}

bool RespondsImmediately(int drive_type) noexcept {
  return drive_type != kRemoteDrive && drive_type != kUnknownDrive;
}

std::vector<Mount> DrivesOf(const std::vector<Mount>& table,
                            const std::function<bool(const std::string&)>& is_folder) {
  std::vector<Mount> drives;
  for (const Mount& mount : table)
    if (!IsPseudoFileSystem(mount.type) &&
        (!RespondsImmediately(TypeOfMount(mount, {.exists = mount.source.starts_with('/')})) ||
         is_folder(mount.point)))
      drives.push_back(mount);
  std::sort(drives.begin(), drives.end(),
            [](const Mount& a, const Mount& b) { return a.point < b.point; });
  std::set<std::pair<std::string, std::string>> parts;
  std::erase_if(
      drives, [&](const Mount& drive) { return !parts.emplace(drive.device, drive.root).second; });
  return drives;
}

}  // namespace tallow
