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
// "selectedImage" are the folder's pictures (see FolderImage). "open" tells whether the folder is
// expanded. "songs" are record numbers of the song library, in list order. "names" has the file
// name of each song that is used and whose name is known. It serves to find the song again if its
// record number has changed. "columns" are the headers of the list. The reader ignores members with
// other names.
//
// A file name need not be UTF-8. Each byte that is not part of valid UTF-8 is written as the
// character U+10FE00 plus the byte. Each byte of a character from U+10FE80 to U+10FEFF is written
// in the same way.

/// Why a jukebox file cannot be used.
class JukeboxFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

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

  std::vector<std::string> columns;
  std::vector<Folder> folders;
  Names names;
};

/// Maps record numbers to file names of songs.
using SongNames = std::unordered_map<std::int32_t, std::string>;

/// Encodes a jukebox as the bytes of a jukebox file.
///
/// \param absent file names of songs that the library does not have; these are written too
std::string EncodeJukebox(const FolderTree& tree, const std::vector<std::string>& columns,
                          const clsMain& library, const SongNames& absent = {});

/// Returns the names in a file of songs that are absent from the library or missing. They must be
/// kept in case the library gets these songs again.
SongNames AbsentNames(const JukeboxContent& content, const clsMain& library);

/// Parses the bytes of a file. The result satisfies all rules of the format above.
///
/// \throws JukeboxFileError
JukeboxContent DecodeJukebox(std::string_view bytes);

/// Songs of a jukebox that was saved while record numbers were confused: the names in the file
/// denote other songs than the numbers do.
struct ConfusedSongs {
  std::int32_t number = 0;  ///< record number of the first such song
  std::string by_name;      ///< file name that the jukebox has for the number
  std::string by_number;    ///< file name of the song that now has the number
  std::size_t count = 0;    ///< number of such songs
};

/// Asks whether confused songs are those given by the names (true) or by the numbers (false).
/// Returns no value when there is no answer.
using ResolveConfusedSongs = std::function<std::optional<bool>(const ConfusedSongs&)>;

/// The highest placeholder number. Placeholders go down from here. They replace the record number
/// of an entry when neither its number nor its name denotes a song of the library, so that only the
/// file name is known. Such an entry is hidden until the library has a song with that name.
inline constexpr std::int32_t kFirstPlaceholder = clsMain::kFirstPlaceholder;
inline constexpr bool IsNumberOfName(std::int32_t record) { return record <= kFirstPlaceholder; }

/// Links the songs of a jukebox file to the library, by record number and file name.
///
/// For each name in the file:
/// - If the song has returned under a new number, that number is used.
/// - If the number denotes a present song, or a missing song that is remembered, and the file name
///   matches, the number stays.
/// - Otherwise the number becomes that of the only present song with the name, or else of the only
///   remembered missing song with it.
/// - If there is no such song, or several, the number stays when it is a placeholder or a row of
///   the library without a present song. Otherwise the entry gets a placeholder number, see
///   kFirstPlaceholder.
///
/// \param ask called once if numbers were repaired after the jukebox was saved and the jukebox has
///            songs whose numbers were confused; may be empty. Without an answer the names are
///            used.
void RelinkSongs(JukeboxContent& content, const clsMain& library,
                 const ResolveConfusedSongs& ask = {});

/// Adds folders and songs to an empty tree. The entries have no labels yet; their icons show the
/// ranks of the songs.
void FillTree(const JukeboxContent& content, const clsMain& library, FolderTree& tree);

}  // namespace tallow
