// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jukebox/folder_tree.h"
#include "jukebox/sorting.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"
#include "tests/literal_tag.h"
#include "util/like.h"
#include "util/natural_order.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {

/// Reference implementation of filing, in all styles: reads each tag when it is needed, searches
/// folders linearly, and puts each new folder and song into its place one by one.
class LiteralFiling {
 public:
  LiteralFiling(FolderTree& tree, const clsMain& library, ReadTags newer)
      : tree_(tree), library_(library), newer_(std::move(newer)), switches_(library.Switches()) {}

  /// Files the songs that are not in "All Songs".
  void Fill() {
    Folder* const all = tree_.Find("All Songs");
    if (all == nullptr) return;
    std::vector<std::int32_t> rows;
    for (std::int32_t row = 1; row <= library_.UBoundOfMp3Array(); ++row)
      if (library_.Song(row).IsPresent() && !Has(*all, row)) rows.push_back(row);
    for (Folder* const folder : {all, tree_.Find("New")})
      for (const std::int32_t row : rows)
        if (folder != nullptr) folder->Items().emplace_back(row, library_.Song(row).Rank());
    FileAll(rows);
  }

  /// Files songs again.
  void Again(const std::vector<std::int32_t>& records) {
    const Folder* const all = tree_.Find("All Songs");
    std::vector<std::int32_t> rows;
    for (const std::int32_t row : records)
      if (all != nullptr && library_.Song(row).IsPresent() && Has(*all, row)) rows.push_back(row);
    if (rows.empty()) return;
    for (Folder* const category : Categories()) TakeOut(*category, rows);
    sorts_at_end_ = true;
    FileAll(rows);
    for (Folder* const category : Categories()) Clean(*category);
    if (switches_.natural_order)
      for (Folder* const category : Categories())
        if (category->Text() != "Decades") Sort(*category);
  }

 private:
  static bool Has(const Folder& folder, std::int32_t record) {
    return std::any_of(folder.Items().begin(), folder.Items().end(),
                       [&](const SongEntry& entry) { return entry.SubItem() == record; });
  }

  std::vector<Folder*> Categories() const {
    std::vector<Folder*> categories;
    for (const char* const text : {"Artist", "Year", "Genre", "Decades"})
      if (Folder* const category = tree_.Find(text)) categories.push_back(category);
    if (Folder* const album = FindAlbumFolder(tree_); album != nullptr && switches_.albums)
      categories.push_back(album);
    return categories;
  }

  bool TakeOut(Folder& folder, const std::vector<std::int32_t>& rows) {
    const std::size_t before = folder.Items().size();
    std::erase_if(folder.Items(), [&](const SongEntry& entry) {
      return std::find(rows.begin(), rows.end(), entry.SubItem()) != rows.end();
    });
    bool emptied = folder.Items().size() < before || folder.Children() > 0;
    for (std::int32_t k = 0; k < folder.Children(); ++k)
      if (!TakeOut(folder.ChildAt(k), rows)) emptied = false;
    emptied = emptied && folder.Items().empty() && !IsSpecialFolder(folder);
    if (emptied) emptied_.insert(&folder);
    return emptied;
  }

  void Clean(Folder& above) {
    for (std::int32_t k = 0; k < above.Children();) {
      Folder& child = above.ChildAt(k);
      if (emptied_.contains(&child) && child.Items().empty()) {
        tree_.Take(child);
        continue;
      }
      Clean(child);
      ++k;
    }
  }

  void Sort(Folder& above) {
    for (std::int32_t k = 1; k < above.Children(); ++k)
      Place(above, k, [](const Folder& a, const Folder& b) {
        return NaturalLess(ToNfc(a.Text()), ToNfc(b.Text()));
      });
  }

  /// Moves a child before the first of its earlier siblings that comes after it.
  void Place(Folder& above, std::int32_t index,
             const std::function<bool(const Folder&, const Folder&)>& less) {
    for (std::int32_t k = 0; k < index; ++k) {
      if (!less(above.ChildAt(index), above.ChildAt(k))) continue;
      tree_.Put(tree_.Take(above.ChildAt(index)), &above, k);
      return;
    }
  }

