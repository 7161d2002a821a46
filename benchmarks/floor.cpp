// SPDX-License-Identifier: GPL-3.0-or-later
// The baseline ("floor") for start-up times: plain threads, one unless THREADS is given, that walk
// a tree. Prints the number of files and the seconds it took.
//
// Usage: tallow_floor MUSIC                         tails
//        tallow_floor MUSIC FILE                    stats
//        tallow_floor --threads THREADS WHAT MUSIC
//
//   tails  reads the last 128 bytes of every "*.mp3"
//   stats  gets the status of every "*.mp3", and reads FILE whole
//   names  only lists the folders
//   newer  reads the last 160 bytes of every "*.mp3", where ID3v1 tags and the ends of APE tags
//          are, and the ID3v2 tag at its beginning
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr off_t kTagBytes = 128;
constexpr off_t kFooterBytes = 32;  // of an APE tag
constexpr off_t kHeaderBytes = 10;  // of an ID3v2 tag

std::atomic<long> files = 0;
std::atomic<unsigned long> sum = 0;  // of the bytes read, so that the compiler keeps the reads

void ReadTail(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return;
  struct stat status {};
  char bytes[kTagBytes];
  if (fstat(file, &status) == 0 && status.st_size > kTagBytes &&
      pread(file, bytes, sizeof bytes, status.st_size - kTagBytes) == kTagBytes) {
    ++files;
    sum += static_cast<unsigned char>(bytes[0]);
  }
  close(file);
}

/// The length of the ID3v2 tag that begins with these bytes, without them; 0 when there is none.
std::size_t LengthOfTag(const unsigned char (&header)[kHeaderBytes]) {
  if (std::memcmp(header, "ID3", 3) != 0) return 0;
  std::size_t length = 0;
  for (std::size_t k = 6; k < kHeaderBytes; ++k) length = length << 7U | (header[k] & 0x7FU);
  return length;
}

void ReadNewerTag(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return;
  struct stat status {};
  char end[kTagBytes + kFooterBytes];
  unsigned char header[kHeaderBytes];
  if (fstat(file, &status) == 0 && status.st_size > static_cast<off_t>(sizeof end) &&
      pread(file, header, sizeof header, 0) == static_cast<ssize_t>(sizeof header) &&
      pread(file, end, sizeof end, status.st_size - static_cast<off_t>(sizeof end)) > 0) {
    std::vector<char> tag(LengthOfTag(header));
    if (!tag.empty() && pread(file, tag.data(), tag.size(), kHeaderBytes) > 0)
      sum += static_cast<unsigned char>(tag.front());
    ++files;
    sum += static_cast<unsigned char>(end[0]);
  }
  close(file);
}

void LookAt(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return;
  ++files;
  sum += static_cast<unsigned long>(status.st_size);
}

void ReadAll(const char* path) {
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return;
  std::vector<char> bytes(1 << 20);
  for (;;) {
    const ssize_t got = read(file, bytes.data(), bytes.size());
    if (got <= 0) break;
    sum += static_cast<unsigned char>(bytes[0]);
  }
  close(file);
}

void Count(const std::string& path) {
  ++files;
  sum += path.size();
}

using Visit = void (*)(const std::string&);

/// Visits the files of a folder. \returns its subfolders
std::vector<std::string> List(const std::string& folder, Visit visit) {
  std::vector<std::string> subfolders;
  DIR* const directory = opendir(folder.c_str());
  if (directory == nullptr) return subfolders;
  while (const dirent* const entry = readdir(directory)) {
    const std::size_t length = std::strlen(entry->d_name);
    if (entry->d_type == DT_DIR) {
      if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
        subfolders.push_back(folder + entry->d_name + "/");
    } else if (length >= 4 && strcasecmp(entry->d_name + length - 4, ".mp3") == 0) {
      visit(folder + entry->d_name);
    }
  }
  closedir(directory);
  return subfolders;
}

void Walk(const std::string& folder, Visit visit) {
  for (const std::string& subfolder : List(folder, visit)) Walk(subfolder, visit);
}

/// Walks a tree on several threads, which take the folders from one list.
class ThreadedWalk {
 public:
  ThreadedWalk(const std::string& folder, Visit visit) : visit_(visit), folders_{folder} {}

  void Run(int threads) {
    std::vector<std::thread> running;
    for (int k = 0; k < threads; ++k) running.emplace_back([this] { Work(); });
    for (std::thread& thread : running) thread.join();
  }

 private:
  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return !folders_.empty() || busy_ == 0; });
      if (folders_.empty()) return;
      const std::string folder = std::move(folders_.back());
      folders_.pop_back();
      ++busy_;
      lock.unlock();
      std::vector<std::string> subfolders = List(folder, visit_);
      lock.lock();
      --busy_;
      folders_.insert(folders_.end(), subfolders.rbegin(), subfolders.rend());
      if (!subfolders.empty() || busy_ == 0) changed_.notify_all();
    }
  }

  const Visit visit_;
  std::mutex mutex_;  ///< guards all below
  std::condition_variable changed_;
  std::vector<std::string> folders_;  ///< that no thread has listed
  int busy_ = 0;                      ///< threads that list a folder
};

Visit VisitOf(const std::string& what) {
  if (what == "tails") return &ReadTail;
  if (what == "stats") return &LookAt;
  if (what == "newer") return &ReadNewerTag;
  return &Count;
}

}  // namespace

int main(int argc, char** argv) {
  const bool is_threaded = argc == 5 && std::strcmp(argv[1], "--threads") == 0;
  if (argc != 2 && argc != 3 && !is_threaded) return 2;
  const auto begin = std::chrono::steady_clock::now();
  if (is_threaded)
    ThreadedWalk(std::string(argv[4]) + "/", VisitOf(argv[3])).Run(std::atoi(argv[2]));
  else
    Walk(std::string(argv[1]) + "/", argc == 2 ? &ReadTail : &LookAt);
  if (argc == 3) ReadAll(argv[2]);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  std::printf("%ld %.6f %lu\n", files.load(), took.count(), sum.load());
}
