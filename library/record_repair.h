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

/// Where nothing goes, see PlacesByNumber.
inline constexpr std::size_t kNobody = static_cast<std::size_t>(-1);

/// Puts records to the places that their numbers name.
///
/// Of two with one number the present one has the place, or else the first; the other one, and one without
/// a number, gets a new place at the end.
///
/// \param numbers of the records; what is below 1 or above `most` counts as no number
/// \param present one element a record
/// \param most    the highest number that counts
/// \returns for each place, element 0 being number 1, which record (from 0) goes there; kNobody for none
std::vector<std::size_t> PlacesByNumber(std::span<const std::int32_t> numbers,
                                        const std::vector<char>& present, std::int32_t most);

/// A number that meant two songs before the numbers were put right: the one that had it, and the one that
/// stood at the place of that number and so was shown and played.
struct ConfusedNumber {
  std::int32_t number = 0;
  std::string
      named;  ///< file name of the song that had the number, and has it now; empty: it is gone
  std::string held;           ///< file name of the song that stood at its place
  std::int32_t held_now = 0;  ///< the number of that song now
};

/// Puts every row to the place that its record number names, so that row i has the number i. A place that
/// nobody names becomes a missing song ("0", "0", "0", number, "2").
///
/// \param most the highest number that counts, see PlacesByNumber
/// \returns the numbers that meant two songs; no value when every row had its place already
std::optional<std::vector<ConfusedNumber>> RepairNumbers(SongTable& table, std::int32_t most);

// What was put right is kept in "Repaired.json", for the jukeboxes that were saved before:
//
//   {"format":"Tallow repaired numbers","version":1,
//    "numbers":[
//   {"number":12,"named":"a.mp3","held":"b.mp3","heldNow":40}],
//    "answers":{"/home/me/mix.juk":"names"}}
//
// "answers" has for each jukebox file of which the user was asked whether its songs are those of their
// "names" or those of their "numbers".

/// The numbers that meant two songs, and what the user said about the jukeboxes that use them.
class RepairedNumbers {
 public:
  enum class Meant { kNames, kNumbers };

  void Set(const std::vector<ConfusedNumber>& numbers);
  /// What is known of a number; null when it always meant one song.
  const ConfusedNumber* Find(std::int32_t number) const;
  bool IsEmpty() const noexcept { return numbers_.empty(); }

  std::optional<Meant> AnswerFor(const std::string& file) const;
  void Answer(const std::string& file, Meant meant);
  void Clear();

  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }
  std::string Encode() const;
  /// Takes over the content of a file.
  /// \throws std::exception saying what is wrong with it; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  std::map<std::int32_t, ConfusedNumber> numbers_;
  std::map<std::string, Meant> answers_;
  bool is_dirty_ = false;
};

}  // namespace tallow
