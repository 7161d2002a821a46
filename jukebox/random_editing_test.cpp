// SPDX-License-Identifier: GPL-3.0-or-later
// Compares random editing of a jukebox, with undo, filing and pruning, with a reference
// implementation.
#include <algorithm>
#include <memory>
#include <random>
#include <span>
#include <unordered_map>

#include "app/play_commands.h"
#include "jukebox/edit_history.h"
#include "jukebox/jukebox.h"
#include "jukebox/jukebox_edits.h"
#include "jukebox/jukebox_reader.h"
#include "jukebox/jukebox_writer.h"
#include "jukebox/ranking.h"
#include "tests/library_fixture.h"
#include "util/text.h"

namespace tallow {
namespace {

using Songs = std::vector<std::int32_t>;

/// Reference implementation of the undo history: each step stores a copy of the whole tree before
/// it.
class ReferenceHistory {
 public:
  struct Node {
    std::int32_t number = 0;  ///< identifies the folder; never changes
    std::string text;
    std::vector<std::pair<std::int32_t, std::int32_t>> songs;  ///< entry number, record number
    std::vector<std::shared_ptr<Node>> children;
    std::vector<std::string> ranks;  ///< of all songs, from song 1; only at the root
  };
  using NodePtr = std::shared_ptr<Node>;

  ReferenceHistory() : now_(std::make_shared<Node>()) {}

  Node& Now() { return *now_; }
  static Node* Find(Node& above, std::int32_t number) {
    if (above.number == number) return &above;
    for (const NodePtr& child : above.children)
      if (Node* const found = Find(*child, number)) return found;
    return nullptr;
  }
  Node* Find(std::int32_t number) { return Find(*now_, number); }
  /// Returns the child list that contains a folder.
  static std::vector<NodePtr>* ListOf(Node& above, std::int32_t number) {
    for (const NodePtr& child : above.children) {
      if (child->number == number) return &above.children;
      if (auto* const found = ListOf(*child, number)) return found;
    }
    return nullptr;
  }
  NodePtr Take(std::int32_t number) {
    auto& list = *ListOf(*now_, number);
    const auto place = std::find_if(list.begin(), list.end(),
                                    [&](const NodePtr& n) { return n->number == number; });
    NodePtr taken = *place;
    list.erase(place);
    return taken;
  }
  NodePtr CopyOf(const Node& from, bool same) {
    auto copy = std::make_shared<Node>(from);
    if (!same) {
      copy->number = ++last_;
      for (auto& song : copy->songs) song.first = ++last_;
    }
    for (NodePtr& child : copy->children) child = CopyOf(*child, same);
    return copy;
  }
  std::int32_t NewNumber() { return ++last_; }

  void Step() {
    undo_.push_back(CopyOf(*now_, true));
    redo_.clear();
  }
  void Undo() {
    redo_.push_back(now_);
    now_ = undo_.back();
    undo_.pop_back();
  }
  void Redo() {
    undo_.push_back(now_);
    now_ = redo_.back();
    redo_.pop_back();
    DropDoubles(*now_);
  }
  /// Removes songs that a redo has added to a folder although they were filed there in the
  /// meantime.
  void DropDoubles(const Node& folder) {
    if (const Node* const before = Find(*undo_.back(), folder.number)) {
      std::vector<std::int32_t> gone;
      for (const auto& [entry, song] : folder.songs) {
        if (HasEntry(*before, entry)) continue;
        for (const auto& other : folder.songs)
          if (other.second == song && HasEntry(*before, other.first)) gone.push_back(entry);
      }
      Drop(folder.number, gone);
    }
    for (const NodePtr& child : folder.children) DropDoubles(*child);
  }
  static bool HasEntry(const Node& folder, std::int32_t entry) {
    return std::any_of(folder.songs.begin(), folder.songs.end(),
                       [entry](const auto& song) { return song.first == entry; });
  }
  /// Removes entries from a folder, in the current tree and in all stored trees.
  void Drop(std::int32_t folder, const std::vector<std::int32_t>& entries) {
    if (entries.empty()) return;
    OnAll([&](Node& root) {
      if (Node* const kept = Find(root, folder))
        std::erase_if(kept->songs, [&](const auto& song) {
          return std::find(entries.begin(), entries.end(), song.first) != entries.end();
        });
    });
  }
  /// Applies a function to the current tree and to all stored trees.
  template <typename Act>
  void OnAll(const Act& act) {
    act(*now_);
    for (auto* const list : {&undo_, &redo_})
      for (const NodePtr& root : *list) act(*root);
  }

