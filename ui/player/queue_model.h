// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include <QAbstractTableModel>
#include <QMimeData>
#include <QModelIndexList>
#include <QStringList>

#include "app/playing/player_model.h"

namespace tallow {

/// The data of a drag of rows of the queue.
class QueueDrag : public QMimeData {
  Q_OBJECT

 public:
  /// \param entries numbers of the entries of the rows, in their order
  explicit QueueDrag(std::vector<std::uint64_t> entries);

  const std::vector<std::uint64_t>& Entries() const { return entries_; }

 private:
  std::vector<std::uint64_t> entries_;
};

/// Table model of the songs that are to come, one row for each entry of the queue.
///
/// Entries are asked for only when a row is painted or a command concerns it, so a queue of 100,000
/// songs costs no more than a short one. Rows that were painted are remembered: a change of the
/// queue that only takes rows away at its top, or adds rows at its end, is reported to the view as
/// such, so that it keeps its selection and scroll position. Any other change refills the view.
class QueueModel : public QAbstractTableModel, private PlayerListener {
  Q_OBJECT

 public:
  /// \param player must outlive the model
  QueueModel(PlayerModel& player, QObject* parent);
  ~QueueModel() override;

  /// The entry that the view shows in a row, even if the queue has moved on since.
  /// \param row from 0; rows beyond the queue are ignored
  /// \returns the number of the entry; 0 for none
  std::uint64_t EntryAt(int row) const;
  /// \param rows from 0, ascending
  std::vector<std::uint64_t> EntriesAt(const std::vector<int>& rows) const;

  /// The entry that a row had when it was last asked for; 0 if it is not remembered.
  std::uint64_t KnownAt(int row) const;
  /// Remembers the entry of a row, so that a selection of the row follows the entry.
  void Remember(int row) const;

  /// Moves rows before another.
  /// \param rows from 0, ascending
  /// \param to   the row that they come before, of those that are not moved; the number of rows for
  ///             the end
  void Move(const std::vector<int>& rows, int to);

  /// Whether dragged data are rows that can be moved.
  bool CanDrop(const QMimeData& data) const;
  /// Moves dragged rows before another; does nothing if they cannot be moved.
  /// \param to see Move
  void Drop(const QMimeData& data, int to);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 signals:
  /// The queue, or what the player can do, has changed.
  void Changed();
  /// The view is about to be refilled, and has been. Before that, only KnownAt still has the
  /// entries of the rows of the view.
  void Refilling();
  void Refilled();

 private:
  void PlayingChanged(const Playing& before, const Playing& now) override;
  void Follow();
  void Refill();
  /// The entry that a row has by now; 0 for none.
  std::uint64_t EntryNowAt(int row) const;
  bool IsShiftedBy(int removed) const;
  /// The texts or failures of remembered rows may have changed.
  void UpdateKnown();
  void MoveEntries(const std::vector<std::uint64_t>& entries, int to);

  PlayerModel& player_;
  int rows_ = 0;  ///< as last reported to the view
  /// The entries of the rows that were asked for since the view was refilled; row to entry.
  mutable std::map<int, std::uint64_t> known_;
};

}  // namespace tallow
