// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <memory>
#include <string>

#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"

namespace tallow {

/// Songs with two tags: an ID3v1 tag in the file, and newer tags that a function returns.
class ModernFilingTest : public LibraryTest {
 protected:
  using TagMap = std::map<std::string, SongTags>;

  /// Creates a song; returns its row.
  std::int32_t Song(SongTags newer, const TagTexts& id3v1 = {}) {
    const std::int32_t row = library.UBoundOfMp3Array() + 1;
    const std::string name = std::to_string(row) + ".mp3";
    music.File(name, Audio(300) + Tag(id3v1));
    AddSong(music.path(), name);
    newer.found = true;
    (*tags)[library.Song(row).Path()] = newer;
    return row;
  }
  SongTags& TagsOf(std::int32_t row) { return (*tags)[library.Song(row).Path()]; }

  /// Reads the newer tags; other files cannot be read.
  ReadTags Reader() const {
    return [tags = tags](const std::string& path) {
      const auto found = tags->find(path);
      return found == tags->end() ? SongTags{.unread = true} : found->second;
    };
  }

  /// Adds all automatic folders, "Album" only if asked for.
  static void MakeFolders(Jukebox& jukebox, bool album = true) {
    FolderTree& tree = jukebox.Nodes();
    for (const char* const text : {"All Songs", "Artist", "Year", "Genre", "New", "Decades"})
      tree.AddChild(nullptr, text);
    for (const char* const text :
         {"20's", "30's", "40's", "50's", "60's", "70's", "80's", "90's", "00's"})
      tree.AddChild(tree.Find("Decades"), text);
    if (album) tree.AddChild(nullptr, "Album").Automatic(true);
  }

  bool Fill(const FilingProgress& progress = {}) {
    Jukebox* const windows[] = {&jukebox};
    return FillAutomaticFolders(kFillNewToo, false, {}, library, windows, nullptr, progress,
                                Reader());
  }

  /// The folder with a path such as "Artist/ABBA"; null when there is none.
  Folder* At(const std::string& path) {
    const std::size_t slash = path.find('/');
    Folder* const top = jukebox.Nodes().Find(path.substr(0, slash));
    if (top == nullptr || slash == std::string::npos) return top;
    return jukebox.Nodes().Find(path.substr(slash + 1), top);
  }
  /// The record numbers in a folder; "none" when the folder does not exist.
  std::string In(const std::string& path) {
    const Folder* const folder = At(path);
    if (folder == nullptr) return "none";
    std::string records;
    for (const SongEntry& entry : folder->Items())
      records += (records.empty() ? "" : " ") + std::to_string(entry.SubItem());
    return records;
  }
  /// The texts of the direct subfolders of a folder.
  std::string Below(const std::string& path) {
    std::string texts;
    for (Folder* child = At(path)->Child(); child != nullptr; child = child->Next())
      texts += (texts.empty() ? "" : "|") + child->Text();
    return texts;
  }

  static std::string Describe(const Folder& folder) {
    std::string text = folder.Text() + (folder.Automatic() ? "!(" : "(");
    for (const SongEntry& entry : folder.Items())
      text += std::to_string(entry.SubItem()) + ":" + std::to_string(entry.Icon()) + " ";
    for (std::int32_t k = 0; k < folder.Children(); ++k) text += Describe(folder.ChildAt(k));
    return text + ")\n";
  }
  static std::string Describe(const FolderTree& tree) {
    std::string text;
    for (std::int32_t k = 0; k < tree.Children(); ++k) text += Describe(tree.ChildAt(k));
    return text;
  }

  std::shared_ptr<TagMap> tags = std::make_shared<TagMap>();
  Jukebox jukebox;
};

}  // namespace tallow
