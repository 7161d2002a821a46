// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "util/threads.h"
#include "util/wait_decision.h"

namespace tallow {

/// Most threads that ReadAhead starts, and the fewest: reading waits even on a machine of one core.
inline constexpr unsigned kMaxReaders = 8;
inline constexpr unsigned kMinReaders = 2;

/// How long a thread that has windows waits before it lets them live.
inline constexpr std::chrono::milliseconds kEventInterval{40};

/// How long the end of ReadAhead waits for threads that are still being answered before it leaves them. The
/// windows stand still meanwhile.
inline constexpr std::chrono::milliseconds kLeaveAfter{80};

/// What the threads of a ReadAhead share. It outlives the call when threads have to be left alone.
template <typename Question, typename Answer>
class QuestionsAhead {
 public:
  using Clock = std::chrono::steady_clock;
  using Put = std::function<Answer(const Question&)>;

  /// Some questions that a thread takes at once.
  struct Run {
    std::vector<Question> questions;
    std::vector<Answer> answers;  ///< to the first of them
    std::exception_ptr failure;   ///< instead of the next answer
    Clock::time_point put_at{};   ///< when the question behind the answers was put
    bool is_put = false;          ///< and is being answered
    unsigned thread =
        0;  ///< the number of the thread it belongs to, which changes when that is left
    bool IsDone() const { return failure || answers.size() == questions.size(); }
  };

  QuestionsAhead(Put put, std::size_t ahead) : put_(std::move(put)), runs_(ahead) {}

  /// Starts one more thread. \returns false when the system gives no more
  static bool StartThread(const std::shared_ptr<QuestionsAhead>& shared) {
    {
      const std::lock_guard lock(shared->mutex_);
      ++shared->threads_;
    }
    std::thread thread = tallow::StartThread([shared] { shared->Work(); });
    if (thread.joinable()) {
      thread.detach();
      return true;
    }
    const std::lock_guard lock(shared->mutex_);
    --shared->threads_;
    return false;
  }

  /// Answers the open questions of a run on this thread. Needs the lock, which is given up meanwhile.
  void AnswerHere(Run& run, std::unique_lock<std::mutex>& lock) {
    const unsigned own = run.thread;
    while (!stop_ && !run.IsDone()) {
      const Question question = std::move(run.questions[run.answers.size()]);
      run.put_at = Clock::now();
      run.is_put = true;
      lock.unlock();
      Result result = PutOne(question);
      lock.lock();
      if (run.thread != own) return;
      run.is_put = false;
      if (result.failure)
        run.failure = result.failure;
      else
        run.answers.push_back(std::move(*result.answer));
    }
  }

  const Put put_;
  std::mutex mutex_;  ///< guards all below
  std::condition_variable changed_;
  std::vector<Run> runs_;            ///< run number r lies at r modulo their number
  std::deque<std::size_t> waiting_;  ///< places in runs_ of those that no thread has taken
  unsigned threads_ = 0;             ///< that have not ended, and were not left
  bool stop_ = false;

 private:
  struct Result {
    std::optional<Answer> answer;
    std::exception_ptr failure;
  };
  Result PutOne(const Question& question) const {
    try {
      return {put_(question), nullptr};
    } catch (...) {
      return {std::nullopt, std::current_exception()};
    }
  }

  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return stop_ || !waiting_.empty(); });
      if (stop_) break;
      Run& run = runs_[waiting_.front()];
      waiting_.pop_front();
      const unsigned own = run.thread;
      AnswerHere(run, lock);
      // Who was left alone is no longer counted.
      if (run.thread != own) return;
      changed_.notify_all();
    }
    --threads_;
    changed_.notify_all();
  }
};