  std::vector<NodePtr> undo_;
  std::vector<NodePtr> redo_;

 private:
  NodePtr now_;
  std::int32_t last_ = 0;
};

/// Applies random commands to a jukebox and to the reference implementation.
class RandomEditing : public LibraryTest {
 protected:
  using Node = ReferenceHistory::Node;

  int Random(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

  std::vector<Folder*> AllFolders() {
    std::vector<Folder*> all;
    const auto collect = [&](const auto& self, Folder& folder) -> void {
      all.push_back(&folder);
      for (std::int32_t k = 0; k < folder.Children(); ++k) self(self, folder.ChildAt(k));
    };
    for (std::int32_t k = 0; k < jukebox.Nodes().Children(); ++k)
      collect(collect, jukebox.Nodes().ChildAt(k));
    return all;
  }
  Folder* AnyFolder() {
    const auto all = AllFolders();
    return all.empty() ? nullptr
                       : all[static_cast<std::size_t>(Random(static_cast<int>(all.size())))];
  }
  std::int32_t NumberOf(const Folder& folder) { return numbers.at(&folder); }
  Node& NodeOf(const Folder* folder) {
    return folder == nullptr ? reference.Now() : *reference.Find(NumberOf(*folder));
  }
  /// Maps a folder and all folders below it to the numbers of their reference nodes.
  void Number(const Folder& folder, const Node& node) {
    numbers[&folder] = node.number;
    for (std::int32_t k = 0; k < folder.Children(); ++k)
      Number(folder.ChildAt(k), *node.children[static_cast<std::size_t>(k)]);
  }
  std::vector<int> SomeRows(const Folder& folder) {
    std::vector<int> rows;
    for (std::size_t k = 0; k < folder.Items().size(); ++k)
      if (Random(2) == 0) rows.push_back(static_cast<int>(k));
    return rows;
  }

  void ExpectSame(const Folder& folder, const Node& node) {
    ASSERT_EQ(folder.Text(), node.text);
    Songs songs;
    for (const auto& song : node.songs) songs.push_back(song.second);
    ASSERT_EQ(SongsOf(folder), songs) << folder.Text();
    ASSERT_EQ(folder.Children(), static_cast<std::int32_t>(node.children.size()));
    for (std::int32_t k = 0; k < folder.Children(); ++k) {
      ASSERT_EQ(folder.ChildAt(k).Parent(), &folder);
      ASSERT_EQ(folder.ChildAt(k).Level(), folder.Level() + 1);
      ASSERT_EQ(folder.ChildAt(k).Index(), k);
      ExpectSame(folder.ChildAt(k), *node.children[static_cast<std::size_t>(k)]);
    }
  }
  void ExpectSame(const FolderTree& tree) {
    const Node& root = reference.Now();
    ASSERT_EQ(Ranks(), root.ranks);
    ASSERT_EQ(tree.Children(), static_cast<std::int32_t>(root.children.size()));
    for (std::int32_t k = 0; k < tree.Children(); ++k)
      ExpectSame(tree.ChildAt(k), *root.children[static_cast<std::size_t>(k)]);
  }

  void AddFolder(Folder* parent) {
    reference.Step();
    auto node = std::make_shared<Node>();
    node->number = reference.NewNumber();
    node->text = "New Folder";
    NodeOf(parent).children.push_back(node);
    numbers[edits.AddFolder(parent)] = node->number;
  }
  void AddLiterally(Node& to, const std::vector<std::int32_t>& songs) {
    for (const std::int32_t song : songs)
      if (std::none_of(to.songs.begin(), to.songs.end(),
                       [&](const auto& held) { return held.second == song; }))
        to.songs.emplace_back(reference.NewNumber(), song);
  }
  static Songs SongsAt(const Node& node, const std::vector<int>& rows) {
    Songs songs;
    for (const int row : rows) songs.push_back(node.songs[static_cast<std::size_t>(row)].second);
    return songs;
  }
  static void RemoveLiterally(Node& node, const std::vector<int>& rows) {
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
      node.songs.erase(node.songs.begin() + *row);
  }
  bool PasteChanges(const Node& to) {
    return std::any_of(copied_songs.begin(), copied_songs.end(), [&](std::int32_t song) {
      return std::none_of(to.songs.begin(), to.songs.end(),
                          [&](const auto& held) { return held.second == song; });
    });
  }
  void SortLiterally(Node& above) {
    std::stable_sort(
        above.children.begin(), above.children.end(),
        [](const auto& a, const auto& b) { return ToLower(a->text) < ToLower(b->text); });
    for (const auto& child : above.children) SortLiterally(*child);
  }
  static bool IsSortedLiterally(const Node& above) {
    return std::is_sorted(
               above.children.begin(), above.children.end(),
               [](const auto& a, const auto& b) { return ToLower(a->text) < ToLower(b->text); }) &&
           std::all_of(above.children.begin(), above.children.end(),
                       [](const auto& child) { return IsSortedLiterally(*child); });
  }

  void Paste(Folder* into) {
    if (copied_folder != nullptr) {
      reference.Step();
      const auto node = reference.CopyOf(*copied_folder, false);
      NodeOf(into).children.push_back(node);
      edits.Paste(into);
      Number(into != nullptr ? into->ChildAt(into->Children() - 1)
                             : jukebox.Nodes().ChildAt(jukebox.Nodes().Children() - 1),
             *node);
      return;
    }
    if (into != nullptr && PasteChanges(NodeOf(into))) {
      reference.Step();
      AddLiterally(NodeOf(into), copied_songs);
    }
    edits.Paste(into);
  }

  /// Files a song into a folder and into a new folder below it.
  void FileSongs(Folder& folder) {
    const std::int32_t song = Random(kSongs) + 1;
    const std::int32_t entry = reference.NewNumber();
    const std::int32_t inner_entry = reference.NewNumber();
    const std::int32_t inner = reference.NewNumber();
    folder.Items().emplace_back(song, 2);
    Folder& added = jukebox.Nodes().AddChild(&folder, "filed");
    added.Items().emplace_back(song, 2);
    numbers[&added] = inner;
    reference.OnAll([&](Node& root) {
      Node* const node = ReferenceHistory::Find(root, NumberOf(folder));
      if (node == nullptr) return;
      node->songs.emplace_back(entry, song);
      auto child = std::make_shared<Node>();
      child->number = inner;
      child->text = "filed";
      child->songs.emplace_back(inner_entry, song);
      node->children.push_back(child);
    });
  }
  /// Removes random songs from a folder, as when their files are found missing.
  void Prune(Folder& folder) {
    std::vector<std::int32_t> rows;
    for (const int row : SomeRows(folder)) rows.push_back(row);
    Node& node = NodeOf(&folder);
    std::vector<std::int32_t> gone;
    for (const std::int32_t row : rows)
      gone.push_back(node.songs[static_cast<std::size_t>(row)].first);
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
      folder.Items().erase(folder.Items().begin() + *row);
    jukebox.History().SongsPruned(folder, rows);
    reference.Drop(NumberOf(folder), gone);
  }
  /// Sorts the songs of a folder by a click on the column header.
  void SortSongs(Folder& folder) {
    jukebox.ShowFolder(folder, library, changes);
    auto sorted = NodeOf(&folder).songs;
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.second < b.second; });
    const bool has_equal =
        std::adjacent_find(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
          return a.second == b.second;
        }) != sorted.end();
    // The order of two entries of the same song depends on the sort and cannot be predicted here.
    if (has_equal) return;
    if (sorted != NodeOf(&folder).songs) {
      reference.Step();
      NodeOf(&folder).songs = sorted;
    }
    jukebox.ColumnClick(library);
  }

