// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// The name of a genre by the number that an ID3v1 tag holds.
///
/// The numbers are those of the ID3v1 list (0 to 79) and its Winamp extensions (80 to 147); 255 is
/// "None". The names are spelled as the jukebox shows them, which is not always the published
/// spelling.
///
/// \returns the empty text for every other number
std::string_view GenreName(std::int32_t id) noexcept;

/// One genre.
class MP3Genra {
 public:
  const std::string& Name() const noexcept { return name_; }
  std::int16_t ID() const noexcept { return id_; }

 private:
  friend class GenraCollection;
  void SetBoth(std::string_view name, std::int16_t id) {
    name_ = name;
    id_ = id;
  }

  std::string name_;
  std::int16_t id_ = 0;
};

/// The genres 0 to 147 and 255 in this order, each under the key "ID" followed by its number: ID0
/// to ID147, and ID255.
class GenraCollection {
 public:
  GenraCollection();

  std::size_t Count() const noexcept { return genres_.size(); }

  /// \param index 1 to Count()
  /// \throws SubscriptError
  const MP3Genra& Item(std::int32_t index) const;

  /// \param key as "ID22"
  /// \throws SubscriptError when there is none
  const MP3Genra& Item(std::string_view key) const;

  auto begin() const noexcept { return genres_.begin(); }
  auto end() const noexcept { return genres_.end(); }

 private:
  std::vector<MP3Genra> genres_;
};

}  // namespace tallow
