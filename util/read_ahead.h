// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "util/batch_threads.h"
#include "util/reader_count.h"
#include "util/wait_decision.h"

namespace tallow {

/// Maximum and minimum number of worker threads that ReadAhead begins with, unless there are fewer
/// batches. The minimum is above one even on one core, because the work is I/O-bound. ReaderCount
/// decides how many there are later.
inline constexpr unsigned kMaxReaders = 8;
inline constexpr unsigned kMinReaders = 2;

/// One call of ReadAhead: the part that runs on the calling thread.
///
/// Batch b uses slot b modulo the number of slots. A few batches per worker thread are queued, so
/// the threads run ahead by a limited number of questions. Before each batch that is consumed, the
/// call follows ReaderCount: it starts more threads, and queues more and smaller batches while the
/// disk is slow. Only the calling thread accesses the members; what the worker threads share is in
/// BatchThreads.
template <typename Ask, typename Reply, typename Consume, typename Instead>
class ReadAheadCall {
 public:
  /// See ReadAhead. Starts the worker threads.
  ReadAheadCall(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
                const Consume& consume, const WhileWaiting& waiting, const Instead& instead)
      : count_(count),
        run_(run),
        first_threads_(FirstThreads(BatchesOf(count, run))),
        slots_(std::min<std::size_t>(count, ReaderCount::kMost * kBatchesPerThread)),
        firsts_(slots_),
        ask_(ask),
        consume_(consume),
        waiting_(waiting),
        instead_(instead),
        threads_(std::make_shared<Threads>(answer, slots_, first_threads_)) {
    StartThreads(first_threads_);
  }
  ReadAheadCall(const ReadAheadCall&) = delete;
  ReadAheadCall& operator=(const ReadAheadCall&) = delete;
  /// Stops the worker threads, also when an exception ends the work.
  ~ReadAheadCall() { threads_->Stop(); }

  static std::size_t BatchesOf(std::size_t count, std::size_t run) {
    return (count + run - 1) / run;
  }

  void Work() {
    std::size_t added = 0;
    for (std::size_t batch = 0; batch < added || next_ < count_; ++batch) {
      const std::size_t size = FollowPace();
      const std::size_t end = batch + std::min(slots_, BatchesAhead());
      for (; next_ < count_ && added < end; ++added) Add(added, size);
      ConsumeBatch(batch);
    }
  }

 private:
  using Question = std::decay_t<decltype(std::declval<const Ask&>()(std::size_t{0}))>;
  using Answer =
      std::decay_t<decltype(std::declval<const Reply&>()(std::declval<const Question&>()))>;
  using Threads = BatchThreads<Question, Answer>;
  using Delivery = typename Threads::Delivery;

  static constexpr std::size_t kBatchesPerThread = 4;
  /// Maximum questions per batch while it is not known whether the disk is slow.
  static constexpr std::size_t kFirstRun = 8;

  static unsigned FirstThreads(std::size_t batches) {
    return static_cast<unsigned>(std::min<std::size_t>(
        std::clamp(std::thread::hardware_concurrency(), kMinReaders, kMaxReaders), batches));
  }

  std::size_t SlotOf(std::size_t batch) const { return batch % slots_; }
  /// The number of the first question of a batch.
  std::size_t FirstOf(std::size_t batch) const { return firsts_[SlotOf(batch)]; }
  std::size_t BatchesAhead() const { return std::max(running_, 1U) * kBatchesPerThread; }

  /// Starts threads until as many run as are wanted, or the system cannot create another.
  void StartThreads(unsigned wanted) {
    for (; running_ < wanted; ++running_) {
      if (Threads::Start(threads_)) continue;
      threads_->LimitToRunning();
      return;
    }
  }

  /// Starts the threads that the disk can use now. \returns the size of the next batches
  std::size_t FollowPace() {
    const typename Threads::State state = threads_->CurrentState();
    running_ = state.running;
    StartThreads(state.wanted);
    switch (state.pace) {
      case ReaderCount::Pace::kUnknown:
        return std::min(run_, kFirstRun);
      case ReaderCount::Pace::kSlow:
        // One question for a thread, so that all threads have one.
        return 1;
      case ReaderCount::Pace::kQuick:
        break;
    }
    return run_;
  }

  /// Makes the questions of a batch and hands them to the worker threads.
  void Add(std::size_t batch, std::size_t size) {
    firsts_[SlotOf(batch)] = next_;
    const std::size_t end = next_ + std::min(size, count_ - next_);
    std::vector<Question> questions;
    for (; next_ < end; ++next_) questions.push_back(ask_(next_));
    threads_->Add(SlotOf(batch), std::move(questions));
  }

