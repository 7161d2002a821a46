// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that no disk fault and no damaged file loses user data; see docs/reliability.md.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>

#include "tests/faults/fault_matrix.h"
#include "tests/faults/mutations.h"

namespace tallow {
namespace {

constexpr const char* kUsage =
    "Usage: tallow_fault_tests [--every N] [--scenario NAME] [--case TEXT] [--jobs N] "
    "[--markdown]\n";

/// The folder for the worlds: in memory if the system has such a folder, because each case writes
/// many files.
std::filesystem::path PlaceForWorlds() {
  const std::filesystem::path memory = "/dev/shm";
  if (std::getenv("TMPDIR") == nullptr && access(memory.c_str(), W_OK | X_OK) == 0) return memory;
  return std::filesystem::canonical(std::filesystem::temp_directory_path());
}

/// The process ID in ten digits: files contain the path, and equal lengths put the damage at the
/// same bytes in each run.
std::string ProcessNumber() {
  constexpr std::size_t kDigits = 10;
  const std::string number = std::to_string(getpid());
  return std::string(kDigits - std::min(kDigits, number.size()), '0') + number;
}

/// A temporary folder for the worlds. Also drops the rights of root, which would ignore file
/// permissions.
class TestFolder {
 public:
  TestFolder() : path_((PlaceForWorlds() / ("tallow-faults-" + ProcessNumber())).string() + "/") {
    std::filesystem::create_directories(path_);
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && (chown(path_.c_str(), kNobody, kNobody) != 0 || setgid(kNobody) != 0 ||
                           setuid(kNobody) != 0))
      throw std::runtime_error("the rights of root cannot be given up");
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
};

int Run(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  MatrixChoice matrix;
  MutationChoice mutations;
  matrix.jobs = mutations.jobs =
      static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
  for (int k = 2; k < argc; ++k) {
    const std::string option = argv[k];
    if (option == "--markdown" || option == "--big") {
      matrix.markdown = mutations.big = true;
      continue;
    }
    const char* const value = k + 1 < argc ? argv[++k] : nullptr;
    if (value == nullptr) throw std::runtime_error(kUsage);
    if (option == "--every")
      matrix.every = std::atoi(value);
    else if (option == "--of-each")
      mutations.of_each = std::atoi(value);
    else if (option == "--jobs")
      matrix.jobs = mutations.jobs = std::atoi(value);
    else if (option == "--scenario")
      matrix.scenario = value;
    else if (option == "--case")
      matrix.of_case = mutations.of_case = value;
    else
      throw std::runtime_error(kUsage);
  }
  const TestFolder folder;
  if (command == "faults") return RunFaultMatrix(folder.path(), matrix) ? 0 : 1;
  if (command == "damage") return RunMutations(folder.path(), mutations) ? 0 : 1;
  throw std::runtime_error(kUsage);
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  try {
    return tallow::Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
