// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "library/mp3_genra.h"
#include "library/tag_layout.h"
#include "util/file_system.h"

namespace tallow {

/// The last 128 bytes of a file, not parsed yet. Reading is the slow part, so worker threads can do
/// it in advance.
struct TagBlock {
  TailResult result = TailResult::kFailed;
  std::array<char, kTagBytes> bytes;
};

/// Reads the last 128 bytes of a file longer than 128 bytes.
TagBlock ReadTagBlock(const std::string& path);

/// Reads and writes the ID3v1 tag of one MP3 file.
class MP3TagEditor {
 public:
  MP3TagEditor();

  /// All genres.
  const GenraCollection& GenraList() const noexcept { return genra_list_; }

  /// Writes the fields as the ID3v1 tag of the file `filename`.
  ///
  /// If TagExists, the tag replaces the last 128 bytes. Otherwise the tag's first byte overwrites
  /// the last byte of the file, so that the file grows by 127 bytes; this position is intended.
  /// TagExists does not change.
  /// \returns true
  /// \throws FileError when the file cannot be opened or written, or is too short for the tag's
  /// position
  /// \throws OverflowError when the genre number does not fit in a byte; nothing is written then
  bool SaveMP3();

  /// Clears all fields and reads the tag of a file.
  ///
  /// \returns false when the file cannot be opened or read; true even when it has no tag
  bool LoadMP3(std::string_view path);

  /// LoadMP3 with a tag block that was read before.
  bool LoadMP3(std::string_view path, const TagBlock& block);

  const std::string& filename() const noexcept { return filename_; }
  void filename(std::string_view path) { filename_ = path; }

  /// The genre number; 0 to 255 when read from a tag.
  std::int16_t Genra() const noexcept { return genra_; }
  void Genra(std::int16_t number) noexcept { genra_ = number; }

  // The text fields. Reading removes blanks at both ends and keeps NULs; assigning cuts to 30 bytes
  // (the year: 4) and pads.
  std::string Comment() const { return Read(comment_); }
  void Comment(std::string_view text) { PadOrCut(comment_, text); }
  std::string Year() const { return Read(year_); }
  void Year(std::string_view text) { PadOrCut(year_, text); }
  std::string Album() const { return Read(album_); }
  void Album(std::string_view text) { PadOrCut(album_, text); }
  std::string Artist() const { return Read(artist_); }
  void Artist(std::string_view text) { PadOrCut(artist_, text); }
  std::string Title() const { return Read(title_); }
  void Title(std::string_view text) { PadOrCut(title_, text); }

  bool TagExists() const noexcept { return tag_exists_; }
  void TagExists(bool exists) noexcept { tag_exists_ = exists; }

  /// The name of a genre number; empty when the number has no name.
  std::string GenraLookupByID(std::int16_t id) const { return std::string(GenreName(id)); }

 private:
  /// A text field with its fixed length in the tag.
  template <std::size_t kLength>
  using Field = std::array<char, kLength>;

  void ClearFields();
  template <std::size_t kLength>
  static std::string Read(const Field<kLength>& field);
  template <std::size_t kLength>
  static void PadOrCut(Field<kLength>& field, std::string_view text);

  GenraCollection genra_list_;
  std::string filename_;
  bool tag_exists_ = false;
  Field<30> title_;
  Field<30> artist_;
  Field<30> album_;
  Field<4> year_;
  Field<30> comment_;
  std::int16_t genra_ = 0;
};

}  // namespace tallow
