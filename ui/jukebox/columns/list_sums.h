// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

namespace tallow {

class Jukebox;
class PVExplorer;
class Tallow;

/// The sums of a list for the status bar: those of the selected songs, else of the folder. They are
/// added up shortly after a change, once for many changes. Only with the switch
/// `columns_of_details`; without it the text is empty.
class ListSums : public QObject {
  Q_OBJECT

 public:
  /// The parameters must outlive this object.
  ListSums(Tallow& tallow, const Jukebox& jukebox, const PVExplorer& explorer);

  /// Call after anything that the text depends on has changed.
  void Changed();

  /// See SumsText.
  const QString& Text() const noexcept { return text_; }

 signals:
  void TextChanged();

 private:
  void Update();
  QString Sum() const;

  Tallow& tallow_;
  const Jukebox& jukebox_;
  const PVExplorer& explorer_;
  QTimer timer_;
  QString text_;
};

}  // namespace tallow
