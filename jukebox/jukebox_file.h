// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/cls_main.h"

namespace tallow {

class FolderTree;

// A jukebox file (*.juk) is JSON in UTF-8:
//
//   {"format":"Tallow jukebox","version":1,
//    "columns":["Name    --        (click to sort)","Key"],
//    "folders":[
//   {"key":1,"text":"All Songs","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[1,2,3]},
//   {"key":2,"text":"Artist","image":0,"selectedImage":1,"parent":0,"open":true,"songs":[]},
//   {"key":3,"text":"ABBA","image":0,"selectedImage":1,"parent":2,"open":false,"songs":[2]}],
//    "names":{
//   "1":"a.mp3",
//   "2":"b.mp3",
//   "3":"c.mp3"}}
//
// Folders come in the order of the tree, each behind the one above it. "key" is a folder's number in this
// file, from 1; "parent" is the key of the folder above, 0 at top level. "image" and "selectedImage" are
// its pictures (see FolderImage), "open" is whether it is shown with the folders below it. "songs" are
// record numbers of the song library, in list order. "names" has the file name of each song that is used and
// known, to find it again should it have got another number. "columns" are the headers of the list. Members of
// other names are passed over.
//
// A file name need not be UTF-8. A byte that is no part of valid UTF-8 stands as the character U+10FE00
// plus the byte, and so does each byte of a character from U+10FE80 to U+10FEFF.

/// Why a jukebox file cannot be used.
class JukeboxFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The version of the format that is written. Older ones would still be read; newer ones are not.
inline constexpr int kJukeboxVersion = 1;

/// What a jukebox file holds.
struct JukeboxContent {
  struct Folder {
    std::uint32_t key = 0;
    std::string text;
    std::int32_t image = 0;
    std::int32_t selected_image = 0;
    std::uint32_t parent = 0;  ///< 0 at top level
    bool open = false;
    std::vector<std::int32_t> songs;
  };

  /// The file names of songs, in the order of the file. There may be a million, so they share one text.
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
    /// \param index from 0; the text holds until a name is added
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

  std::vector<std::string> columns;
  std::vector<Folder> folders;
  Names names;
};

/// The file names of songs by their record numbers.
using SongNames = std::unordered_map<std::int32_t, std::string>;

/// A jukebox as the bytes of a file.
///
/// \param absent names of songs that the library does not have, which are written as well
std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library, const SongNames& absent = {});

/// The names that a file has of songs which the library does not have, or has as missing. They have to be
/// kept for when it has them again.
SongNames AbsentNames(const JukeboxContent& content, const clsMain& library);

/// Reads the bytes of a file. What it gives obeys every rule above.
///
/// \throws JukeboxFileError
JukeboxContent DecodeJukebox(std::string_view bytes);

/// Songs of a jukebox that was saved while numbers were confused: its names say one song, its numbers
/// another.
struct ConfusedSongs {
  std::int32_t number = 0;  ///< of the first of them
  std::string by_name;      ///< file name of the song that the jukebox names
  std::string by_number;    ///< file name of the song that has the number
  std::size_t count = 0;    ///< how many there are in all
};

/// Asks whether confused songs are those that the names say (true) or those that the numbers say (false);
/// no value where nobody answers.
using AskWhichSongs = std::function<std::optional<bool>(const ConfusedSongs&)>;

/// The first of the numbers, going down, that an entry has of which only the file name is known: neither its
/// number nor its name is that of a song of the library. Nothing is shown of it until there is one.
inline constexpr std::int32_t kFirstNumberOfName = clsMain::kFirstNumberOfName;
inline constexpr bool IsNumberOfName(std::int32_t record) { return record <= kFirstNumberOfName; }

/// Links songs to the library by their numbers and file names.
///
/// A number whose song came back under another number becomes that one. A number whose song is there, or is
/// missing and remembered, stays when the file name is that of the song. Every other one becomes that of the
/// only song of the name that is there, or else of the only missing one that is remembered. Where there is
/// none, or are several, it stays if no other song has it, and else becomes a number that stands for the
/// name alone.
///
/// \param ask is called once when numbers were put right since the jukebox was saved and it names songs that
///        stood at the place of another one's number; may be empty. Without an answer the names count.
void RelinkSongs(JukeboxContent& content, const clsMain& library, const AskWhichSongs& ask = {});

/// Puts folders and songs into a tree, which has to be empty. The songs have no labels yet, and the
/// pictures of their ranks.
void FillTree(const JukeboxContent& content, const clsMain& library, FolderTree& tree);

}  // namespace tallow