  /// Sorts the songs of a folder by a column in which some songs are equal and some have no text.
  void SortByColumn(Folder& folder) {
    const bool descending = Random(2) == 0;
    const std::int32_t groups = 2 + Random(4);
    const auto key_of = [groups](std::int32_t song) {
      return ColumnKey{.key = static_cast<std::uint64_t>(song % groups),
                       .album = static_cast<std::uint32_t>(song % 3),
                       .disc = song % 2};
    };
    jukebox.ShowFolder(folder, library, changes);
    auto sorted = NodeOf(&folder).songs;
    std::stable_sort(sorted.begin(), sorted.end(), [&](const auto& a, const auto& b) {
      const ColumnKey one = key_of(a.second);
      const ColumnKey other = key_of(b.second);
      if (one.key != other.key) {
        if (one.key == 0 || other.key == 0) return other.key == 0;
        return descending ? one.key > other.key : one.key < other.key;
      }
      if (one.album != other.album)
        return other.album == 0 || (one.album != 0 && one.album < other.album);
      return one.disc < other.disc;
    });
    TakeOrder(folder, sorted);
    jukebox.SortByColumn(
        library,
        [&](std::span<const std::int32_t> songs) {
          std::vector<ColumnKey> keys;
          for (const std::int32_t song : songs) keys.push_back(key_of(song));
          return keys;
        },
        descending);
  }

