// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/column_sort.h"

#include <gtest/gtest.h>
#include <random>
#include <stdexcept>
#include <string>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "jukebox/song_list_order.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

/// The literal sort: songs are inserted one after another, each behind all that do not come after
/// it.
std::vector<std::int32_t> LiteralOrder(const std::vector<ColumnKey>& keys, bool descending) {
  const auto comes_before = [&](const ColumnKey& a, const ColumnKey& b) {
    if (a.key != b.key) {
      if (a.key == 0) return false;
      if (b.key == 0) return true;
      return descending ? a.key > b.key : a.key < b.key;
    }
    if (a.album != b.album) return b.album == 0 || (a.album != 0 && a.album < b.album);
    if (a.disc != b.disc) return a.disc < b.disc;
    return a.track < b.track;
  };
  std::vector<std::int32_t> order;
  for (std::size_t k = 0; k < keys.size(); ++k) {
    std::size_t at = order.size();
    while (at > 0 && comes_before(keys[k], keys[static_cast<std::size_t>(order[at - 1])])) --at;
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::int32_t>(k));
  }
  return order;
}

TEST(ColumnSort, IsTheLiteralSort) {
  std::mt19937 random(9);
  for (int round = 0; round < 2000; ++round) {
    std::vector<ColumnKey> keys(random() % 30);
    for (ColumnKey& key : keys)
      key = {.key = random() % 4,
             .album = static_cast<std::uint32_t>(random() % 3),
             .disc = static_cast<std::int32_t>(random() % 3) - 1,
             .track = static_cast<std::int32_t>(random() % 3)};
    for (const bool descending : {false, true})
      EXPECT_EQ(OrderByColumn(keys, descending), LiteralOrder(keys, descending));
  }
}

class SortByColumn : public LibraryTest {
 protected:
  SortByColumn() {
    for (const char* const name : {"a", "b", "c", "d", "e"})
      AddSong(music.path(), std::string(name) + ".mp3");
    folder_ = &tree_.AddChild(nullptr, "Folder");
    for (const std::int32_t record : {3, 1, 5, 2}) folder_->Items().emplace_back(record, 0);
  }
  std::vector<std::int32_t> Songs() const {
    std::vector<std::int32_t> songs;
    for (const SongEntry& entry : folder_->Items()) songs.push_back(entry.SubItem());
    return songs;
  }
  /// The record number is the key.
  static std::vector<ColumnKey> Numbers(std::span<const std::int32_t> records) {
    std::vector<ColumnKey> keys;
    for (const std::int32_t record : records)
      keys.push_back({.key = static_cast<std::uint64_t>(record)});
    return keys;
  }

  FolderTree tree_;
  EditHistory history_{tree_};
  Folder* folder_ = nullptr;
  SongListOrder order_;
};

using Records = std::vector<std::int32_t>;

TEST_F(SortByColumn, IsAStepThatCanBeUndone) {
  order_.SortBy(*folder_, library, history_, Numbers, false);
  EXPECT_EQ(Songs(), (Records{1, 2, 3, 5}));
  order_.SortBy(*folder_, library, history_, Numbers, true);
  EXPECT_EQ(Songs(), (Records{5, 3, 2, 1}));
  EXPECT_EQ(history_.Undo(), folder_);
  EXPECT_EQ(Songs(), (Records{1, 2, 3, 5}));
  history_.Undo();
  EXPECT_EQ(Songs(), (Records{3, 1, 5, 2}));
  history_.Redo();
  EXPECT_EQ(Songs(), (Records{1, 2, 3, 5}));
}

TEST_F(SortByColumn, HiddenSongsStayWhereTheyAre) {
  const std::int32_t hidden = clsMain::kFirstPlaceholder - 1;
  folder_->Items().insert(folder_->Items().begin() + 1, SongEntry(hidden, 0));
  order_.SortBy(*folder_, library, history_, Numbers, true);
  EXPECT_EQ(Songs(), (Records{5, hidden, 3, 2, 1}));
  history_.Undo();
  EXPECT_EQ(Songs(), (Records{3, hidden, 1, 5, 2}));
}

TEST_F(SortByColumn, TheNextClickOnNamesSortsAscending) {
  order_.SortByNext(*folder_, library, history_);
  order_.SortBy(*folder_, library, history_, Numbers, true);
  order_.SortByNext(*folder_, library, history_);
  EXPECT_EQ(Songs(), (Records{1, 2, 3, 5}));
}

TEST_F(SortByColumn, WithoutKeysNothingChangesAndNoStepStaysOpen) {
  const ColumnKeys none = [](std::span<const std::int32_t>) -> std::vector<ColumnKey> {
    throw std::runtime_error("no keys");
  };
  EXPECT_THROW(order_.SortBy(*folder_, library, history_, none, false), std::runtime_error);
  EXPECT_EQ(Songs(), (Records{3, 1, 5, 2}));
  // With an open step, the order of what was filed would become part of it.
  history_.ArrangeSongs(*folder_, {1, 0, 2, 3});
  history_.Begin(folder_, "Rename Folder");
  history_.RenameFolder(*folder_, "Other");
  history_.End();
  history_.Undo();
  EXPECT_EQ(Songs(), (Records{1, 3, 5, 2}));
  EXPECT_FALSE(history_.CanUndo());
}

TEST_F(SortByColumn, WithoutAHistoryOnlyTheSongsMove) {
  EXPECT_EQ(SortSongsByColumn(*folder_, library, Numbers, false), (Records{1, 3, 0, 2}));
  EXPECT_EQ(Songs(), (Records{1, 2, 3, 5}));
  EXPECT_FALSE(history_.CanUndo());
}

}  // namespace
}  // namespace tallow
