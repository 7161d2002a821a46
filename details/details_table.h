// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "library/text_pool.h"

namespace tallow {

struct SongDetails;

/// What lists show of a song's details. Texts are UTF-8, and empty when they are not known; numbers
/// are 0 then. The texts are valid until the table that returned them changes.
struct DetailsRow {
  bool known = false;  ///< false: the details were not read yet, and nothing else is set
  std::string_view title = {};
  std::string_view artist = {};
  std::string_view album_artist = {};
  std::string_view album = {};
  std::string_view genre = {};
  std::string_view format = {};  ///< "MP3", "FLAC", ...
  std::int32_t disc = 0;         ///< from 1
  std::int32_t track = 0;        ///< from 1
  std::int32_t year = 0;         ///< four digits
  std::int32_t length_ms = 0;    ///< milliseconds
  std::int32_t bit_rate = 0;     ///< kilobits per second
  std::int32_t modified = 0;     ///< day of the file's time of change, since 1970-01-01 (UTC)

  friend bool operator==(const DetailsRow&, const DetailsRow&) = default;
};

/// The row of details that were read; not known when the file could not be read.
/// \returns a row whose texts are valid as long as the details
DetailsRow RowOf(const SongDetails& details);

/// The details of songs in memory, by record number. A song takes about 45 bytes and its title;
/// artists, albums, genres and formats are stored once for all songs that have them.
class DetailsTable {
 public:
  DetailsTable();

  /// Stores the details of a song, in place of earlier ones. Does nothing when the row is not
  /// known.
  ///
  /// \param record from 1
  /// \returns whether the row has changed
  bool Set(std::int32_t record, const DetailsRow& row);

  /// The details of a song; not known when none were stored. Any record number is allowed.
  DetailsRow Row(std::int32_t record) const noexcept;
  /// Row(record).title, which costs less.
  std::string_view Title(std::int32_t record) const noexcept;
  /// Row(record) without its texts, which costs less.
  DetailsRow Numbers(std::int32_t record) const noexcept;
  bool Knows(std::int32_t record) const noexcept { return Find(record) != nullptr; }

  // The texts that songs share, as handles: equal texts have equal handles, 0 is the empty text. 0
  // for a song that is not known.
  struct SharedTexts {
    TextHandle artist = 0;
    TextHandle album_artist = 0;
    TextHandle album = 0;
    TextHandle genre = 0;
    TextHandle format = 0;

    friend bool operator==(const SharedTexts&, const SharedTexts&) = default;
  };
  SharedTexts Shared(std::int32_t record) const noexcept;
  /// The text of a handle.
  std::string_view Text(TextHandle handle) const noexcept { return pool_->Text(handle); }

  /// The value of Version() after the last change of a song's row; 0 for a song that is not known.
  std::uint32_t ChangedAt(std::int32_t record) const noexcept;
  /// The number of changes so far.
  std::uint32_t Version() const noexcept { return version_; }
  /// Grows when the handles of all texts change.
  std::uint32_t Packings() const noexcept { return packings_; }

  /// One more than the largest record number that was stored.
  std::int32_t Size() const noexcept { return static_cast<std::int32_t>(rows_.size()); }
  /// Approximate memory in bytes.
  std::size_t Bytes() const noexcept;

  void Clear();

 private:
  struct Stored {
    SharedTexts shared;
    TextHandle title = 0;
    std::int32_t length_ms = 0;
    std::int32_t bit_rate = 0;
    std::uint32_t changed_at = 0;  ///< 0: the song is not known
    std::uint16_t modified = 0;    ///< day
    std::uint16_t year = 0;
    std::uint16_t disc = 0;
    std::uint16_t track = 0;

    friend bool operator==(const Stored&, const Stored&) = default;
  };

  /// The handle of a text that is often that of the last song.
  TextHandle Share(std::string_view text, TextHandle last);
  const Stored* Find(std::int32_t record) const noexcept;
  /// Drops the titles that were replaced, once they are more than half of the texts.
  void PackIfWasteful();

  std::unique_ptr<TextPool> pool_;
  std::vector<Stored> rows_;
  SharedTexts last_;        ///< of the last Set
  std::size_t wasted_ = 0;  ///< bytes of titles that were replaced
  std::uint32_t version_ = 0;
  std::uint32_t packings_ = 0;
};

}  // namespace tallow
