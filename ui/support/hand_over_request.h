// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// Message that a second instance sends to the running instance: the files to open.
///
/// Every number is a 4-byte big-endian integer. The message consists of the number of files and,
/// for each file, the length of its path in bytes and the path. Two files, "/a" and "/bc":
///
///   00 00 00 02  00 00 00 02 2F 61  00 00 00 03 2F 62 63
class HandOverRequest {
 public:
  /// Maximum size of a request, in bytes. A command line has at most 6 MiB on Linux and 64 KiB on
  /// Windows.
  static constexpr std::size_t kMaxBytes = std::size_t{6} << 20;
  /// Maximum number of files. Each file costs memory, however short its path is.
  static constexpr std::size_t kMaxFiles = 100'000;

  enum class State {
    kPartial,  ///< more bytes are needed
    kComplete,
    kBroken,  ///< malformed or too large; further bytes are ignored
  };

  /// Parses the next bytes of the request, in pieces of any size. Allocates nothing for a length
  /// before that many bytes have arrived.
  /// \returns the state of the request; kComplete and kBroken are final
  State Add(std::string_view bytes);

  /// The paths; complete when the state is kComplete.
  const std::vector<std::string>& Files() const noexcept { return files_; }

  /// Serializes a request.
  static std::string Serialize(const std::vector<std::string>& files);

 private:
  void ParseFiles();

  State state_ = State::kPartial;
  std::string bytes_;               ///< received, not parsed yet
  std::size_t parsed_bytes_ = 0;    ///< number of bytes parsed from the front of bytes_
  std::size_t received_bytes_ = 0;  ///< size of the request so far, in bytes
  bool has_count_ = false;
  std::uint32_t files_left_ = 0;  ///< number of files still to be parsed
  std::vector<std::string> files_;
};

}  // namespace tallow
