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

// Songs whose files have gone are remembered in "Missing.json", so that a file that comes back, here or
// in another folder, is known again. It is JSON in UTF-8, a song a line, the one remembered longest first:
//
//   {"format":"Tallow missing songs","version":1,"songs":[
//   {"number":12,"name":"a.mp3","folder":"/m/abba/","size":4183022,"rank":"7","day":20779,"now":0},
//   {"number":15,"name":"b.mp3","folder":"/m/abba/","size":3350101,"rank":"2","day":20779,"now":481}]}
//
// "number" is the record number that the song had; its row in the library is blank. "size" is in bytes, -1
// where it was not known. "day" counts from 1970-01-01. "now" is the record number that the song has since
// it came back, 0 while it is missing. Texts are written as AppendJsonText writes them.

/// A song whose file has gone.
struct MissingSong {
  std::int32_t number = 0;
  std::string name;
  std::string folder;  ///< ends in a separator
  std::int64_t size = 0;
  std::string rank;
  std::int32_t day = 0;  ///< when it was found missing, see Today()
  std::int32_t now = 0;  ///< the number that it has since it came back; 0 while it is missing
};

/// The songs of the library whose files have gone, in the order in which that was found out.
///
/// Cost: all look-ups are O(1).
class MissingSongs {
 public:
  /// Remembers a song. One that was remembered under the same number is forgotten.
  void Add(MissingSong song);

  /// What is remembered of a number, whether the song has come back or not; null for nothing.
  const MissingSong* Find(std::int32_t number) const;

  /// Whether the song of a number is remembered and has not come back.
  bool IsMissing(std::int32_t number) const;

  /// The number that the song of a number has now: its own for a song that never went, or has not come
  /// back.
  std::int32_t NumberNow(std::int32_t number) const;

  /// Whether a song of a name has not come back.
  bool HasName(std::string_view name) const;

  /// The only song of a name and size that has not come back; null when there is none, or are several.
  /// Names are compared as IsSamePathText does.
  const MissingSong* Only(std::string_view name, std::int64_t size) const;
  /// The only song of a name, of whatever size.
  const MissingSong* OnlyOfName(std::string_view name) const;

  /// A song has come back under another number.
  void CameBack(std::int32_t number, std::int32_t now);

  /// Forgets songs.
  void Forget(const std::function<bool(const MissingSong&)>& whether);
  /// Takes returns back that are no returns.
  void ForgetReturns(const std::function<bool(const MissingSong&)>& whether);

  /// Forgets the oldest songs beyond a number of them.
  void Shrink(std::size_t most);
  void Clear() {
    Forget([](const MissingSong&) { return true; });
  }

  std::size_t size() const noexcept { return songs_.size(); }
  const std::vector<MissingSong>& Songs() const noexcept { return songs_; }

  /// Whether anything has changed since Decode or the last Encode.
  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }

  std::string Encode() const;
  /// Takes over the content of a file.
  /// \throws std::exception saying what is wrong with it; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  void Index();
  const MissingSong* OnlyOf(std::string_view name, const std::int64_t* size) const;

  std::vector<MissingSong> songs_;
  std::unordered_map<std::int32_t, std::size_t> by_number_;
  /// Places of the songs that have not come back, by PathKey of the name.
  std::unordered_multimap<std::string, std::size_t> by_name_;
  bool is_dirty_ = false;
};

}  // namespace tallow
