// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/queue_model.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "ui/player/tool_tip_text.h"
#include "ui/support/display_text.h"
#include "ui/support/song_mark.h"

namespace tallow {
namespace {

/// Number of remembered rows; more are forgotten, so that scrolling does not use ever more memory.
constexpr std::size_t kMaxKnown = 1000;

/// Data of this type are dragged; Qt does not start a drag without any type.
constexpr const char* kMimeType = "application/x-tallow-queue";

}  // namespace

QueueDrag::QueueDrag(std::vector<std::uint64_t> entries) : entries_(std::move(entries)) {
  setData(QLatin1String(kMimeType), QByteArray());
}

QueueModel::QueueModel(PlayerModel& player, QObject* parent)
    : QAbstractTableModel(parent), player_(player) {
  player_.AddListener(*this);
  Refill();
}

QueueModel::~QueueModel() { player_.RemoveListener(*this); }

std::uint64_t QueueModel::EntryAt(int row) const {
  const std::uint64_t known = KnownAt(row);
  return known != 0 ? known : EntryNowAt(row);
}

std::uint64_t QueueModel::EntryNowAt(int row) const {
  // The queue may have become shorter than last reported to the view.
  if (row < 0 || static_cast<std::size_t>(row) >= player_.QueueLength()) return 0;
  return player_.QueueAt(static_cast<std::size_t>(row)).entry;
}

std::vector<std::uint64_t> QueueModel::EntriesAt(const std::vector<int>& rows) const {
  std::vector<std::uint64_t> entries;
  for (const int row : rows)
    if (const std::uint64_t entry = EntryAt(row); entry != 0) entries.push_back(entry);
  return entries;
}

std::uint64_t QueueModel::KnownAt(int row) const {
  const auto known = known_.find(row);
  return known == known_.end() ? 0 : known->second;
}

void QueueModel::Move(const std::vector<int>& rows, int to) { MoveEntries(EntriesAt(rows), to); }

void QueueModel::MoveEntries(const std::vector<std::uint64_t>& entries, int to) {
  if (entries.empty()) return;
  const std::unordered_set<std::uint64_t> moved(entries.begin(), entries.end());
  // The row to move before may be one of the moved ones itself.
  while (moved.contains(EntryAt(to))) ++to;
  player_.MoveInQueue(entries, EntryAt(to));
}

int QueueModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int QueueModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 1; }

QVariant QueueModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || static_cast<std::size_t>(index.row()) >= player_.QueueLength()) return {};
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole &&
      role != Qt::DecorationRole)
    return {};
  const PlayerModel::QueueRow row = player_.QueueAt(static_cast<std::size_t>(index.row()));
  if (known_.size() >= kMaxKnown) known_.clear();
  known_[index.row()] = row.entry;
  std::string failure = player_.FailureOfEntry(row.entry);
  // Most entries that are to come were not tried, but their song may have been.
  if (failure.empty() && row.song != 0) failure = player_.FailureOf(row.song);
  if (role == Qt::DecorationRole)
    return failure.empty() ? QVariant() : MarkPicture(SongMark::kFailed);
  QString text = row.song != 0 ? DisplayText(player_.TextOf(row.song)) : tr("Unknown song");
  if (role == Qt::DisplayRole) return text;
  if (!failure.empty()) text += QLatin1Char('\n') + FailureText(failure);
  return role == Qt::ToolTipRole ? ToolTipText(text) : text;
}

Qt::ItemFlags QueueModel::flags(const QModelIndex& index) const {
  const bool moves = player_.Can(PlayerFeature::kRearrange);
  // Rows are dropped between others, which is on the root.
  if (!index.isValid()) return moves ? Qt::ItemIsDropEnabled : Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  return moves ? flags | Qt::ItemIsDragEnabled : flags;
}

QMimeData* QueueModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<int> rows;
  for (const QModelIndex& index : indexes) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return new QueueDrag(EntriesAt(rows));
}

QStringList QueueModel::mimeTypes() const { return {QLatin1String(kMimeType)}; }

bool QueueModel::CanDrop(const QMimeData& data) const {
  return qobject_cast<const QueueDrag*>(&data) != nullptr && player_.Can(PlayerFeature::kRearrange);
}

void QueueModel::Drop(const QMimeData& data, int to) {
  if (CanDrop(data)) MoveEntries(qobject_cast<const QueueDrag*>(&data)->Entries(), to);
}

void QueueModel::PlayingChanged(const Playing& before, const Playing& now) {
  if (before.queue_generation != now.queue_generation)
    Refill();
  else if (before.queue_revision != now.queue_revision)
    Follow();
  if (before.failures_revision != now.failures_revision ||
      before.texts_revision != now.texts_revision)
    UpdateKnown();
  if (before.queue_revision != now.queue_revision || before.kind != now.kind ||
      before.is_running != now.is_running || before.shuffle != now.shuffle ||
      before.status != now.status || before.repeat != now.repeat || before.song != now.song)
    emit Changed();
}

void QueueModel::Follow() {
  const auto rows = static_cast<int>(
      std::min<std::size_t>(player_.QueueLength(), std::numeric_limits<int>::max()));
  if (known_.empty()) return Refill();
  if (rows < rows_ && IsShiftedBy(rows_ - rows)) {
    const int removed = rows_ - rows;
    std::map<int, std::uint64_t> known;
    for (const auto& [row, entry] : known_)
      if (row >= removed) known.emplace(row - removed, entry);
    beginRemoveRows({}, 0, removed - 1);
    rows_ = rows;
    known_ = std::move(known);
    endRemoveRows();
  } else if (rows > rows_ && IsShiftedBy(0)) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows != rows_ || !IsShiftedBy(0)) {
    Refill();
  }
}

bool QueueModel::IsShiftedBy(int removed) const {
  // Unless a remembered row is left, nothing is known about the rest.
  const auto first = known_.lower_bound(removed);
  return first != known_.end() &&
         std::all_of(first, known_.end(), [this, removed](const auto& known) {
           return EntryNowAt(known.first - removed) == known.second;
         });
}

void QueueModel::Refill() {
  emit Refilling();
  beginResetModel();
  known_.clear();
  rows_ = static_cast<int>(
      std::min<std::size_t>(player_.QueueLength(), std::numeric_limits<int>::max()));
  endResetModel();
  emit Refilled();
}

void QueueModel::Remember(int row) const { data(index(row, 0), Qt::DisplayRole); }

void QueueModel::UpdateKnown() {
  // Cell by cell, because a view repaints everything for a range of cells.
  for (const auto& known : std::map<int, std::uint64_t>(known_))
    if (known.first < rows_) emit dataChanged(index(known.first, 0), index(known.first, 0));
}

}  // namespace tallow