  /// Consumes the answers of a batch: while the callback is in use, those of a slow disk as they
  /// come, otherwise all at once.
  void ConsumeBatch(std::size_t batch) {
    const std::size_t first_question = FirstOf(batch);
    std::size_t consumed = 0;
    for (bool is_last = false; !is_last;) {
      Delivery delivery = WaitFor(batch, consumed);
      for (auto&& answer : delivery.answers)
        consume_(first_question + consumed++, Answer(std::move(answer)));
      if (delivery.failure) std::rethrow_exception(delivery.failure);
      is_last = delivery.is_last;
    }
  }

  /// Waits for the answers of a batch, from index `first` on.
  Delivery WaitFor(std::size_t batch, std::size_t first) {
    if (running_ == 0) threads_->AnswerHere(SlotOf(batch));
    if (!waiting_) return threads_->WaitFor(SlotOf(batch), first);
    return threads_->WaitFor(SlotOf(batch), first, [&] { return Idle(batch, first); });
  }

  /// Calls the callback of a thread that waits for the answer at an index of a batch.
  /// \returns false when that answer can be delivered
  bool Idle(std::size_t batch, std::size_t index) {
    const std::optional<std::chrono::milliseconds> waited =
        threads_->OutstandingFor(SlotOf(batch), index);
    if (!waited) return false;
    if (waiting_(FirstOf(batch) + index, *waited) == WaitDecision::kGiveUp) GiveUp(batch, index);
    return true;
  }

  /// Gives up the question at an index of a batch, and replaces the thread that works on it.
  void GiveUp(std::size_t batch, std::size_t index) {
    if (!threads_->GiveUp(SlotOf(batch), index, instead_(FirstOf(batch) + index))) return;
    if (Threads::Start(threads_)) return;
    --running_;
    threads_->LimitToRunning();
    threads_->AnswerHere(SlotOf(batch));
  }

  const std::size_t count_;
  const std::size_t run_;
  const unsigned first_threads_;
  const std::size_t slots_;
  std::vector<std::size_t> firsts_;  ///< by slot, see FirstOf
  std::size_t next_ = 0;             ///< number of the next question to make
  const Ask& ask_;
  const Consume& consume_;
  const WhileWaiting& waiting_;
  const Instead& instead_;
  const std::shared_ptr<Threads> threads_;
  /// Worker threads that were started, and have neither ended nor been abandoned.
  unsigned running_ = 0;
};

/// Answers questions about the disk on worker threads and consumes the answers in order.
///
/// For work that mostly waits for the disk but whose results must be used in order (the tags of
/// songs in record order, the listings of folders). The calling thread makes the questions and
/// consumes the answers in the order of the questions. Worker threads answer the questions in
/// batches, at most four batches per thread ahead of the caller; while the disk is slow, in single
/// questions and on more threads, see ReaderCount. If a disk never answers, its worker thread is
/// abandoned and keeps running, so answering must only access the question and what `answer` itself
/// owns.
///
/// \param count   number of questions
/// \param run     maximum questions per batch; with fewer than two batches no thread is started,
///        unless `waiting` is given
/// \param ask     ask(i) makes question number i, from 0 to count - 1
/// \param answer  answer(question); a copy of it is called on several threads at once
/// \param consume consume(i, answer)
/// \param waiting called repeatedly while the caller waits for the next answer, so that it can
///        process window events; may be empty
/// \param instead instead(i) returns the answer to a question that was given up. It may be called
///        for a question that is answered anyway, so it must have no side effects
///
/// An exception thrown by any of these ends the work and is rethrown from this call. If the system
/// cannot create threads, the questions are answered on the calling thread.
template <typename Ask, typename Reply, typename Consume, typename Instead>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume, const WhileWaiting& waiting, const Instead& instead) {
  using Call = ReadAheadCall<Ask, Reply, Consume, Instead>;
  if (count == 0) return;
  if (Call::BatchesOf(count, run) < 2 && !waiting) {
    for (std::size_t i = 0; i < count; ++i) consume(i, answer(ask(i)));
    return;
  }
  Call(count, run, ask, answer, consume, waiting, instead).Work();
}

/// ReadAhead that never gives up a question.
template <typename Ask, typename Reply, typename Consume>
void ReadAhead(std::size_t count, std::size_t run, const Ask& ask, const Reply& answer,
               const Consume& consume) {
  ReadAhead(count, run, ask, answer, consume, WhileWaiting(),
            [&](std::size_t i) { return answer(ask(i)); });
}

}  // namespace tallow
