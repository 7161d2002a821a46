// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_reader.h"

#include <algorithm>
#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <new>
#include <random>
#include <set>
#include <thread>
#include <utility>

#include "library/tag_layout.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

bool EnterAll(const std::string& /*folder*/) { return true; }
bool NoTails(const std::string& /*folder*/) { return false; }

/// Lists of folders that wait until the test lets them go on, as on a disk that does not respond.
class SlowDisk {
 public:
  /// The callback for FolderReader; blocks for every folder that is slow. May be called after this
  /// object is destroyed.
  std::function<bool(const std::string&)> Tails() const {
    return [state = state_](const std::string& folder) {
      std::unique_lock lock(state->mutex);
      const bool is_walk = std::this_thread::get_id() == state->walk;
      (is_walk ? state->listed_by_walk : state->listed_by_others).insert(folder);
      if (is_walk && state->responds_to_walk) state->responds = true;
      state->changed.notify_all();
      if (!is_walk && !state->fast.contains(folder))
        state->changed.wait(lock, [&] { return state->responds; });
      return false;
    };
  }
  void SlowDown() {
    Set([](State& state) { state.responds = false; });
  }
  void Respond() {
    Set([](State& state) { state.responds = true; });
  }
  /// The disk responds as soon as the thread of the walk lists a folder itself.
  void RespondToWalk() {
    Set([](State& state) { state.responds_to_walk = true; });
  }
  /// Excepts a folder.
  void AddFast(const std::string& folder) {
    Set([&](State& state) { state.fast.insert(folder); });
  }

  std::set<std::string> ListedByWalk() const { return Get(&State::listed_by_walk); }
  std::set<std::string> ListedByOthers() const { return Get(&State::listed_by_others); }

