// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace tallow {

/// The system calls that the library fail_call counts and fails; calls with the same effect share
/// an entry.
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

/// How a call fails: an errno value above 0, or one of these.
enum FaultAction : int {
  kKillProcess = -1,  ///< the process is killed instead of making the call
  kShorten = -2,      ///< a read or write transfers half of the bytes
  kKillHalfway = -3,  ///< a write writes half of the bytes, then the process is killed
};

/// Which calls fail.
enum class FaultReach {
  kOneCall,
  kPath,   ///< from that call on, all calls on the same path fail
  kWrites  ///< from that call on, all calls that need disk space fail; the first write does half
};

/// A call that is to fail.
struct Fault {
  SystemCall call = SystemCall::kOpen;
  const char* path = "";  ///< below the root; for a call with two paths, the first path
  int occurrence = 1;     ///< which call of this kind on this path, from 1
  int action = EIO;
  FaultReach reach = FaultReach::kOneCall;
};

// The library is loaded before all others (LD_PRELOAD). It passes every call on until the program
// calls one of the following functions, which it finds with dlsym. Calls on paths outside the root
// are never counted.

/// Makes one call fail.
/// \param root only paths below it count; ends in a separator; copied, like the fault
using FailCall = void (*)(const char* root, const Fault& fault);
inline constexpr const char* kFailCallName = "TallowFailCall";

/// Records every later call in a file, one line each: the kind, a blank, and the path below the
/// root.
using RecordCalls = void (*)(const char* root, int descriptor);
inline constexpr const char* kRecordCallsName = "TallowRecordCalls";

/// Stops counting and failing calls.
/// \returns whether the call that was to fail has been made
using EndFaults = bool (*)();
inline constexpr const char* kEndFaultsName = "TallowEndFaults";

}  // namespace tallow
