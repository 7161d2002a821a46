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
#include <utility>
#include <vector>

#include "util/detached_threads.h"
#include "util/idle_wait.h"
#include "util/reader_count.h"

namespace tallow {

/// Worker threads that answer batches of questions for ReadAhead, the caller.
///
/// The caller puts batches into slots, and removes their answers in order. A thread that has begun
/// a batch answers all of it, one question after another. It is abandoned when the caller gives up
/// the question that it is working on; the batch then continues on another thread. The threads
/// measure how long the questions take, from which ReaderCount decides how many threads there
/// should be: the caller starts more, and threads that are too many end after their batch.
///
/// Invariant: the mutex guards all members but `answer_`. It is unlocked while a question is
/// answered, so nothing that may block runs under it, and a thread that never returns holds neither
/// the mutex nor a question of a slot: it has moved its question out. Functions named ...Locked
/// require the mutex to be locked and leave it locked; all others lock it themselves. A thread
/// locks it once for each question: it stores an answer and begins the next question under one
/// lock.
template <typename Question, typename Answer>
class BatchThreads {
 public:
  /// Answers that the caller removes from a slot.
  struct Delivery {
    std::vector<Answer> answers;
    std::exception_ptr failure;  ///< thrown by the question after the last answer
    bool is_last = false;        ///< the batch has no further answers
  };

  /// How the threads are doing.
  struct State {
    unsigned wanted = 0;   ///< number of threads that there should be
    unsigned running = 0;  ///< threads that have not ended and were not abandoned
    ReaderCount::Pace pace = ReaderCount::Pace::kUnknown;
  };

  /// \param answer  a copy of it is called on several threads at once
  /// \param threads the number of threads to begin with
  BatchThreads(std::function<Answer(const Question&)> answer, std::size_t slots, unsigned threads)
      : answer_(std::move(answer)),
        threads_(mutex_),
        count_(threads, ReaderCount::kSlowFile),
        slots_(slots) {}

  /// Starts one more thread. \returns false when the system cannot create a thread
  static bool Start(const std::shared_ptr<BatchThreads>& shared) {
    return shared->threads_.Start([shared] { shared->Work(); });
  }

  State CurrentState() {
    const std::lock_guard lock(mutex_);
    return {count_.Wanted(), threads_.CountLocked(), count_.CurrentPace()};
  }

  /// Stops asking for more threads than there are now, because the system cannot create another.
  void LimitToRunning() {
    const std::lock_guard lock(mutex_);
    count_.LimitTo(threads_.CountLocked());
  }

  /// Puts a batch into a slot whose answers have all been removed.
  void Add(std::size_t slot, std::vector<Question> questions) {
    const std::lock_guard lock(mutex_);
    Batch& batch = slots_[slot];
    batch.questions = std::move(questions);
    batch.answers.clear();
    batch.answers.reserve(batch.questions.size());
    waiting_.push_back(slot);
    work_.notify_one();
  }

  /// Answers a batch on the calling thread, unless another thread has begun it.
  void AnswerHere(std::size_t slot) {
    for (std::optional<Job> job = Claim(slot); job;)
      job = StoreAndContinue(*job, AnswerOf(job->question));
  }

