// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tallow {

// Missing songs are stored in "Missing.json", so that a song is recognized when its file comes
// back, in the same folder or another. The file is JSON in UTF-8, one song per line, oldest entry
// first:
//
//   {"format":"Tallow missing songs","version":1,"namesakes":true,"songs":[
//   {"number":12,"name":"a.mp3","folder":"/m/","size":4183022,"rank":"7","day":20779,"now":0},
//   {"number":15,"name":"b.mp3","folder":"/m/","size":3350101,"rank":"2","day":20779,"now":481}]}
//
// "number" is the song's old record number; its row in the library is blank. "size" is in bytes, -1
// when it was not known. "day" counts from 1970-01-01. "now" is the song's new record number since
// it came back, 0 while it is missing. "namesakes" is MissingSongs::MayHaveNamesakes, and may be
// absent, which means false. Texts are encoded by AppendJsonText.

/// A song whose file is gone, or was gone and has come back.
struct MissingSong {
  std::int32_t number = 0;
  std::string name;
  std::string folder;  ///< ends in a separator
  std::int64_t size = 0;
  std::string rank;
  std::int32_t day = 0;  ///< when it was found missing, see Today()
  std::int32_t now = 0;  ///< the new record number; 0 while the song is missing
};

/// The missing songs of the library, in the order in which they were found missing, including songs
/// that have come back since.
///
/// Cost: all lookups are O(1).
class MissingSongs {
 public:
  /// Adds a song; replaces an entry with the same number.
  void Add(MissingSong song);

  /// The entry of a record number, even if the song has come back; null when there is none.
  const MissingSong* Find(std::int32_t number) const;

  /// Whether the song with a record number has an entry and has not come back.
  bool IsMissing(std::int32_t number) const;

  /// The current number of a song: the number itself if the song was never missing or has not come
  /// back.
  std::int32_t NumberNow(std::int32_t number) const;

  /// Whether any song of that name is missing.
  bool HasName(std::string_view name) const;

  /// The only missing song with a name and size; null when there is none, or more than one. Names
  /// are compared as by IsSamePathText.
  const MissingSong* Only(std::string_view name, std::int64_t size) const;
  /// The missing song with a name that was in the folder, whatever its size; null when there is
  /// none.
  const MissingSong* In(std::string_view folder, std::string_view name) const;
  /// The only missing song with a name, whatever its size; null when there is none, or more than
  /// one.
  const MissingSong* OnlyOfName(std::string_view name) const;

  /// Records that a song has come back with a new record number.
  void CameBack(std::int32_t number, std::int32_t now);

  /// Removes the entries for which the predicate returns true.
  void Forget(const std::function<bool(const MissingSong&)>& predicate);
  /// Marks songs as missing again that had come back, where the predicate returns true.
  void ForgetReturns(const std::function<bool(const MissingSong&)>& predicate);

  /// Removes the oldest entries until at most this number is left.
  void Shrink(std::size_t max_size);
  void Clear() {
    Forget([](const MissingSong&) { return true; });
  }

  std::size_t size() const noexcept { return songs_.size(); }
  const std::vector<MissingSong>& Songs() const noexcept { return songs_; }

  /// Whether the library may hold songs that a style sets aside, present or missing: several of one
  /// file name, or songs of other formats. Clear keeps this.
  bool MayHaveNamesakes() const noexcept { return has_namesakes_; }
  /// From now on MayHaveNamesakes is true, whatever Decode reads.
  void ExpectNamesakes() noexcept;

  /// Whether anything has changed since Decode or MarkSaved.
  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }

  std::string Encode() const;
  /// Parses the content of the file.
  /// \throws std::exception describing the error; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  void Index();
  const MissingSong* OnlyOf(std::string_view name, const std::int64_t* size) const;

  std::vector<MissingSong> songs_;
  std::unordered_map<std::int32_t, std::size_t> by_number_;
  /// Indexes in songs_ of the songs that have not come back, by PathKey of the name.
  std::unordered_multimap<std::string, std::size_t> by_name_;
  bool is_dirty_ = false;
  bool has_namesakes_ = false;
};

}  // namespace tallow
