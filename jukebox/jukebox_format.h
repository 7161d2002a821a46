// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tallow {

// A jukebox file (*.juk) is JSON in UTF-8:
//
//  {"format":"Tallow jukebox","version":1,
//   "columns":["Name    --        (click to sort)","Key"],
//   "folders":[
//  {"key":1,"text":"All Songs","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[1,2,3]},
//  {"key":2,"text":"Artist","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[]},
//  {"key":3,"text":"ABBA","image":0,"selectedImage":1,"parent":2,"open":false,"songs":[2]}],
//   "names":{
//  "1":"a.mp3",
//  "2":"b.mp3",
//  "3":"c.mp3"}}
//
// Folders are stored in tree order, each after its parent. "key" is the number of a folder in this
// file, from 1. "parent" is the key of the parent folder, 0 at top level. "image" and
// "selectedImage" are the folder's pictures (see FolderImage). "open" is true if the folder is
// expanded. "automatic" is true if the folder is marked as an automatic one (see FindAlbumFolder),
// and is written only then. "songs" are record numbers of the song library, in list order. "names"
// has the file name of each song that is used and whose name is known. It serves to find the song
// again if its record number has changed. "columns" are the headers of the list. The reader ignores
// members with other names.
//
// Once the user has used the modern style, in which several songs may have one file name, a member
// follows that earlier versions ignore: "places" has, by folders that end in a separator, the
// numbers of the songs in "names", each followed by its size in bytes (-1: not known):
//
//   "places":{
//  "/music/":[1,4183022,2,3350101]}}
//
// A file name need not be UTF-8. Each byte that is not part of valid UTF-8 is written as the
// character U+10FE00 plus the byte. Each byte of a character from U+10FE80 to U+10FEFF is written
// in the same way.

/// Why a jukebox file cannot be used.
class JukeboxFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The value of "format".
inline constexpr std::string_view kJukeboxFormat = "Tallow jukebox";

/// The format version that is written. The reader accepts versions 1 to this one.
inline constexpr int kJukeboxVersion = 1;

/// The decoded content of a jukebox file.
struct JukeboxContent {
  struct Folder {
    std::uint32_t key = 0;
    std::string text;
    std::int32_t image = 0;
    std::int32_t selected_image = 0;
    std::uint32_t parent = 0;  ///< 0 at top level
    bool open = false;
    bool automatic = false;
    std::vector<std::int32_t> songs;
  };

  /// The file names of songs, in file order. There may be a million, so they share one string
  /// buffer.
  class Names {
   public:
    struct Name {
      std::int32_t record;
      std::string_view text;
    };
    void Add(std::int32_t record, std::string_view text) {
      places_.push_back({record, text_.size()});
      text_ += text;
    }
    std::size_t size() const noexcept { return places_.size(); }
    /// \param index from 0; the returned text is valid until the next Add
    Name operator[](std::size_t index) const {
      const std::size_t begin = places_[index].begin;
      const std::size_t end = index + 1 < size() ? places_[index + 1].begin : text_.size();
      return {places_[index].record, std::string_view(text_).substr(begin, end - begin)};
    }

   private:
    struct Place {
      std::int32_t record;
      std::size_t begin;
    };
    std::vector<Place> places_;
    std::string text_;
  };

  /// Where the files of songs were, and their sizes.
  class Places {
   public:
    struct Place {
      std::string_view folder;  ///< ends in a separator
      std::int64_t size;        ///< in bytes; -1: not known
    };
    /// Begins a folder, to which Add adds songs.
    void AddFolder(std::string folder) { folders_.push_back(std::move(folder)); }
    /// If a number is added twice, the last place is used. Requires a folder.
    void Add(std::int32_t record, std::int64_t size) {
      songs_[record] = {folders_.size() - 1, size};
    }
    /// Adds a number for the place of another one, if that has one.
    void AddSame(std::int32_t record, std::int32_t other) {
      if (const auto found = songs_.find(other); found != songs_.end())
        songs_.insert_or_assign(record, Song(found->second));
    }
    /// The returned text is valid until the next AddFolder.
    std::optional<Place> Find(std::int32_t record) const {
      const auto found = songs_.find(record);
      if (found == songs_.end()) return std::nullopt;
      return Place{folders_[found->second.folder], found->second.size};
    }

   private:
    struct Song {
      std::size_t folder;  ///< index in folders_
      std::int64_t size;
    };
    std::vector<std::string> folders_;
    std::unordered_map<std::int32_t, Song> songs_;  ///< by record number
  };

  std::vector<std::string> columns;
  std::vector<Folder> folders;
  Names names;
  Places places;  ///< empty in classic files
};

/// Maps record numbers to file names of songs.
using SongNames = std::unordered_map<std::int32_t, std::string>;

/// Where the file of a song was, and its size.
struct SongPlace {
  std::string folder;      ///< ends in a separator
  std::int64_t size = -1;  ///< in bytes; -1: not known
};
/// Maps record numbers to places of songs.
using SongPlaces = std::unordered_map<std::int32_t, SongPlace>;

}  // namespace tallow