  /// Moves songs inside their folder, as by a drag.
  void MoveInside(Folder& folder) {
    const auto rows = SomeRows(folder);
    auto& songs = NodeOf(&folder).songs;
    const int before = Random(static_cast<int>(songs.size()) + 1);
    auto moved = songs;
    moved.clear();
    const auto add = [&](int first, int end, bool selected) {
      for (int row = first; row < end; ++row)
        if ((std::find(rows.begin(), rows.end(), row) != rows.end()) == selected)
          moved.push_back(songs[static_cast<std::size_t>(row)]);
    };
    const int count = static_cast<int>(songs.size());
    add(0, before, false);
    add(0, count, true);
    add(before, count, false);
    TakeOrder(folder, moved);
    edits.MoveSongsTo(folder, rows, before);
  }
  /// Moves songs up or down by one line, each over the one beside it.
  void MoveByOne(Folder& folder) {
    auto rows = SomeRows(folder);
    const bool up = Random(2) == 0;
    if (rows.empty() || (up ? rows.front() == 0
                            : static_cast<std::size_t>(rows.back()) + 1 == folder.Items().size()))
      return;
    if (!up) std::reverse(rows.begin(), rows.end());
    auto moved = NodeOf(&folder).songs;
    std::vector<int> neighbours;
    for (const int row : rows) {
      neighbours.push_back(up ? row - 1 : row + 1);
      std::swap(moved[static_cast<std::size_t>(row)],
                moved[static_cast<std::size_t>(neighbours.back())]);
    }
    TakeOrder(folder, moved);
    edits.MoveSongsByOne(folder, rows, neighbours);
  }
  void TakeOrder(const Folder& folder,
                 const std::vector<std::pair<std::int32_t, std::int32_t>>& songs) {
    // Entries of the same song that change places make no step.
    if (std::ranges::equal(songs, NodeOf(&folder).songs, {}, &std::pair<int, int>::second,
                           &std::pair<int, int>::second))
      return;
    reference.Step();
    NodeOf(&folder).songs = songs;
  }
  void Rank(Folder& folder) {
    const auto rows = SomeRows(folder);
    const int item = 1 + Random(kNoRankItem);
    constexpr const char* kStored[] = {"7", "6", "5", "4", "3", "3", "2"};
    auto ranks = reference.Now().ranks;
    for (const int row : rows)
      ranks[static_cast<std::size_t>(folder.Items()[static_cast<std::size_t>(row)].SubItem() - 1)] =
          kStored[item - 1];
    if (ranks != reference.Now().ranks) {
      reference.Step();
      reference.Now().ranks = ranks;
    }
    RankSongs(jukebox.History(), folder, rows, item, library);
  }
  std::vector<std::string> Ranks() const {
    std::vector<std::string> ranks;
    for (int song = 1; song <= kSongs; ++song) ranks.emplace_back(library.Mp3Info(kSongRank, song));
    return ranks;
  }

