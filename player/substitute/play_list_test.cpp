// SPDX-License-Identifier: GPL-3.0-or-later
// Compares PlayList with a slow, literal model on random commands.
#include "player/substitute/play_list.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "player/player_request.h"

namespace tallow {
namespace {

using Numbers = std::vector<ListNumber>;

bool Has(const Numbers& numbers, ListNumber number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

void Insert(Numbers& to, std::size_t at, const Numbers& added) {
  to.insert(to.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
}

Numbers Sorted(Numbers numbers) {
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::vector<std::string> Paths(std::size_t count) { return std::vector<std::string>(count, "/a"); }

/// The list in its own order.
Numbers ListOf(PlayList list) {
  Numbers numbers;
  for (std::size_t place = 0; place < list.Size(); ++place) {
    EXPECT_TRUE(list.GoToPlace(place));
    EXPECT_EQ(list.Place(), place);
    numbers.push_back(list.CurrentNumber());
  }
  return numbers;
}

/// The list in the order of playing.
Numbers OrderOf(PlayList list) {
  Numbers numbers = list.UpcomingNumbers(0, list.Size());
  if (!list.IsEmpty()) numbers.insert(numbers.begin(), list.CurrentNumber());
  while (list.HasPrevious()) {
    list.GoToPrevious();
    numbers.insert(numbers.begin(), list.CurrentNumber());
  }
  return numbers;
}

/// Does what PlayList promises, entry by entry. Where the order is random, the model checks what
/// must hold, and takes over the order of the list.
class Model {
 public:
  explicit Model(PlayList& list) : list_(list) {}

  void Add(std::size_t count, std::int64_t at) {
    const ListNumber first = list_.Add(Paths(count), at);
    if (at > 0 && !Has(in_list_, static_cast<ListNumber>(at))) {
      EXPECT_EQ(first, 0U);
      return;
    }
    Numbers added(count);
    for (ListNumber& number : added) number = ++last_number_;
    EXPECT_EQ(first, added.front());
    const bool was_empty = in_list_.empty();
    if (at == kPlayNext && !was_empty) {
      const ListNumber before = block_.empty() ? current_ : block_.back();
      Insert(in_list_, IndexIn(in_list_, before) + 1, added);
      if (shuffled_) Insert(order_, IndexIn(order_, before) + 1, added);
    } else {
      Insert(in_list_, at > 0 ? IndexIn(in_list_, static_cast<ListNumber>(at)) : in_list_.size(),
             added);
      if (shuffled_) ExpectDistributed(added, was_empty);
    }
    if (at == kPlayNext || (!shuffled_ && at > 0 && Has(block_, static_cast<ListNumber>(at))))
      Insert(block_, at > 0 ? IndexIn(block_, static_cast<ListNumber>(at)) : block_.size(), added);
    if (was_empty) {
      current_ = added.front();
      if (!block_.empty()) block_.erase(block_.begin());
    }
  }

  void Clear() {
    list_.Clear();
    in_list_ = order_ = block_ = {};
    played_.clear();
    current_ = 0;
  }

  void GoToNext() {
    if (in_list_.empty()) return;
    Numbers predicted;
    const std::size_t upcoming = list_.Upcoming();
    if (list_.Repeat() == RepeatMode::kAll)
      for (std::size_t k = 0; k < list_.Size(); ++k)
        predicted.push_back(list_.After(upcoming + 1 + k).number);
    played_.insert(current_);
    list_.GoToNext();
    const Numbers& order = Order();
    if (current_ != order.back()) {
      current_ = order[IndexIn(order, current_) + 1];
      if (!block_.empty()) block_.erase(block_.begin());
      return;
    }
    played_.clear();
    block_.clear();
    if (shuffled_) {
      const Numbers next = OrderOf(list_);
      EXPECT_EQ(Sorted(next), Sorted(order_));
      EXPECT_TRUE(next.size() == 1 || next.front() != current_);
      order_ = next;
    }
    current_ = Order().front();
    if (list_.Repeat() == RepeatMode::kAll) {
      EXPECT_EQ(predicted, Order());
    }
  }

  void GoToPrevious() {
    list_.GoToPrevious();
    if (in_list_.empty() || current_ == Order().front()) return;
    played_.insert(current_);
    if (!block_.empty()) block_.insert(block_.begin(), current_);
    current_ = Order()[IndexIn(Order(), current_) - 1];
  }

  void GoTo(ListNumber number) {
    EXPECT_EQ(list_.GoTo(number), Has(in_list_, number));
    if (!Has(in_list_, number) || number == current_) return;
    played_.insert(current_);
    if (shuffled_) {
      std::erase(order_, number);
      Insert(order_, IndexIn(order_, current_) + 1, {number});
      std::erase(block_, number);
    } else if (Has(block_, number)) {
      block_.erase(block_.begin(),
                   block_.begin() + static_cast<std::ptrdiff_t>(IndexIn(block_, number) + 1));
    } else {
      block_.clear();
    }
    current_ = number;
  }

  void Move(const Numbers& numbers, ListNumber before) {
    list_.Move(numbers, before);
    if (before != 0 && !IsUpcoming(before)) return;
    Numbers moved;
    for (const ListNumber number : numbers)
      if (IsUpcoming(number) && !Has(moved, number)) moved.push_back(number);
    if (moved.empty()) return;
    Numbers& order = shuffled_ ? order_ : in_list_;
    while (before != 0 && Has(moved, before)) {
      const std::size_t behind = IndexIn(order, before) + 1;
      before = behind < order.size() ? order[behind] : 0;
    }
    for (const ListNumber number : moved) std::erase(order, number);
    Insert(order, before == 0 ? order.size() : IndexIn(order, before), moved);
    // The block ends with the last of its entries that was not moved.
    for (const ListNumber number : moved) std::erase(block_, number);
    if (block_.empty()) return;
    const std::size_t first = IndexIn(order, current_) + 1;
    const std::size_t end = IndexIn(order, block_.back()) + 1;
    block_.assign(order.begin() + static_cast<std::ptrdiff_t>(first),
                  order.begin() + static_cast<std::ptrdiff_t>(end));
  }

  void Remove(const Numbers& numbers) {
    list_.Remove(numbers);
    Numbers removed;
    for (const ListNumber number : numbers)
      if (IsUpcoming(number)) removed.push_back(number);
    for (const ListNumber number : removed)
      for (Numbers* from : {&in_list_, &order_, &block_}) std::erase(*from, number);
  }

  void SetShuffle(bool shuffle) {
    list_.SetShuffle(shuffle);
    if (shuffle == shuffled_) return;
    shuffled_ = shuffle;
    if (in_list_.empty()) return;
    if (!shuffle) {
      for (const ListNumber number : block_) std::erase(in_list_, number);
      Insert(in_list_, IndexIn(in_list_, current_) + 1, block_);
      order_.clear();
      return;
    }
    Numbers known;
    for (const ListNumber number : in_list_)
      if (played_.contains(number) && number != current_ && !Has(block_, number))
        known.push_back(number);
    known.push_back(current_);
    known.insert(known.end(), block_.begin(), block_.end());
    order_ = OrderOf(list_);
    ASSERT_GE(order_.size(), known.size());
    EXPECT_EQ(Numbers(order_.begin(), order_.begin() + static_cast<std::ptrdiff_t>(known.size())),
              known);
    EXPECT_EQ(Sorted(order_), Sorted(in_list_));
  }

  void Check() {
    EXPECT_EQ(list_.CurrentNumber(), current_);
    EXPECT_EQ(list_.Size(), in_list_.size());
    EXPECT_EQ(ListOf(list_), in_list_);
    EXPECT_EQ(OrderOf(list_), Order());
    EXPECT_EQ(list_.IsShuffled(), shuffled_);
    if (in_list_.empty()) return;
    EXPECT_EQ(list_.Place(), IndexIn(in_list_, current_));
    const std::size_t position = IndexIn(Order(), current_);
    EXPECT_EQ(list_.HasPrevious(), position > 0);
    EXPECT_EQ(list_.Upcoming(), in_list_.size() - position - 1);
    for (std::size_t k = 1; k < 2 * in_list_.size(); ++k) {
      std::optional<ListNumber> expected = 0;
      if (list_.Repeat() == RepeatMode::kOne)
        expected = current_;
      else if (position + k < in_list_.size())
        expected = Order()[position + k];
      else if (list_.Repeat() == RepeatMode::kAll)
        expected =
            shuffled_ ? std::nullopt : std::optional(in_list_[(position + k) % in_list_.size()]);
      EXPECT_EQ(list_.After(k).number, expected.value_or(list_.After(k).number));
    }
  }

  ListNumber LastNumber() const { return last_number_; }

 private:
  static std::size_t IndexIn(const Numbers& numbers, ListNumber number) {
    return static_cast<std::size_t>(std::find(numbers.begin(), numbers.end(), number) -
                                    numbers.begin());
  }
  const Numbers& Order() const { return shuffled_ ? order_ : in_list_; }
  bool IsUpcoming(ListNumber number) const {
    return Has(in_list_, number) && IndexIn(Order(), number) > IndexIn(Order(), current_);
  }
  /// Checks that added entries follow those that were added by kPlayNext, and that the others have
  /// kept their order.
  void ExpectDistributed(const Numbers& added, bool was_empty) {
    Numbers order = OrderOf(list_);
    const ListNumber before = block_.empty() ? current_ : block_.back();
    for (const ListNumber number : added) {
      EXPECT_TRUE(was_empty || IndexIn(order, number) > IndexIn(order, before));
    }
    Numbers old = order;
    for (const ListNumber number : added) std::erase(old, number);
    EXPECT_EQ(old, order_);
    order_ = order;
    EXPECT_EQ(Sorted(order_), Sorted(in_list_));
  }

  PlayList& list_;
  Numbers in_list_;
  Numbers order_;  ///< only with shuffle
  Numbers block_;  ///< the entries right after the current one that were added by kPlayNext
  std::set<ListNumber> played_;
  ListNumber current_ = 0;
  ListNumber last_number_ = 0;
  bool shuffled_ = false;
};

TEST(PlayList, AgreesWithALiteralModelOnRandomCommands) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto below = [&](std::size_t end) { return random() % end; };
    PlayList list(seed);
    Model model(list);
    const auto any_number = [&] { return ListNumber{below(model.LastNumber() + 2)}; };
    const auto some_numbers = [&] {
      Numbers numbers(below(4));
      for (ListNumber& number : numbers) number = any_number();
      return numbers;
    };
    for (int step = 0; step < 100; ++step) {
      const std::uint64_t revision = list.Revision();
      const Numbers order = OrderOf(list);
      const Numbers in_list = ListOf(list);
      const ListNumber current = list.CurrentNumber();
      const std::size_t command = below(16);
      SCOPED_TRACE("step " + std::to_string(step) + ", command " + std::to_string(command));
      switch (command) {
        case 0:
        case 1:
          model.Add(1 + below(3), kAtEnd);
          break;
        case 2:
        case 3:
          model.Add(1 + below(3), kPlayNext);
          break;
        case 4:
          model.Add(1 + below(3), static_cast<std::int64_t>(1 + any_number()));
          break;
        case 5:
          model.GoToPrevious();
          break;
        case 6:
          model.GoTo(any_number());
          break;
        case 7:
        case 8:
          model.Move(some_numbers(), any_number());
          break;
        case 9:
          model.Remove(some_numbers());
          break;
        case 10:
          model.SetShuffle(below(2) == 0);
          break;
        case 11:
          list.SetRepeat(static_cast<RepeatMode>(below(3)));
          break;
        case 12:
          if (below(10) == 0) model.Clear();
          break;
        default:
          model.GoToNext();
      }
      model.Check();
      const bool same =
          order == OrderOf(list) && in_list == ListOf(list) && current == list.CurrentNumber();
      EXPECT_TRUE(same || list.Revision() != revision);
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST(PlayList, PreviousKeepsTheFilesThatWereAddedToPlayNextBeforeTheOthers) {
  for (const bool shuffle : {false, true}) {
    PlayList list(1);
    list.SetShuffle(shuffle);
    list.Add(Paths(10), kAtEnd);
    list.GoToNext();
    const ListNumber left = list.CurrentNumber();
    list.Add(Paths(2), kPlayNext);
    list.GoToPrevious();
    list.Add(Paths(1), kPlayNext);
    EXPECT_EQ(list.UpcomingNumbers(0, 4), (Numbers{left, 11, 12, 13}));
  }
}

TEST(PlayList, EachRoundWithShuffleHasAnotherOrder) {
  PlayList list(1);
  list.SetShuffle(true);
  list.SetRepeat(RepeatMode::kAll);
  list.Add(Paths(50), kAtEnd);
  std::set<Numbers> orders;
  for (int round = 0; round < 5; ++round) {
    Numbers order;
    for (std::size_t k = 0; k < list.Size(); ++k) {
      order.push_back(list.CurrentNumber());
      list.GoToNext();
    }
    EXPECT_EQ(Sorted(order).back(), 50U);
    EXPECT_EQ(std::set<ListNumber>(order.begin(), order.end()).size(), 50U);
    orders.insert(order);
  }
  EXPECT_EQ(orders.size(), 5U);
}

TEST(PlayList, EachEntryCanComeNextWhenTheListIsShuffled) {
  std::set<ListNumber> next;
  for (unsigned seed = 0; seed < 200; ++seed) {
    PlayList list(seed);
    list.SetShuffle(true);
    // As it is handed over: the first file, then the others in batches.
    for (int batch = 0; batch < 5; ++batch) list.Add(Paths(2), kAtEnd);
    next.insert(list.After(1).number);
  }
  EXPECT_EQ(next.size(), 9U);
}

TEST(PlayList, TheSameSeedGivesTheSameOrder) {
  PlayList one(7);
  PlayList other(7);
  for (PlayList* const list : {&one, &other}) {
    list->SetShuffle(true);
    list->Add(Paths(30), kAtEnd);
  }
  EXPECT_EQ(one.UpcomingNumbers(0, 30), other.UpcomingNumbers(0, 30));
}

TEST(PlayList, ABatchIsAddedAsAWholeOrNotAtAll) {
  constexpr std::size_t kPath = std::size_t{1} << 20;
  PlayList list;
  EXPECT_EQ(list.Add(std::vector<std::string>(300, std::string(kPath, 'a')), kAtEnd), 0U);
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.Revision(), 0U);
  EXPECT_EQ(list.Add(std::vector<std::string>(200, std::string(kPath, 'a')), kAtEnd), 1U);
  EXPECT_EQ(list.Add(std::vector<std::string>(100, std::string(kPath, 'a')), kPlayNext), 0U);
  EXPECT_EQ(list.Size(), 200U);
  // The room of removed entries is free again.
  list.Remove(list.UpcomingNumbers(0, 150));
  EXPECT_EQ(list.Add(std::vector<std::string>(100, std::string(kPath, 'a')), kAtEnd), 201U);
  list.Clear();
  EXPECT_EQ(list.Add({std::string(kMaxListBytes - 40, 'a')}, kAtEnd), 301U);
  EXPECT_FALSE(list.Add("b"));
}

TEST(PlayList, OneHundredThousandFilesAreAddedInBatches) {
  constexpr std::size_t kBatch = 650;
  for (const bool shuffle : {false, true}) {
    PlayList list(1);
    list.SetShuffle(shuffle);
    list.Add("/chosen");
    for (int batch = 0; batch < 77; ++batch) list.Add(Paths(kBatch), kAtEnd);
    for (int batch = 0; batch < 77; ++batch) EXPECT_NE(list.Add(Paths(kBatch), 1), 0U);
    EXPECT_EQ(list.Size(), 1 + 2 * 77 * kBatch);
    EXPECT_EQ(list.Place(), 77 * kBatch);
    EXPECT_EQ(list.Upcoming(), (shuffle ? 2 : 1) * 77 * kBatch);
    EXPECT_EQ(list.CurrentPath(), "/chosen");
  }
}

}  // namespace
}  // namespace tallow
