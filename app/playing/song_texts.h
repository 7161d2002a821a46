// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

namespace tallow {

class Tallow;

/// The texts that name songs which play: title and artist from the details of a song, else its file
/// name. Keeps the texts of the last songs, because a list asks for them often.
class SongTexts {
 public:
  /// \param tallow has to outlive this object
  explicit SongTexts(Tallow& tallow) : tallow_(tallow) {}

  /// "Title - Artist", or "Title" without an artist; else the file name. Empty for a song whose
  /// file is gone.
  std::string Of(std::int32_t song);
  /// Like Of, but asks the details again.
  std::string AskAnew(std::int32_t song);
  /// The details have changed.
  void Forget() { kept_.clear(); }

 private:
  static constexpr std::size_t kMaxKept = 2000;

  std::string Ask(const std::string& path);

  Tallow& tallow_;
  std::unordered_map<std::string, std::string> kept_;  ///< by path
};

}  // namespace tallow
