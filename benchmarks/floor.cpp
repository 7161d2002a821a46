// SPDX-License-Identifier: GPL-3.0-or-later
// The baseline ("floor") for start-up times: one thread that walks a tree and reads the last 128
// bytes of every "*.mp3". With FILE given, it only stats every "*.mp3", and reads FILE whole.
// Prints the number of files and the seconds it took.
//
// Usage: tallow_floor MUSIC [FILE]
#include <chrono>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr off_t kTagBytes = 128;

long files = 0;
unsigned long sum = 0;  // of the bytes read, so that the compiler cannot remove the reads

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

void Walk(const std::string& folder, void (*visit)(const std::string&)) {
  DIR* const directory = opendir(folder.c_str());
  if (directory == nullptr) return;
  std::vector<std::string> subfolders;
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
  for (const std::string& subfolder : subfolders) Walk(subfolder, visit);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) return 2;
  const auto begin = std::chrono::steady_clock::now();
  Walk(std::string(argv[1]) + "/", argc == 2 ? &ReadTail : &LookAt);
  if (argc == 3) ReadAll(argv[2]);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  std::printf("%ld %.6f %lu\n", files, took.count(), sum);
}