/// Puts questions to the disk on several threads and uses the answers one after another.
///
/// For work whose parts wait on the disk but whose results have to be taken in order (the tags of songs that
/// are filed in record order, the listings of folders). This thread makes the questions; a few others answer
/// them, a run of them at a time, and never more than some runs ahead; this thread consumes the answers in the
/// order of the questions. A disk may never answer. Then the thread that waits for it is left alone, which is
/// why answering must not touch anything but the question and what `answer` itself holds.
///
/// \param count   how many there are
/// \param run     how many a thread takes at once; fewer than two runs in all start no thread, unless
///                `waiting` is given
/// \param ask     ask(i) makes question number i, from 0 to count - 1
/// \param answer  answer(question); a copy of it is called from several threads at once
/// \param consume consume(i, answer)
/// \param waiting called while there is nothing to consume yet, so that a disk that does not answer does not
///                keep a window from living; may be empty
/// \param instead instead(i): the answer to a question that was given up
///
/// An exception of any of them ends the work and comes out of this call. Where the system gives no threads,
/// this one answers.
template <typename Ask, typename Reply, typename Consume, typename Instead>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume, const WhileWaiting& waiting, const Instead& instead) {
  using Question = std::decay_t<decltype(ask(std::size_t{0}))>;
  using Answer = std::decay_t<decltype(answer(std::declval<const Question&>()))>;
  using Shared = QuestionsAhead<Question, Answer>;
  const std::size_t runs = (count + run - 1) / run;
  if (count == 0) return;
  if (runs < 2 && !waiting) {
    for (std::size_t i = 0; i < count; ++i) consume(i, answer(ask(i)));
    return;
  }
  const std::size_t threads = std::min<std::size_t>(
      std::clamp(std::thread::hardware_concurrency(), kMinReaders, kMaxReaders), runs);
  const std::size_t ahead = threads * 4;
  const auto shared = std::make_shared<Shared>(answer, ahead);
  std::size_t started = 0;
  while (started < threads && Shared::StartThread(shared)) ++started;

  // Leaves the threads that are still being answered when this call ends early.
  const auto end = [&shared] {
    std::unique_lock lock(shared->mutex_);
    shared->stop_ = true;
    shared->changed_.notify_all();
    const auto ended = [&shared] { return shared->threads_ == 0; };
    if (shared->changed_.wait_for(lock, kLeaveAfter, ended)) return;
    for (auto& other : shared->runs_) {
      if (!other.is_put) continue;
      ++other.thread;
      --shared->threads_;
    }
    shared->changed_.wait(lock, ended);
  };

  const auto fill = [&](std::size_t number) {
    auto& slot = shared->runs_[number % ahead];
    std::vector<Question> questions;
    for (std::size_t i = number * run; i < std::min(count, (number + 1) * run); ++i)
      questions.push_back(ask(i));
    const std::lock_guard lock(shared->mutex_);
    slot.questions = std::move(questions);
    slot.answers.clear();
    slot.answers.reserve(slot.questions.size());
    shared->waiting_.push_back(number % ahead);
    shared->changed_.notify_all();
  };

  // Returns when there are more answers than have been used, or there will be none.
  const auto wait_for = [&](std::size_t number, std::size_t used) {
    auto& slot = shared->runs_[number % ahead];
    std::unique_lock lock(shared->mutex_);
    const auto answer_here = [&] {
      std::erase(shared->waiting_, number % ahead);
      shared->AnswerHere(slot, lock);
    };
    if (started == 0) answer_here();
    while (!slot.IsDone()) {
      if (!waiting) {
        shared->changed_.wait(lock, [&] { return slot.IsDone(); });
        break;
      }
      if (shared->changed_.wait_for(lock, kEventInterval, [&] { return slot.IsDone(); })) break;
      if (slot.answers.size() > used) break;
      const std::size_t done = slot.answers.size();
      const auto waited = slot.is_put ? std::chrono::duration_cast<std::chrono::milliseconds>(
                                            Shared::Clock::now() - slot.put_at)
                                      : std::chrono::milliseconds(0);
      lock.unlock();
      const WaitDecision decision = waiting(number * run + done, waited);
      lock.lock();
      if (decision == WaitDecision::kWait || !slot.is_put || slot.answers.size() != done) continue;
      // The thread is left alone, another one takes its place.
      ++slot.thread;
      slot.is_put = false;
      --shared->threads_;
      slot.answers.push_back(instead(number * run + done));
      if (!slot.IsDone()) shared->waiting_.push_front(number % ahead);
      lock.unlock();
      const bool replaced = Shared::StartThread(shared);
      lock.lock();
      if (!replaced && !slot.IsDone()) answer_here();
    }
    return lock;
  };

  try {
    std::size_t filled = 0;
    for (std::size_t r = 0; r < runs; ++r) {
      for (; filled < std::min(runs, r + ahead); ++filled) fill(filled);
      std::size_t used = 0;
      for (bool is_done = false; !is_done;) {
        std::vector<Answer> answers;
        std::exception_ptr failure;
        {
          const std::unique_lock lock = wait_for(r, used);
          auto& slot = shared->runs_[r % ahead];
          const auto first = slot.answers.begin() + static_cast<std::ptrdiff_t>(used);
          answers.assign(std::make_move_iterator(first),
                         std::make_move_iterator(slot.answers.end()));
          failure = slot.failure;
          is_done = slot.IsDone();
        }
        for (auto&& answer : answers) consume(r * run + used++, Answer(std::move(answer)));
        if (failure) std::rethrow_exception(failure);
      }
    }
  } catch (...) {
    end();
    throw;
  }
  end();
}

/// ReadAhead that never gives a question up.
template <typename Ask, typename Reply, typename Consume>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume) {
  ReadAhead(count, run, ask, answer, consume, WhileWaiting(),
            [&](std::size_t i) { return answer(ask(i)); });
}

}  // namespace tallow
