// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace tallow {

/// The calls of the system that the library fail_call counts and fails, one entry for all that do the same.
enum class SystemCall {
  kOpen,        ///< open, openat, and their 64-bit names
  kRead,        ///< read, pread
  kStat,        ///< stat, lstat, fstat, fstatat, statx
  kWrite,       ///< write, pwrite
  kSync,        ///< fsync, fdatasync
  kRename,      ///< rename, renameat
  kMakeFolder,  ///< mkdir, mkdirat
  kUnlink,      ///< unlink, unlinkat
  kClose,
  kTruncate,  ///< ftruncate
  kLink,      ///< link, symlink
  kOpenList,  ///< opendir
  kReadList,  ///< readdir
  kAccess,    ///< access, faccessat
  kMode,      ///< chmod, fchmod
  kReadLink,  ///< readlink
  kResolve,   ///< realpath
};

inline constexpr std::array<std::string_view, 17> kSystemCalls = {
    "open",      "read", "stat",    "write",   "fsync",  "rename", "mkdir",    "unlink",  "close",
    "ftruncate", "link", "opendir", "readdir", "access", "chmod",  "readlink", "realpath"};

/// What becomes of a call: an error number above 0, or one of these.
enum FaultAction : int {
  kKillProcess = -1,  ///< the process is killed in place of the call
  kShorten = -2,      ///< a read or a write does half of what it was asked for
  kKillHalfway = -3,  ///< a write does half, then the process is killed
};

/// How far a fault reaches.
enum class FaultReach {
  kOneCall,
  kPath,  ///< from that call on, all calls on its path fail
  kWrites  ///< from that call on, all calls fail that need room on the disk; the first write does half
};

/// One call that is to fail.
struct Fault {
  SystemCall call = SystemCall::kOpen;
  const char* path = "";  ///< below the root; a call that has two paths goes by the first
  int occurrence = 1;     ///< which of the calls of this kind on this path, from 1
  int action = EIO;
  FaultReach reach = FaultReach::kOneCall;
};

// The library is loaded before all others (LD_PRELOAD), and passes every call on until one of these is
// called, which a program finds by dlsym. Calls on paths that do not begin with the root never count.

/// From now on one call fails.
/// \param root begins the paths that count, and ends in a separator; copied, like the fault
using FailCall = void (*)(const char* root, const Fault& fault);
inline constexpr const char* kFailCallName = "TallowFailCall";

/// From now on every call is written to a file: the kind, a blank, the path below the root, a line end.
using RecordCalls = void (*)(const char* root, int descriptor);
inline constexpr const char* kRecordCallsName = "TallowRecordCalls";

/// From now on nothing is counted and nothing fails.
/// \returns whether the call that was to fail has come
using EndFaults = bool (*)();
inline constexpr const char* kEndFaultsName = "TallowEndFaults";

}  // namespace tallow
