// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_table.h"

#include <algorithm>
#include <limits>
#include <string>
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

DetailsTable::DetailsTable() : pool_(std::make_unique<TextPool>()) {}

bool DetailsTable::Set(std::int32_t record, const DetailsRow& row) {
  if (!row.known) return false;
  const auto index = static_cast<std::size_t>(record);
  if (index >= rows_.size()) rows_.resize(index + 1);
  Stored& stored = rows_[index];
  last_ = {.artist = Share(row.artist, last_.artist),
           .album_artist = Share(row.album_artist, last_.album_artist),
           .album = Share(row.album, last_.album),
           .genre = Share(row.genre, last_.genre),
           .format = Share(row.format, last_.format)};
  Stored now{.shared = last_,
             .title = stored.title,
             .length_ms = row.length_ms,
             .bit_rate = row.bit_rate,
             .changed_at = stored.changed_at,
             .modified = Small(row.modified),
             .year = Small(row.year),
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
          .year = stored->year,
          .length_ms = stored->length_ms,
          .bit_rate = stored->bit_rate,
          .modified = stored->modified};
}

DetailsTable::SharedTexts DetailsTable::Shared(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  return stored != nullptr ? stored->shared : SharedTexts{};
}

std::uint32_t DetailsTable::ChangedAt(std::int32_t record) const noexcept {
  const Stored* const stored = Find(record);
  return stored != nullptr ? stored->changed_at : 0;
}

std::size_t DetailsTable::Bytes() const noexcept {
  return pool_->size() + rows_.capacity() * sizeof(Stored);
}

void DetailsTable::PackIfWasteful() {
  if (wasted_ < kMinWaste || wasted_ < pool_->size() / 2) return;
  auto pool = std::make_unique<TextPool>();
  for (Stored& stored : rows_) {
    const auto move = [&](TextHandle& handle) { handle = pool->Share(pool_->Text(handle)); };
    for (TextHandle SharedTexts::*const text :
         {&SharedTexts::artist, &SharedTexts::album_artist, &SharedTexts::album,
          &SharedTexts::genre, &SharedTexts::format})
      move(stored.shared.*text);
    stored.title = pool->Add(pool_->Text(stored.title));
  }
  pool_ = std::move(pool);
  last_ = {};
  wasted_ = 0;
  ++packings_;
}

void DetailsTable::Clear() {
  pool_ = std::make_unique<TextPool>();
  rows_.clear();
  last_ = {};
  wasted_ = 0;
  ++version_;
  ++packings_;
}

}  // namespace tallow
