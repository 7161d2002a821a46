// SPDX-License-Identifier: GPL-3.0-or-later
// A library for LD_PRELOAD that makes the disk of a program slow: each call that opens, lists,
// reads or checks a file or folder by its path takes longer by a fixed time. At the end of the
// program it appends a line to a file: the number of calls, the sum of their delays in seconds, and
// the largest number of calls that were delayed at the same time.
//
// fstat is not delayed: a system that opens a file over a network gets its attributes along with
// it. The entries of a folder are read in blocks, so readdir is delayed once for each kBlockBytes.
// Calls that write are not delayed.
//
// Environment:
//   SLOW_DISK_MICROSECONDS  the delay of a call; default 1000
//   SLOW_DISK_REPORT        the file of the report; default: none
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Size of the blocks in which the C library reads the entries of a folder.
constexpr off_t kBlockBytes = 32768;

/// Bytes of the entries of a folder that the thread has read since the last delay. A thread lists
/// one folder after another, so the folder that was listed last is enough.
struct Listing {
  const DIR* folder = nullptr;
  off_t bytes = 0;
};
thread_local Listing listing;

std::atomic<long> calls = 0;
std::atomic<long> current = 0;
std::atomic<long> highest = 0;

long Delay() {
  static const long microseconds = [] {
    const char* const text = std::getenv("SLOW_DISK_MICROSECONDS");
    return text != nullptr ? std::atol(text) : 1000L;
  }();
  return microseconds;
}

void Wait() {
  constexpr long kMicrosecondsASecond = 1'000'000;
  ++calls;
  const long now = ++current;
  for (long seen = highest; seen < now && !highest.compare_exchange_weak(seen, now);) {
  }
  timespec time{Delay() / kMicrosecondsASecond, Delay() % kMicrosecondsASecond * 1000};
  while (nanosleep(&time, &time) != 0) {
  }
  --current;
}

/// The function of the C library that one of this library replaces.
template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Writes the report when the program ends.
struct Report {
  Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report() {
    const char* const path = std::getenv("SLOW_DISK_REPORT");
    std::FILE* const file = path != nullptr ? std::fopen(path, "a") : nullptr;
    if (file == nullptr) return;
    constexpr double kMicrosecondsASecond = 1e6;
    std::fprintf(file, "%ld %.6f %ld\n", calls.load(),
                 static_cast<double>(calls * Delay()) / kMicrosecondsASecond, highest.load());
    std::fclose(file);
  }
};
const Report report;

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  static auto* const next = Next<int(const char*, int, ...)>("open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  Wait();
  return next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  static auto* const next = Next<int(int, const char*, int, ...)>("openat");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  Wait();
  return next(folder, path, flags, mode);
}

ssize_t read(int file, void* bytes, size_t count) {
  static auto* const next = Next<ssize_t(int, void*, size_t)>("read");
  Wait();
  return next(file, bytes, count);
}

ssize_t pread(int file, void* bytes, size_t count, off_t offset) {
  static auto* const next = Next<ssize_t(int, void*, size_t, off_t)>("pread");
  Wait();
  return next(file, bytes, count, offset);
}

int stat(const char* path, struct stat* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat*)>("stat");
  Wait();
  return next(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  static auto* const next = Next<int(const char*, struct stat*)>("lstat");
  Wait();
  return next(path, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
  static auto* const next = Next<int(int, const char*, struct stat*, int)>("fstatat");
  Wait();
  return next(folder, path, status, flags);
}

DIR* opendir(const char* path) {
  static auto* const next = Next<DIR*(const char*)>("opendir");
  Wait();
  DIR* const folder = next(path);
  listing = {folder, kBlockBytes};
  return folder;
}

dirent* readdir(DIR* folder) {
  static auto* const next = Next<dirent*(DIR*)>("readdir");
  if (listing.folder != folder) listing = {folder, kBlockBytes};
  if (listing.bytes >= kBlockBytes) {
    Wait();
    listing.bytes = 0;
  }
  dirent* const entry = next(folder);
  if (entry != nullptr) listing.bytes += entry->d_reclen;
  return entry;
}

}  // extern "C"
