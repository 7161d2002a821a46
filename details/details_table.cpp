// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_table.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "details/song_details.h"
#include "details/tag_date.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// Tables whose replaced titles take less are not packed.
constexpr std::size_t kMinWaste = 1U << 20U;

std::uint16_t Small(std::int32_t number) noexcept {
  return static_cast<std::uint16_t>(
      std::clamp<std::int32_t>(number, 0, std::numeric_limits<std::uint16_t>::max()));
}

}  // namespace

DetailsRow RowOf(const SongDetails& details) {
  const SongTags& tags = details.tags;
  if (tags.unread) return {};
  return {.known = true,
          .title = tags.title,
          .artist = tags.artist,
          .album_artist = tags.album_artist,
          .album = tags.album,
          .genre = tags.genre,
          .format = details.format,
          .disc = tags.disc,
          .track = tags.track,
          .year = YearOfDate(tags.date),
          .length_ms = details.length_ms,
          .bit_rate = details.bit_rate,
          .modified = DayOf(details.stamp)};
}

std::size_t DetailsTable::HashOfSet::operator()(const Common& set) const noexcept {
  constexpr std::size_t kFactor = 0x9E3779B1;
  std::size_t hash = set.year;
  for (const TextHandle handle : {set.texts.artist, set.texts.album_artist, set.texts.album,
                                  set.texts.genre, set.texts.format})
    hash = (hash ^ handle) * kFactor;
  return hash;
}

DetailsTable::DetailsTable()
    : pool_(std::make_unique<TextPool>()),
      sets_(1),
      indexes_(0, HashOfSet{&sets_}, EqualSets{&sets_}) {
  indexes_.insert(0);
}

bool DetailsTable::Set(std::int32_t record, const DetailsRow& row) {
  if (!row.known) return false;
  const auto index = static_cast<std::size_t>(record);
  if (index >= rows_.size()) rows_.resize(index + 1);
  Stored& stored = rows_[index];
  const SharedTexts last = Texts(last_);
  last_ = IndexOf({.texts = {.artist = Share(row.artist, last.artist),
                             .album_artist = Share(row.album_artist, last.album_artist),
                             .album = Share(row.album, last.album),
                             .genre = Share(row.genre, last.genre),
                             .format = Share(row.format, last.format)},
                   .year = Small(row.year)});
  Stored now{.set = last_,
             .title = stored.title,
             .length_ms = row.length_ms,
             .changed_at = stored.changed_at,
             .bit_rate = Small(row.bit_rate),
             .modified = Small(row.modified),
             .disc = Small(row.disc),
             .track = Small(row.track)};
  const std::string_view title = pool_->Text(stored.title);
  const bool has_same_title = title == row.title;
  if (stored.changed_at != 0 && has_same_title && now == stored) return false;
  if (!has_same_title) {
    wasted_ += title.size();
    now.title = pool_->Add(row.title);
  }
  now.changed_at = ++version_;
  stored = now;
  PackIfWasteful();
  return true;
}

TextHandle DetailsTable::Share(std::string_view text, TextHandle last) {
  return text == pool_->Text(last) ? last : pool_->Share(text);
}

std::uint32_t DetailsTable::IndexOf(const Common& set) {
  if (set == sets_[last_]) return last_;
  if (const auto found = indexes_.find(set); found != indexes_.end()) return *found;
  sets_.push_back(set);
  const auto index = static_cast<std::uint32_t>(sets_.size() - 1);
  indexes_.insert(index);
  return index;
}

const DetailsTable::Stored* DetailsTable::Find(std::int32_t record) const noexcept {
  if (record < 0 || record >= Size()) return nullptr;
  const Stored& stored = rows_[static_cast<std::size_t>(record)];
  return stored.changed_at != 0 ? &stored : nullptr;
}

std::string_view DetailsTable::Title(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  return stored != nullptr ? pool_->Text(stored->title) : std::string_view();
}

DetailsRow DetailsTable::Row(std::int32_t record) const noexcept {
  DetailsRow row = Numbers(record);
  if (!row.known) return row;
  const SharedTexts shared = Shared(record);
  row.title = Title(record);
  row.artist = pool_->Text(shared.artist);
  row.album_artist = pool_->Text(shared.album_artist);
  row.album = pool_->Text(shared.album);
  row.genre = pool_->Text(shared.genre);
  row.format = pool_->Text(shared.format);
  return row;
}

DetailsRow DetailsTable::Numbers(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  if (stored == nullptr) return {};
  return {.known = true,
          .disc = stored->disc,
          .track = stored->track,
          .year = sets_[stored->set].year,
          .length_ms = stored->length_ms,
          .bit_rate = stored->bit_rate,
          .modified = stored->modified};
}

std::uint32_t DetailsTable::SharedSet(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  return stored != nullptr ? stored->set : 0;
}

std::uint32_t DetailsTable::ChangedAt(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  return stored != nullptr ? stored->changed_at : 0;
}

std::size_t DetailsTable::Bytes() const noexcept {
  constexpr std::size_t kNode = 32;  // of the hash table, and its place in a bucket
  return pool_->size() + rows_.capacity() * sizeof(Stored) + sets_.capacity() * sizeof(Common) +
         indexes_.size() * kNode;
}

void DetailsTable::PackIfWasteful() {
  if (wasted_ < kMinWaste || wasted_ < pool_->size() / 2) return;
  const std::unique_ptr<TextPool> old_pool = std::exchange(pool_, std::make_unique<TextPool>());
  const std::vector<Common> old_sets = std::exchange(sets_, std::vector<Common>(1));
  ForgetSets();
  for (Stored& stored : rows_) {
    const auto share = [&](TextHandle handle) { return pool_->Share(old_pool->Text(handle)); };
    const Common& old = old_sets[stored.set];
    stored.set = IndexOf({.texts = {.artist = share(old.texts.artist),
                                    .album_artist = share(old.texts.album_artist),
                                    .album = share(old.texts.album),
                                    .genre = share(old.texts.genre),
                                    .format = share(old.texts.format)},
                          .year = old.year});
    stored.title = pool_->Add(old_pool->Text(stored.title));
  }
}

void DetailsTable::ForgetSets() {
  sets_.resize(1);
  indexes_.clear();
  indexes_.insert(0);
  last_ = 0;
  wasted_ = 0;
  ++packings_;
}

void DetailsTable::Clear() {
  pool_ = std::make_unique<TextPool>();
  rows_.clear();
  ForgetSets();
  ++version_;
}

}  // namespace tallow
