// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "library/song_table.h"

namespace tallow {

/// The index for a place without a record, see PlacesByNumber.
inline constexpr std::size_t kNoRecord = static_cast<std::size_t>(-1);

/// Computes which record belongs at which place, so that place and record number agree.
///
/// Of two records with the same number, the present record gets the place, or else the first. The
/// other record, and a record without a valid number, gets a new place at the end.
///
/// \param numbers    of the records; a number below 1 or above `max_number` is invalid
/// \param present    one element per record
/// \param max_number the highest valid number
/// \returns for each place, element 0 being number 1, the index of its record (from 0); kNoRecord
/// for none
std::vector<std::size_t> PlacesByNumber(std::span<const std::int32_t> numbers,
                                        const std::vector<char>& present, std::int32_t max_number);

/// A record number that was ambiguous before the repair: it was the number of one song, but another
/// song was in that row and so was shown and played.
struct ConfusedNumber {
  std::int32_t number = 0;
  /// File name of the song that had the number, and has it now; empty when the song is gone.
  std::string named;
  std::string held;           ///< file name of the song in the row of that number
  std::int32_t held_now = 0;  ///< the number of that song now
};

/// Moves every row to the place of its record number, so that row i has the number i. A place
/// without a record becomes a missing song ("0", "0", "0", number, "2").
///
/// \param max_number the highest valid number, see PlacesByNumber
/// \returns the ambiguous numbers; no value when every row was at its place already
std::optional<std::vector<ConfusedNumber>> RepairNumbers(SongTable& table, std::int32_t max_number);

// The repaired numbers are stored in "Repaired.json", for jukeboxes saved before the repair:
//
//   {"format":"Tallow repaired numbers","version":1,
//    "numbers":[
//   {"number":12,"named":"a.mp3","held":"b.mp3","heldNow":40}],
//    "answers":{"/home/me/mix.juk":"names"}}
//
// "answers" stores the user's answer for a jukebox file: "names" if its songs are those of their
// file names, "numbers" if they are those of their record numbers.

/// The ambiguous record numbers, and the user's answers for the jukeboxes that contain them.
class RepairedNumbers {
 public:
  enum class Meant { kNames, kNumbers };

  void Set(const std::vector<ConfusedNumber>& numbers);
  /// The entry of a number; null when the number was never ambiguous.
  const ConfusedNumber* Find(std::int32_t number) const;
  bool IsEmpty() const noexcept { return numbers_.empty(); }

  std::optional<Meant> AnswerFor(const std::string& file) const;
  void Answer(const std::string& file, Meant meant);
  void Clear();

  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }
  std::string Encode() const;
  /// Parses the content of the file.
  /// \throws std::exception describing the error; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  std::map<std::int32_t, ConfusedNumber> numbers_;
  std::map<std::string, Meant> answers_;
  bool is_dirty_ = false;
};

}  // namespace tallow
