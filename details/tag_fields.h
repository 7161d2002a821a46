// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <taglib/tpropertymap.h>

#include "details/song_tags.h"

namespace tallow {

/// Longer texts of tags are cut to this number of bytes, at a character.
inline constexpr std::size_t kMaxTagText = 4096;

/// Collects the fields of a file's tags. The tags are added in the order of their precedence: each
/// fills the fields that are still empty.
class TagFields {
 public:
  /// The values that a tag has under one of TagLib's names of properties.
  using Lookup = std::function<TagLib::StringList(const char* key)>;

  /// Adds a tag that TagLib has read.
  void Add(const TagLib::PropertyMap& properties);
  void Add(const Lookup& lookup);

  /// Adds an ID3v1 tag.
  /// \param block the last 128 bytes of a file; ignored when they are no tag
  void AddId3v1(std::string_view block);

  /// Sets the genre unless it is set.
  void AddGenre(std::string_view name);

  /// Sets the date unless it is set.
  void AddDate(const TagLib::String& date);

  /// Whether any field is set.
  bool HasAny() const;

  SongTags tags;
  std::string comment;
};

/// A text of a tag as SongTags has it: UTF-8, cut at the first NUL and at kMaxTagText, without
/// blanks and control characters at both ends.
std::string CleanTagText(const TagLib::String& text);

/// The name of a genre that an ID3v2 tag gives by number: "17", "(17)"; other texts unchanged.
/// GenreName's spelling, so that songs with ID3v1 and ID3v2 tags get the same genre. TagLib names
/// the numbers that GenreName does not have, and 133, whose name has changed.
std::string GenreOfNumber(const std::string& text);

/// The number at the start of a text: 1 of "1/12"; 0 when there is none or it is too large.
std::int32_t LeadingNumber(std::string_view text) noexcept;

}  // namespace tallow
