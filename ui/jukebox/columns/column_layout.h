// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <QObject>

#include "app/columns/column_choice.h"

class QFontMetrics;
class QHeaderView;
class QTableView;

namespace tallow {

class SongListModel;

/// The widths and the order of the columns of a list. The titles, or else the names, are as wide as
/// the others leave it, but not narrower than the user has made them; the others keep their widths,
/// and a list that is too narrow for them scrolls.
class ColumnLayout : public QObject {
  Q_OBJECT

 public:
  /// The parameters must outlive this object.
  ColumnLayout(const SongListModel& songs, QTableView& list);

  /// Sets order and widths. \param columns those that the model shows
  void Show(const std::vector<ChosenColumn>& columns);

  /// Call after the number of rows has changed.
  void Fit();

 signals:
  /// The user has moved a column, or has changed its width.
  /// \param columns as the user sees them now
  void Changed(const std::vector<tallow::ChosenColumn>& columns);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QHeaderView& Header() const;
  /// The place of the column that fills the list; -1 for none.
  int Filling() const;
  /// The width of a column for its usual texts, in pixels.
  int UsualWidth(ListColumn column) const;
  int WidthOf(const ChosenColumn& column) const;
  /// The width of the column that fills the list. \param left by the others, in pixels
  int FillingWidth(const ChosenColumn& column, int left) const;
  /// The room of picture and position before a name, in pixels.
  int RoomBeforeName(const QFontMetrics& metrics) const;
  /// A number as wide as the largest position, so that columns do not change while the user
  /// scrolls.
  QString LargestPosition() const;
  void Resized(int column, int width);
  void Report();

  const SongListModel& songs_;
  QTableView& list_;
  /// Of the list. Events come also while the list is being destroyed, and must not ask it then.
  const QObject* viewport_;
  std::vector<ChosenColumn> columns_;  ///< as in the model, with the widths of now
  bool is_own_change_ = false;         ///< this object changes the header
  bool is_changed_ = false;            ///< by the user, and was not reported yet
  bool is_held_ = false;               ///< the left mouse button is held down on the header
};

}  // namespace tallow