  /// Waits until a batch is done, and removes its answers from index `first` on.
  Delivery WaitFor(std::size_t slot, std::size_t first) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return AwaitsLocked(slots_[slot]); });
    return DeliverLocked(slot, first);
  }

  /// WaitFor that calls an idle callback every kEventInterval, see WaitWithIdleCallback. When
  /// `idle` ends the wait, only the answers found so far are removed.
  template <typename Idle>
  Delivery WaitFor(std::size_t slot, std::size_t first, const Idle& idle) {
    return WaitWithIdleCallback(
        mutex_, changed_, [&] { return AwaitsLocked(slots_[slot]); }, idle,
        [&] { return DeliverLocked(slot, first); });
  }

  /// How long a thread has been working on the question at an index of a batch, 0 when none has
  /// begun it; no value when answers can be delivered from there, or the batch is done.
  std::optional<std::chrono::milliseconds> OutstandingFor(std::size_t slot, std::size_t index) {
    const std::lock_guard lock(mutex_);
    const Batch& batch = slots_[slot];
    if (batch.IsDone() || batch.answers.size() > index) return std::nullopt;
    if (!batch.is_running) return std::chrono::milliseconds(0);
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - batch.started_at);
  }

  /// Gives up a question: abandons its thread, and queues the rest of its batch for another one.
  ///
  /// \param index   of the question in its batch
  /// \param instead the answer to store for it
  /// \returns false when the question was answered meanwhile, or has not been begun
  bool GiveUp(std::size_t slot, std::size_t index, Answer instead) {
    const std::lock_guard lock(mutex_);
    Batch& batch = slots_[slot];
    if (!batch.is_running || batch.answers.size() != index) return false;
    AbandonLocked(batch);
    batch.answers.push_back(std::move(instead));
    if (batch.IsDone()) return true;
    waiting_.push_front(slot);
    work_.notify_one();
    return true;
  }

  /// Stops all threads; abandons those that are still busy after kAbandonAfter.
  void Stop() {
    RequestStop();
    if (threads_.WaitForEnd(kAbandonAfter)) return;
    AbandonBusy();
    threads_.WaitForEnd();
  }

 private:
  using Clock = std::chrono::steady_clock;

  struct Batch {
    std::vector<Question> questions;
    std::vector<Answer> answers;   ///< to the first questions of the batch
    std::exception_ptr failure;    ///< thrown by the question after the last answer
    Clock::time_point started_at;  ///< when the question after the last answer was started
    bool is_running = false;       ///< a thread is working on that question now
    /// Threads abandoned in this slot. A thread that finds another number than when it began its
    /// question has been abandoned.
    unsigned abandoned = 0;
    bool IsDone() const { return failure || answers.size() == questions.size(); }
  };

  /// A question that a thread is working on.
  struct Job {
    Batch* batch;
    unsigned abandoned;  ///< Batch::abandoned when the question was begun
    Question question;
  };

  /// What became of a question: one of the two.
  struct Outcome {
    std::optional<Answer> answer;
    std::exception_ptr failure;
  };

  void Work() {
    for (std::optional<Job> job = NextJob(); job;)
      job = StoreAndTurnToNext(*job, AnswerOf(job->question));
  }

  Outcome AnswerOf(const Question& question) const {
    try {
      return {answer_(question), nullptr};
    } catch (...) {
      return {std::nullopt, std::current_exception()};
    }
  }

  /// Waits for a batch and begins it. \returns no value when the thread has to end
  std::optional<Job> NextJob() {
    std::unique_lock lock(mutex_);
    work_.wait(lock, [this] { return HasNextLocked(); });
    return BeginNextLocked();
  }

  /// Stores an outcome, and begins the next question of the batch, or waits for another batch.
  /// \returns no value when the thread has to end
  std::optional<Job> StoreAndTurnToNext(const Job& done, Outcome outcome) {
    const Clock::time_point now = Clock::now();
    std::unique_lock lock(mutex_);
    if (!StoreLocked(done, std::move(outcome))) return std::nullopt;
    count_.Add(done.batch->started_at, now);
    if (std::optional<Job> job = BeginLocked(*done.batch, now)) return job;
    if (done.batch == awaited_) changed_.notify_one();
    if (threads_.CountLocked() > std::max(count_.Wanted(), 1U)) {
      threads_.RemoveLocked();
      return std::nullopt;
    }
    work_.wait(lock, [this] { return HasNextLocked(); });
    return BeginNextLocked();
  }

  /// Begins a batch that no thread has begun.
  std::optional<Job> Claim(std::size_t slot) {
    const std::lock_guard lock(mutex_);
    if (std::erase(waiting_, slot) == 0) return std::nullopt;
    return BeginLocked(slots_[slot]);
  }

  /// Stores an outcome, and begins the next question of the batch.
  std::optional<Job> StoreAndContinue(const Job& done, Outcome outcome) {
    const std::lock_guard lock(mutex_);
    if (!StoreLocked(done, std::move(outcome))) return std::nullopt;
    return BeginLocked(*done.batch);
  }

  bool HasNextLocked() const { return stop_ || !waiting_.empty(); }

  /// Whether a batch is done that the caller waits for; a thread that ends it wakes the caller.
  bool AwaitsLocked(const Batch& batch) {
    awaited_ = &batch;
    return batch.IsDone();
  }

  /// Begins the batch that waits for longest; when stopped, counts the thread as ended.
  std::optional<Job> BeginNextLocked() {
    if (stop_) {
      threads_.RemoveLocked();
      return std::nullopt;
    }
    Batch& batch = slots_[waiting_.front()];
    waiting_.pop_front();
    return BeginLocked(batch);
  }

  /// Begins the first unanswered question of a batch; no value when there is none, and when
  /// stopped.
  std::optional<Job> BeginLocked(Batch& batch, Clock::time_point now = Clock::now()) {
    if (stop_ || batch.IsDone()) return std::nullopt;
    batch.started_at = now;
    batch.is_running = true;
    return Job{&batch, batch.abandoned, std::move(batch.questions[batch.answers.size()])};
  }

  /// \returns false when the thread was abandoned, and the outcome is therefore not stored
  bool StoreLocked(const Job& done, Outcome outcome) {
    Batch& batch = *done.batch;
    if (batch.abandoned != done.abandoned) return false;
    batch.is_running = false;
    if (outcome.failure)
      batch.failure = outcome.failure;
    else
      batch.answers.push_back(std::move(*outcome.answer));
    return true;
  }

  Delivery DeliverLocked(std::size_t slot, std::size_t first) {
    Batch& batch = slots_[slot];
    const auto begin = batch.answers.begin() + static_cast<std::ptrdiff_t>(first);
    return {.answers = std::vector<Answer>(std::make_move_iterator(begin),
                                           std::make_move_iterator(batch.answers.end())),
            .failure = batch.failure,
            .is_last = batch.IsDone()};
  }

  void RequestStop() {
    const std::lock_guard lock(mutex_);
    stop_ = true;
    work_.notify_all();
  }

  void AbandonBusy() {
    const std::lock_guard lock(mutex_);
    for (Batch& batch : slots_)
      if (batch.is_running) AbandonLocked(batch);
  }

  void AbandonLocked(Batch& batch) {
    ++batch.abandoned;
    batch.is_running = false;
    threads_.RemoveLocked();
  }

  const std::function<Answer(const Question&)> answer_;
  std::mutex mutex_;
  std::condition_variable work_;     ///< a batch is waiting, or the threads have to stop
  std::condition_variable changed_;  ///< the batch that the caller waits for is done
  DetachedThreads threads_;          ///< those that have not ended and were not abandoned
  ReaderCount count_;
  const Batch* awaited_ = nullptr;  ///< the batch that the caller has last waited for
  std::vector<Batch> slots_;
  std::deque<std::size_t> waiting_;  ///< slots of batches that no thread has begun
  bool stop_ = false;
};

}  // namespace tallow
