// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// The name of a genre by its number in an ID3v1 tag.
///
/// The numbers are those of the ID3v1 list (0 to 79) and its Winamp extensions (80 to 147); 255 is
/// "None". The spelling is that of the jukebox, which sometimes differs from the published lists.
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

/// The genres 0 to 147 and 255 in this order. The key of each is "ID" followed by its number: ID0
/// to ID147, and ID255.
class GenraCollection {
 public:
  GenraCollection();

  std::size_t Count() const noexcept { return genres_.size(); }

  /// The genre at an index.
  /// \param index 1 to Count()
  /// \throws SubscriptError
  const MP3Genra& Item(std::int32_t index) const;

  /// The genre with a key.
  /// \param key for example "ID22"
  /// \throws SubscriptError when there is no such key
  const MP3Genra& Item(std::string_view key) const;

  auto begin() const noexcept { return genres_.begin(); }
  auto end() const noexcept { return genres_.end(); }

 private:
  std::vector<MP3Genra> genres_;
};

}  // namespace tallow
