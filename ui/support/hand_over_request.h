// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// What a later program sends to the running one: the files that it was to open.
///
/// All numbers have 4 bytes, the highest first: how many files there are, then of each the length of its path in
/// bytes and the path. Two files, "/a" and "/bc":
///
///   00 00 00 02  00 00 00 02 2F 61  00 00 00 03 2F 62 63
class HandOverRequest {
 public:
  /// The longest request, in bytes. Linux allows a command line of 6 MiB, Windows one of 64 KiB.
  static constexpr std::size_t kMaxBytes = std::size_t{6} << 20;
  /// The most files. Each costs memory of its own, however short its path is.
  static constexpr std::size_t kMaxFiles = 100'000;

  enum class State {
    kPartial,  ///< more has to come
    kWhole,
    kBroken,  ///< no such request, or too large; more does not help
  };

  /// Takes bytes that have come, in pieces of any size. Lengths are not believed before their bytes are there.
  /// \returns what the request is now; nothing changes that any more once it is whole or broken
  State Add(std::string_view bytes);

  /// The paths, once the request is whole.
  const std::vector<std::string>& Files() const noexcept { return files_; }

  /// A request as its bytes.
  static std::string BytesOf(const std::vector<std::string>& files);

 private:
  void TakeFiles();

  State state_ = State::kPartial;
  std::string bytes_;      ///< what has come and is no file yet
  std::size_t taken_ = 0;  ///< of the bytes
  std::size_t come_ = 0;   ///< bytes of the request so far
  bool has_count_ = false;
  std::uint32_t missing_ = 0;  ///< files that have not come yet
  std::vector<std::string> files_;
};

}  // namespace tallow