  SongTags TagsOf(std::int32_t row) const {
    const std::string path = library_.Song(row).Path();
    if (switches_.newer_tags && newer_) return newer_(path);
    const LiteralTag tag(path);
    SongTags tags;
    tags.found = tag.found;
    tags.artist = tag.artist;
    tags.album = tag.album;
    tags.date = tag.year;
    tags.genre = GenreNameFromID(tag.genra);
    return tags;
  }

  void FileAll(const std::vector<std::int32_t>& rows) {
    std::map<Folder*, std::int32_t> children;
    for (Folder* const category : Categories()) children[category] = category->Children();
    std::map<Folder*, std::size_t> old_albums;
    if (Folder* const album = FindAlbumFolder(tree_))
      for (std::int32_t k = 0; k < album->Children(); ++k)
        old_albums[&album->ChildAt(k)] = album->ChildAt(k).Items().size();
    for (const std::int32_t row : rows) File(row, TagsOf(row));
    for (Folder* const category : Categories()) {
      const bool decades = category->Text() == "Decades";
      for (std::int32_t k = children[category]; k < category->Children(); ++k)
        if (decades)
          Place(*category, k,
                [](const Folder& a, const Folder& b) { return Decade(a) < Decade(b); });
        else if (switches_.natural_order && !sorts_at_end_)
          Place(*category, k, [](const Folder& a, const Folder& b) {
            return NaturalLess(ToNfc(a.Text()), ToNfc(b.Text()));
          });
    }
    Folder* const album = FindAlbumFolder(tree_);
    for (std::int32_t k = 0; switches_.albums && album != nullptr && k < album->Children(); ++k) {
      Folder& folder = album->ChildAt(k);
      for (std::size_t song = old_albums[&folder]; song < folder.Items().size(); ++song)
        PlaceSong(folder.Items(), song);
    }
  }

  static int Decade(const Folder& folder) {
    static const std::vector<std::string> kEarly = {"20's", "30's", "40's", "50's", "60's",
                                                    "70's", "80's", "90's", "00's"};
    const auto found = std::find(kEarly.begin(), kEarly.end(), folder.Text());
    if (found != kEarly.end()) return 1920 + 10 * static_cast<int>(found - kEarly.begin());
    return folder.Text().size() == 6 && folder.Text().ends_with("0's") ? NumericValue(folder.Text())
                                                                       : 0;
  }

  void PlaceSong(std::vector<SongEntry>& songs, std::size_t index) {
    const SongEntry entry = songs[index];
    for (std::size_t k = 0; k < index; ++k) {
      if (!IsBefore(entry.SubItem(), songs[k].SubItem())) continue;
      songs.erase(songs.begin() + static_cast<std::ptrdiff_t>(index));
      songs.insert(songs.begin() + static_cast<std::ptrdiff_t>(k), entry);
      return;
    }
  }

  bool IsBefore(std::int32_t a, std::int32_t b) const {
    const SongTags one = TagsOf(a);
    const SongTags other = TagsOf(b);
    const auto disc = [](const SongTags& tags) { return tags.disc == 0 ? 1 : tags.disc; };
    if (disc(one) != disc(other)) return disc(one) < disc(other);
    if (one.track != other.track)
      return other.track == 0 || (one.track != 0 && one.track < other.track);
    return NaturalLess(library_.Song(a).Name(), library_.Song(b).Name());
  }

