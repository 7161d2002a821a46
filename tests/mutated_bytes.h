// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>

namespace tallow {

/// Damages the bytes of a file, in the same ways at each run. Most damage is near the start and the
/// end, where the tags and the lengths are.
class Mutator {
 public:
  explicit Mutator(unsigned seed) : random_(seed) {}

  /// Returns a copy with one to six changes: flipped bits, overwritten bytes and lengths, removed,
  /// zeroed, repeated and exchanged ranges, and an early end.
  std::string operator()(std::string bytes) {
    for (std::size_t left = 1 + Below(6); left > 0 && !bytes.empty(); --left) Change(bytes);
    return bytes;
  }

  /// A random number.
  /// \param end larger than the number; not 0
  std::size_t Below(std::size_t end) { return random_() % end; }

 private:
  /// A position in the bytes.
  std::size_t Place(const std::string& bytes) {
    constexpr std::size_t kEdge = 600;
    const std::size_t edge = std::min(bytes.size(), kEdge);
    switch (Below(4)) {
      case 0:
        return Below(bytes.size());
      case 1:
        return bytes.size() - 1 - Below(edge);
      default:
        return Below(edge);
    }
  }

  /// Overwrites two to eight bytes with a number that may be a length.
  void PutLength(std::string& bytes) {
    const std::array<std::uint64_t, 10> kLengths{
        0,        1, 7, 0x7F, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, bytes.size(),
        random_()};
    std::uint64_t length = kLengths[Below(kLengths.size())];
    const std::size_t at = Place(bytes);
    const std::size_t count = std::min<std::size_t>(std::size_t{2} << Below(3), bytes.size() - at);
    const bool big_endian = Below(2) == 0;
    for (std::size_t k = 0; k < count; ++k, length >>= 8U)
      bytes[at + (big_endian ? count - 1 - k : k)] = static_cast<char>(length & 0xFFU);
  }

  /// Exchanges two ranges that follow each other.
  void Exchange(std::string& bytes) {
    const std::size_t begin = Place(bytes);
    const std::size_t end = std::min(bytes.size(), begin + 2 + Below(400));
    const std::size_t middle = begin + Below(end - begin);
    const auto at = [&](std::size_t place) {
      return bytes.begin() + static_cast<std::ptrdiff_t>(place);
    };
    std::rotate(at(begin), at(middle), at(end));
  }

  void Change(std::string& bytes) {
    const std::size_t at = Place(bytes);
    switch (Below(9)) {
      case 0:
        bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1U << Below(8)));
        break;
      case 1:
        bytes[at] = static_cast<char>(random_());
        break;
      case 2:
      case 3:
        PutLength(bytes);
        break;
      case 4:
        bytes.erase(at, 1 + Below(40));
        break;
      case 5:
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                    std::min(bytes.size() - at, 1 + Below(200)), '\0');
        break;
      case 6:
        bytes.insert(Place(bytes), bytes.substr(at, 1 + Below(2000)));
        break;
      case 7:
        Exchange(bytes);
        break;
      default:
        if (Below(4) == 0) bytes.resize(at);
    }
  }

  std::mt19937 random_;
};

}  // namespace tallow