  void Act() {
    Folder* const folder = AnyFolder();
    Folder* const other = AnyFolder();
    const int command = Random(24);
    if (folder == nullptr || command == 0) return AddFolder(nullptr);
    Node& node = NodeOf(folder);
    switch (command) {
      case 1:
        return AddFolder(folder);
      case 2: {
        const std::string text = "t" + std::to_string(Random(5));
        if (text != folder->Text()) {
          reference.Step();
          NodeOf(folder).text = text;
        }
        edits.Rename(*folder, text);
        return;
      }
      case 3:
      case 4: {
        const auto rows = SomeRows(*folder);
        if (rows.empty()) return;
        copied_songs = SongsAt(node, rows);
        copied_folder = nullptr;
        if (command == 3) return edits.CopySongs(*folder, rows);
        reference.Step();
        RemoveLiterally(NodeOf(folder), rows);
        return edits.CutSongs(*folder, rows);
      }
      case 5:
      case 6:
        copied_folder = reference.CopyOf(node, true);
        if (command == 5) return edits.CopyFolder(*folder);
        reference.Step();
        reference.Take(NumberOf(*folder));
        return edits.CutFolder(*folder);
      case 7:
      case 8:
        // Limit the tree: copies of copies grow exponentially and would only slow down the test.
        if (jukebox.Nodes().Count() < 60) Paste(command == 7 ? folder : nullptr);
        return;
      case 9:
        reference.Step();
        reference.Take(NumberOf(*folder));
        return edits.DeleteFolder(*folder);
      case 10: {
        if (folder == other || SongsAt(node, SomeRows(*folder)).empty()) return;
        const auto rows = SomeRows(*folder);
        const bool copy = Random(2) == 0;
        copied_songs_kept = copied_songs;
        copied_songs = SongsAt(node, rows);
        if (!rows.empty() && (!copy || PasteChanges(NodeOf(other)))) {
          reference.Step();
          AddLiterally(NodeOf(other), copied_songs);
          if (!copy) RemoveLiterally(NodeOf(folder), rows);
        }
        copied_songs = copied_songs_kept;
        edits.DropSongs(edits, *folder, rows, *other, copy);
        return;
      }
      case 11: {
        Folder* const to = Random(4) == 0 ? nullptr : other;
        const bool moves = to == nullptr ? folder->Parent() != nullptr
                                         : !folder->Holds(*to) && folder->Parent() != to;
        if (moves) {
          reference.Step();
          const auto taken = reference.Take(NumberOf(*folder));
          NodeOf(to).children.push_back(taken);
        }
        edits.DropFolder(edits, *folder, to, false);
        return;
      }
      case 12: {
        Folder* const above = Random(2) == 0 ? nullptr : folder;
        if (!IsSortedLiterally(NodeOf(above))) {
          reference.Step();
          SortLiterally(NodeOf(above));
        }
        edits.SortNodes(above);
        return;
      }
      case 13:
        return SortSongs(*folder);
      case 14:
        return FileSongs(*folder);
      case 15:
        return Prune(*folder);
      case 16:
      case 17:
      case 18:
        if (!jukebox.History().CanUndo()) return;
        reference.Undo();
        jukebox.Undo();
        return;
      case 19:
        return MoveInside(*folder);
      case 20:
        return MoveByOne(*folder);
      case 21:
        return Rank(*folder);
      case 22:
        return SortByColumn(*folder);
      default:
        if (!jukebox.History().CanRedo()) return;
        reference.Redo();
        jukebox.Redo();
        return;
    }
  }