  void File(std::int32_t row, const SongTags& tags) {
    if (!tags.found) return;
    std::string artist = tags.FolderArtist();
    if (switches_.whole_artists)
      artist = ToNfc(Trim(artist));
    else
      StripBrackets(artist);
    if (Folder* const artists = tree_.Find("Artist"); artists != nullptr && !artist.empty())
      Add(switches_.whole_artists ? Whole(*artists, artist) : Prefix(*artists, artist), row);
    FileYear(row, tags);
    if (Folder* const genres = tree_.Find("Genre");
        genres != nullptr && !tags.genre.empty() && tags.genre != "None")
      Add(Exact(*genres, tags.genre), row);
    if (Folder* const albums = FindAlbumFolder(tree_);
        albums != nullptr && switches_.albums && !tags.album.empty())
      Add(Whole(*albums,
                ToNfc(tags.FolderArtist().empty() ? tags.album
                                                  : tags.album + " (" + tags.FolderArtist() + ")")),
          row);
  }

  void FileYear(std::int32_t row, const SongTags& tags) {
    Folder* const years = tree_.Find("Year");
    if (years == nullptr) return;
    std::string year = tags.date;
    if (switches_.four_digit_years) {
      year = FourDigits(year);
      if (year.empty() || year == "0000") return;
      Add(Whole(*years, year), row);
    } else {
      StripBrackets(year);
      if (switches_.newer_tags) year = year.substr(0, year.find_first_not_of("0123456789"));
      const auto number = TryConvertToInt32(year);
      if (year.empty() || !number || *number == 0) return;
      Add(Prefix(*years, year), row);
    }
    Folder* const decades = tree_.Find("Decades");
    if (decades == nullptr) return;
    if (!switches_.all_decades) {
      const std::string digit = year.substr(std::min<std::size_t>(2, year.size()), 1);
      if (digit != "1" && !digit.empty())
        if (Folder* const decade = tree_.Find(digit + "0's", decades)) Add(*decade, row);
      return;
    }
    const std::string digits = FourDigits(year);
    if (digits.empty() || digits < "1920") return;
    Add(Exact(*decades, (digits < "2010" ? digits.substr(2, 1) : digits.substr(0, 3)) + "0's"),
        row);
  }

  /// The first of all groups of digits that has four.
  static std::string FourDigits(const std::string& text) {
    std::string group;
    for (const char c : text + " ") {
      if (c >= '0' && c <= '9') {
        group += c;
        continue;
      }
      if (group.size() == 4) return group;
      group.clear();
    }
    return {};
  }

  Folder& New(Folder& category, const std::string& text) {
    for (Folder* child = category.Child(); child != nullptr; child = child->Next())
      if (emptied_.contains(child) && child->Text() == text) {
        emptied_.erase(child);
        return *child;
      }
    return tree_.AddChild(&category, text);
  }

  Folder* First(Folder& category, const std::function<bool(const std::string&)>& matches) {
    for (Folder* child = category.Child(); child != nullptr; child = child->Next())
      if (!emptied_.contains(child) && matches(child->Text())) return child;
    return nullptr;
  }

  Folder& Prefix(Folder& category, const std::string& value) {
    Folder* found =
        First(category, [&](const std::string& text) { return ToLower(text) == ToLower(value); });
    if (found == nullptr)
      found = First(category, [&](const std::string& text) {
        return Like(ToLower(value), ToLower(text) + "*");
      });
    return found != nullptr ? *found : New(category, value);
  }

  Folder& Whole(Folder& category, const std::string& value) {
    const auto key = [](const std::string& text) { return ToLower(ToNfc(Trim(text))); };
    Folder* const found =
        First(category, [&](const std::string& text) { return key(text) == key(value); });
    return found != nullptr ? *found : New(category, value);
  }

  Folder& Exact(Folder& category, const std::string& value) {
    Folder* const found = First(category, [&](const std::string& text) { return text == value; });
    return found != nullptr ? *found : New(category, value);
  }

  void Add(Folder& folder, std::int32_t row) {
    folder.Items().emplace_back(library_.Song(row).RecordNumber(), library_.Song(row).Rank());
  }

  FolderTree& tree_;
  const clsMain& library_;
  ReadTags newer_;
  Switches switches_;
  std::set<const Folder*> emptied_;
  bool sorts_at_end_ = false;
};

}  // namespace tallow
