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

/// Most and fewest worker threads that ReadAhead starts. Two even on one core, because the work is
/// I/O-bound.
inline constexpr unsigned kMaxReaders = 8;
inline constexpr unsigned kMinReaders = 2;

/// How long a thread with windows waits before it calls the callback that processes window events.
inline constexpr std::chrono::milliseconds kEventInterval{40};

/// How long ReadAhead waits at its end for busy worker threads before it abandons them. No window
/// events are processed meanwhile.
inline constexpr std::chrono::milliseconds kAbandonAfter{80};

/// State shared by the caller and the worker threads of a ReadAhead. It outlives the call when
/// worker threads are abandoned.
template <typename Question, typename Answer>
class ReadAheadState {
 public:
  using Clock = std::chrono::steady_clock;
  using Put = std::function<Answer(const Question&)>;

  /// A batch of questions for one worker thread.
  struct Run {
    std::vector<Question> questions;
    std::vector<Answer> answers;     ///< to the first questions of the batch
    std::exception_ptr failure;      ///< thrown by the question after the last answer
    Clock::time_point started_at{};  ///< when the question after the last answer was started
    bool is_running = false;         ///< a worker thread is working on that question now
    /// Number of the worker thread of this run; incremented when that thread is abandoned.
    unsigned thread = 0;
    bool IsDone() const { return failure || answers.size() == questions.size(); }
  };

  ReadAheadState(Put put, std::size_t ahead) : put_(std::move(put)), runs_(ahead) {}

  /// Starts one more worker thread. \returns false when the system cannot create a thread
  static bool StartThread(const std::shared_ptr<ReadAheadState>& shared) {
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

  /// Answers the unanswered questions of a run on the calling thread. The caller must hold the
  /// lock, which is released while a question is answered.
  void AnswerHere(Run& run, std::unique_lock<std::mutex>& lock) {
    const unsigned own = run.thread;
    while (!stop_ && !run.IsDone()) {
      const Question question = std::move(run.questions[run.answers.size()]);
      run.started_at = Clock::now();
      run.is_running = true;
      lock.unlock();
      Result result = PutOne(question);
      lock.lock();
      if (run.thread != own) return;
      run.is_running = false;
      if (result.failure)
        run.failure = result.failure;
      else
        run.answers.push_back(std::move(*result.answer));
    }
  }

  const Put put_;
  std::mutex mutex_;  ///< guards all below
  std::condition_variable changed_;
  std::vector<Run> runs_;            ///< ring buffer: run r is at index r modulo its size
  std::deque<std::size_t> waiting_;  ///< indexes in runs_ of runs without a thread
  unsigned threads_ = 0;             ///< worker threads that have not ended and were not abandoned
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
      // threads_ no longer counts an abandoned thread.
      if (run.thread != own) return;
      changed_.notify_all();
    }
    --threads_;
    changed_.notify_all();
  }
};

/// Answers questions about the disk on worker threads and consumes the answers in order.
///
/// For work that mostly waits for the disk but whose results must be used in order (the tags of
/// songs in record order, the listings of folders). The calling thread makes the questions and
/// consumes the answers in the order of the questions. A few worker threads answer the questions in
/// batches (runs), at most four runs per thread ahead of the caller. If a disk never answers, its
/// worker thread is abandoned and keeps running, so answering must only access the question and
/// what `answer` itself owns.
///
/// \param count   number of questions
/// \param run     questions per batch; with fewer than two batches no thread is started, unless
///        `waiting` is given
/// \param ask     ask(i) makes question number i, from 0 to count - 1
/// \param answer  answer(question); a copy of it is called on several threads at once
/// \param consume consume(i, answer)
/// \param waiting called repeatedly while the caller waits for the next answer, so that it can
///        process window events; may be empty
/// \param instead instead(i) is the answer to a question that was given up
///
/// An exception thrown by any of these ends the work and is rethrown from this call. If the system
/// cannot create threads, the questions are answered on the calling thread.
template <typename Ask, typename Reply, typename Consume, typename Instead>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume, const WhileWaiting& waiting, const Instead& instead) {
  using Question = std::decay_t<decltype(ask(std::size_t{0}))>;
  using Answer = std::decay_t<decltype(answer(std::declval<const Question&>()))>;
  using Shared = ReadAheadState<Question, Answer>;
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

  // Stops the worker threads, and abandons those that are still busy after kAbandonAfter.
  const auto end = [&shared] {
    std::unique_lock lock(shared->mutex_);
    shared->stop_ = true;
    shared->changed_.notify_all();
    const auto ended = [&shared] { return shared->threads_ == 0; };
    if (shared->changed_.wait_for(lock, kAbandonAfter, ended)) return;
    for (auto& other : shared->runs_) {
      if (!other.is_running) continue;
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

  // Waits until the run has more than `used` answers or is done. Returns the lock.
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
      const auto waited = slot.is_running ? std::chrono::duration_cast<std::chrono::milliseconds>(
                                                Shared::Clock::now() - slot.started_at)
                                          : std::chrono::milliseconds(0);
      lock.unlock();
      const WaitDecision decision = waiting(number * run + done, waited);
      lock.lock();
      if (decision == WaitDecision::kWait || !slot.is_running || slot.answers.size() != done)
        continue;
      // Abandon the worker thread and start another one in its place.
      ++slot.thread;
      slot.is_running = false;
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

/// ReadAhead that never gives up a question.
template <typename Ask, typename Reply, typename Consume>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume) {
  ReadAhead(count, run, ask, answer, consume, WhileWaiting(),
            [&](std::size_t i) { return answer(ask(i)); });
}

}  // namespace tallow
