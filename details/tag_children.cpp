// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_children.h"

#include <algorithm>
#include <cstdint>
#include <thread>
#include <utility>

#include "details/file_kind.h"
#include "details/tag_reader.h"
#include "util/input_file.h"

namespace tallow {
namespace {

/// At both ends of a file, and behind an ID3v2 tag.
constexpr std::size_t kBytesOfAnEnd = 4096;

/// Of an ID3v2 tag. Larger ones are left to the child.
constexpr std::uint64_t kMaxTagAhead = std::uint64_t{1} << 20U;

/// Reads the bytes of the tags of most files, without using them.
void ReadTagBytes(const std::string& path) {
  const auto file = InputFile::Open(path);
  if (file == nullptr) return;
  std::string bytes(kBytesOfAnEnd, '\0');
  bytes.resize(file->ReadAt(0, bytes));
  const std::uint64_t tag = std::min(Id3v2Length(bytes), kMaxTagAhead);
  if (tag > kBytesOfAnEnd) {
    bytes.resize(static_cast<std::size_t>(tag));
    file->ReadAt(kBytesOfAnEnd, bytes);
  }
  const std::uint64_t size = file->Stamp().size;
  if (size <= kBytesOfAnEnd) return;
  bytes.resize(kBytesOfAnEnd);
  file->ReadAt(size - kBytesOfAnEnd, bytes);
}

/// Returns when the disk of a file has answered.
void WaitForDisk(const std::string& path) {
  char byte = 0;
  if (const auto file = InputFile::Open(path)) file->ReadAt(0, {&byte, 1});
}

}  // namespace

std::size_t TagChildren::DefaultChildren() noexcept {
  constexpr std::size_t kFewest = 2;
  constexpr std::size_t kMost = 8;
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), kFewest, kMost);
}

TagChildren::TagChildren(ChildSettings settings, std::size_t max_children)
    : settings_(std::move(settings)), max_children_(max_children) {}

void TagChildren::GiveBack::operator()(ChildReader* reader) const {
  const std::lock_guard lock(children->mutex_);
  children->idle_.emplace_back(reader);
  children->became_idle_.notify_one();
}

bool TagChildren::AreAllBusy() {
  const std::lock_guard lock(mutex_);
  return idle_.empty() && made_ == max_children_;
}

TagChildren::Loan TagChildren::Borrow() {
  std::unique_lock lock(mutex_);
  became_idle_.wait(lock, [this] { return !idle_.empty() || made_ < max_children_; });
  if (idle_.empty()) {
    Loan made(new ChildReader(settings_), {this});
    ++made_;
    return made;
  }
  Loan reader(idle_.back().release(), {this});
  idle_.pop_back();
  return reader;
}

SongTags TagChildren::Read(const std::string& path) {
  if (auto plain = ReadPlainTags(path)) return *std::move(plain);
  if (AreAllBusy()) ReadTagBytes(path);
  SongTags tags;
  {
    const Loan reader = Borrow();
    tags = reader->ReadTags(path);
  }
  // If the child has not answered because the disk does not, neither does this call, and the caller
  // can give it up.
  if (tags.unread) WaitForDisk(path);
  return tags;
}

}  // namespace tallow