 private:
  struct State {
    const std::thread::id walk = std::this_thread::get_id();
    std::mutex mutex;
    std::condition_variable changed;
    bool responds = true;
    bool responds_to_walk = false;
    std::set<std::string> fast;
    std::set<std::string> listed_by_walk;
    std::set<std::string> listed_by_others;
  };
  template <typename Change>
  void Set(const Change& change) {
    const std::lock_guard lock(state_->mutex);
    change(*state_);
    state_->changed.notify_all();
  }
  std::set<std::string> Get(std::set<std::string> State::*member) const {
    const std::lock_guard lock(state_->mutex);
    return (*state_).*member;
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

class FolderReaderTest : public testing::Test {
 protected:
  ~FolderReaderTest() override { disk.Respond(); }

  /// Makes subfolders of the root, more than worker threads are started.
  void MakeManyFolders() {
    for (int k = 0; k < 12; ++k) music.File(std::to_string(k) + "/a.mp3");
  }

  TempFolder music;
  SlowDisk disk;
};

TEST_F(FolderReaderTest, AFolderWithMoreSubfoldersThanMemoryIsUnread) {
  music.File("a.mp3");
  music.Folder("b");
  music.Folder("c");
  int entered = 0;
  FolderReader reader(
      "*.mp3", true,
      [&](const std::string&) {
        if (++entered == 2) throw std::bad_alloc();
        return true;
      },
      NoTails);
  const auto root = reader.Root(music.path());
  EXPECT_TRUE(reader.WaitFor(root));
  EXPECT_EQ(root->listing.problem, "there is not enough memory");
  EXPECT_FALSE(root->listing.opened);
  EXPECT_TRUE(root->listing.files.empty());
  EXPECT_TRUE(root->subfolders.empty());
}

TEST_F(FolderReaderTest, AFolderThatIsListedWithoutMemoryIsUnread) {
  music.File("a.mp3");
  for (const bool recurse : {false, true}) {
    FolderReader reader("*.mp3", recurse, EnterAll,
                        [](const std::string&) -> bool { throw std::bad_alloc(); });
    const auto root = reader.Root(music.path());
    EXPECT_TRUE(reader.WaitFor(root));
    EXPECT_EQ(root->listing.problem, "there is not enough memory");
    EXPECT_FALSE(root->listing.opened);
  }
}

TEST_F(FolderReaderTest, AFolderWhosePathIsTooLongIsUnread) {
  FolderReader reader("*.mp3", false, EnterAll, NoTails);
  const auto root = reader.Root(music / std::string(FolderReader::kMaxPathBytes, 'x'));
  EXPECT_TRUE(reader.WaitFor(root));
  EXPECT_EQ(root->listing.problem, "its path is too long");
}

TEST_F(FolderReaderTest, TheCallbackRunsUntilASlowFolderIsListed) {
  music.File("a.mp3");
  disk.SlowDown();
  FolderReader reader("*.mp3", false, EnterAll, disk.Tails());
  const auto root = reader.Root(music.path());
  int calls = 0;
  EXPECT_TRUE(reader.WaitFor(root, [&] {
    if (++calls == 3) disk.Respond();
    return true;
  }));
  EXPECT_GE(calls, 3);
  EXPECT_EQ(root->listing.files.size(), 1U);
  // The thread with the callback must not wait for the disk.
  EXPECT_TRUE(disk.ListedByWalk().empty());
}

TEST_F(FolderReaderTest, TheCallbackEndsTheWaitForASlowFolder) {
  music.File("a.mp3");
  disk.SlowDown();
  FolderReader reader("*.mp3", false, EnterAll, disk.Tails());
  const auto root = reader.Root(music.path());
  EXPECT_FALSE(reader.WaitFor(root, [] { return false; }));
  disk.Respond();
  EXPECT_TRUE(reader.WaitFor(root, [] { return true; }));
  EXPECT_EQ(root->listing.files.size(), 1U);
}

TEST_F(FolderReaderTest, AReaderIsDestroyedThoughAFolderDoesNotRespond) {
  music.File("a.mp3");
  disk.SlowDown();
  std::shared_ptr<TreeFolder> root;
  {
    FolderReader reader("*.mp3", false, EnterAll, disk.Tails());
    root = reader.Root(music.path());
    EXPECT_FALSE(reader.WaitFor(root, [] { return false; }));
  }
  EXPECT_TRUE(root->listing.files.empty());
}

TEST_F(FolderReaderTest, AFolderIsListedThoughAllOtherThreadsWaitForTheDisk) {
  MakeManyFolders();
  const std::string last =
      music.Folder(ListFolder(music.path(), {.subfolders = true}).subfolders.back().name);
  disk.SlowDown();
  disk.AddFast(music.path());
  disk.AddFast(last);
  FolderReader reader("*.mp3", true, EnterAll, disk.Tails());
  const auto go_on = [] { return true; };
  const auto root = reader.Root(music.path());
  ASSERT_TRUE(reader.WaitFor(root, go_on));
  ASSERT_EQ(root->subfolders.size(), 12U);
  ASSERT_EQ(root->subfolders.back()->path, last);
  reader.Enter(*root);
  // The root was listed by another thread, too.
  const std::size_t threads = std::clamp(std::thread::hardware_concurrency(), 2U, 5U);
  ASSERT_TRUE(WaitUntil([&] { return disk.ListedByOthers().size() == 1 + threads; }));
  EXPECT_FALSE(disk.ListedByOthers().contains(last));
  EXPECT_TRUE(reader.WaitFor(root->subfolders.back(), go_on));
  EXPECT_EQ(root->subfolders.back()->listing.files.size(), 1U);
  EXPECT_TRUE(disk.ListedByWalk().empty());
  disk.Respond();
  for (const auto& folder : root->subfolders) EXPECT_TRUE(reader.WaitFor(folder, go_on));
}

TEST_F(FolderReaderTest, AWalkWithoutACallbackListsOtherFoldersWhileItWaits) {
  MakeManyFolders();
  FolderReader reader("*.mp3", true, EnterAll, disk.Tails());
  const auto root = reader.Root(music.path());
  ASSERT_TRUE(reader.WaitFor(root));
  ASSERT_EQ(root->subfolders.size(), 12U);
  disk.SlowDown();
  disk.RespondToWalk();
  reader.Enter(*root);
  const auto& first = root->subfolders.front();
  ASSERT_TRUE(WaitUntil([&] { return disk.ListedByOthers().contains(first->path); }));
  EXPECT_TRUE(reader.WaitFor(first));
  EXPECT_EQ(first->listing.files.size(), 1U);
  std::set<std::string> listed = disk.ListedByWalk();
  EXPECT_EQ(listed.erase(root->path), 1U);
  EXPECT_FALSE(listed.empty());
  EXPECT_FALSE(listed.contains(first->path));
}

/// Names, sizes and tails of files, one text for each.
std::vector<std::string> Described(const FolderListing& listing) {
  std::vector<std::string> texts;
  for (const FileEntry& file : listing.files)
    texts.push_back(file.name + " " + std::to_string(file.size) + " " + file.tail);
  return texts;
}

TEST_F(FolderReaderTest, TheFilesOfALargeFolderAreThoseOfOneListing) {
  std::mt19937 random(1);
  const std::pair<std::string, int> counts[] = {{"a", 700}, {"b", 17}, {"c", 16}, {"d", 1}};
  std::vector<std::string> folders;
  for (const auto& [name, count] : counts) {
    folders.push_back(music.Folder(name));
    for (int k = 0; k < count; ++k)
      music.File(name + "/" + std::to_string(random()) + ".mp3",
                 std::string(random() % 300, static_cast<char>('a' + random() % 26)));
  }
  const auto tails = [](const std::string&) { return true; };
  for (const bool recurse : {false, true})
    for (const std::function<bool()>& go_on :
         {std::function<bool()>(), std::function<bool()>([] { return true; })}) {
      FolderReader reader("*.mp3", recurse, EnterAll, tails);
      for (const std::string& folder : folders) {
        const auto root = reader.Root(folder);
        ASSERT_TRUE(reader.WaitFor(root, go_on));
        const FolderListing expected =
            ListFolder(folder, {.pattern = "*.mp3", .sizes = true, .tail_bytes = kTagBytes});
        EXPECT_EQ(Described(root->listing), Described(expected));
        EXPECT_EQ(root->listing.problem, "");
      }
    }
}

}  // namespace
}  // namespace tallow
