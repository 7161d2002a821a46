// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/cover_loader.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <utility>

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

#include "details/cover_reader.h"
#include "util/detached_threads.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Pixels of a picture before it is scaled. Decoding one with more would use over 100 MB.
constexpr std::int64_t kMaxPixels = 25'000'000;

/// The formats that are decoded. Others, such as SVG, can do more than hold pixels.
constexpr const char* kFormats[] = {"jpeg", "jpg", "png", "gif", "bmp", "webp"};

}  // namespace

QImage DecodeCover(const std::string& bytes, int size) {
  if (bytes.empty()) return {};
  QByteArray file = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&file);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  const QByteArray format = reader.format();
  if (std::ranges::none_of(kFormats, [&](const char* known) { return format == known; })) return {};
  const QSize whole = reader.size();
  if (whole.isEmpty() || std::int64_t{whole.width()} * whole.height() > kMaxPixels) return {};
  if (std::max(whole.width(), whole.height()) > size)
    reader.setScaledSize(whole.scaled(size, size, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  return reader.read();
}

/// What the object and its thread share. An abandoned thread keeps it alive.
struct CoverLoader::State {
  struct Request {
    std::string path;
    int size = 0;
    unsigned number = 0;
  };

  explicit State(Read read_) : read(std::move(read_)) {}

  const Read read;
  std::mutex mutex;
  DetachedThreads threads{mutex};
  /// Number of the newest request; 0 at the end. Written while the mutex is locked.
  std::atomic<unsigned> newest{1};
  // Guarded by the mutex:
  std::optional<Request> next;
  bool is_working = false;
  CoverLoader* owner = nullptr;  ///< null once it is destroyed
};

CoverLoader::CoverLoader(Read read, QObject* parent)
    : QObject(parent), state_(std::make_shared<State>(std::move(read))) {
  state_->owner = this;
}

CoverLoader::~CoverLoader() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->owner = nullptr;
    state_->next.reset();
    state_->newest = 0;
  }
  state_->threads.WaitForEnd(kAbandonAfter);
}

void CoverLoader::Load(const std::string& path, int size) {
  {
    const std::lock_guard lock(state_->mutex);
    ++state_->newest;
    state_->next = State::Request{.path = path, .size = size, .number = state_->newest};
    if (std::exchange(state_->is_working, true)) return;
  }
  if (state_->threads.Start([state = state_] { Work(state); })) return;
  const std::lock_guard lock(state_->mutex);
  state_->is_working = false;
}

void CoverLoader::Cancel() {
  const std::lock_guard lock(state_->mutex);
  ++state_->newest;
  state_->next.reset();
}

void CoverLoader::Work(const std::shared_ptr<State>& state) {
  std::unique_lock lock(state->mutex);
  while (state->next) {
    const State::Request request = *std::exchange(state->next, std::nullopt);
    lock.unlock();
    const auto stopped = [&] { return state->newest != request.number; };
    const std::string file = state->read(request.path, stopped);
    QImage cover = stopped() ? QImage() : DecodeCover(file, request.size);
    // The picture of the tags may be damaged, while that of the folder is not.
    if (cover.isNull() && !file.empty() && !stopped())
      cover = DecodeCover(ReadFolderPicture(std::string(FolderOfPath(request.path))), request.size);
    lock.lock();
    // Queued: the owner takes the cover on its own thread, unless it is destroyed before.
    if (CoverLoader* const owner = state->owner; owner != nullptr && !stopped())
      QMetaObject::invokeMethod(
          owner, [owner, number = request.number, cover] { owner->Deliver(number, cover); },
          Qt::QueuedConnection);
  }
  state->is_working = false;
  state->threads.RemoveLocked();
}

void CoverLoader::Deliver(unsigned number, const QImage& cover) {
  if (number == state_->newest) emit Loaded(cover);
}

}  // namespace tallow