  void ExpectSameAfterSaveAndLoad() {
    const JukeboxContent content =
        DecodeJukebox(EncodeJukebox(jukebox.Nodes(), jukebox.ColumnHeaders(), library));
    FolderTree loaded;
    FillTree(content, library, loaded);
    ExpectSame(loaded);
    EXPECT_EQ(ContentHash(loaded), ContentHash(jukebox.Nodes()));
  }

  static constexpr int kSongs = 30;
  std::mt19937 random;
  Jukebox jukebox;
  JukeboxClipboard clipboard;
  JukeboxEdits edits{jukebox, clipboard};
  ReferenceHistory reference;
  std::unordered_map<const Folder*, std::int32_t> numbers;
  std::vector<std::int32_t> copied_songs;
  std::vector<std::int32_t> copied_songs_kept;
  std::shared_ptr<Node> copied_folder;
  std::int64_t changes = 0;
};

TEST_F(RandomEditing, AgreesWithTheReferenceImplementation) {
  for (int k = 1; k <= kSongs; ++k)
    AddSong("/m/", (k < 10 ? "0" : "") + std::to_string(k) + ".mp3");
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    random.seed(seed);
    reference.Now().ranks = Ranks();
    // Initial folders, added without the undo history.
    for (int k = 0; k < 2; ++k) {
      auto node = std::make_shared<Node>();
      node->number = reference.NewNumber();
      Folder& folder = jukebox.Nodes().AddChild(nullptr, "t" + std::to_string(k));
      node->text = folder.Text();
      for (int song = 1; song <= kSongs; song += 1 + k) {
        folder.Items().emplace_back(song, 2);
        node->songs.emplace_back(reference.NewNumber(), song);
      }
      numbers[&folder] = node->number;
      reference.OnAll([&](Node& root) { root.children.push_back(reference.CopyOf(*node, true)); });
    }
    for (int command = 0; command < 1000; ++command) {
      SCOPED_TRACE("command " + std::to_string(command));
      Act();
      ExpectSame(jukebox.Nodes());
      if (HasFatalFailure()) return;
      if (command % 25 == 0) ExpectSameAfterSaveAndLoad();
      ASSERT_EQ(jukebox.History().CanUndo(), !reference.undo_.empty());
      ASSERT_EQ(jukebox.History().CanRedo(), !reference.redo_.empty());
      // Below this limit the history drops no steps; the reference never drops any.
      ASSERT_LT(reference.undo_.size(), EditHistory::kMaxSteps);
    }
    // Undo everything, then redo everything.
    while (jukebox.History().CanUndo()) {
      jukebox.Undo();
      reference.Undo();
      ExpectSame(jukebox.Nodes());
      if (HasFatalFailure()) return;
    }
    while (jukebox.History().CanRedo()) {
      jukebox.Redo();
      reference.Redo();
      ExpectSame(jukebox.Nodes());
      if (HasFatalFailure()) return;
    }
    while (jukebox.History().CanUndo()) {
      jukebox.Undo();
      reference.Undo();
    }
    jukebox.History().Clear();
    reference.redo_.clear();
  }
}

}  // namespace
}  // namespace tallow
