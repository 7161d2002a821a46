// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "ui/player/cover_loader.h"

class QTimer;

namespace tallow {

/// Shows the cover of a song in a square; a song without one gets a picture of a note.
class CoverView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kSide = 48;  ///< of the square

  CoverView(CoverLoader::Read read, QWidget* parent);

  /// Loads the cover of a song. The cover before stays until then, but not for long.
  /// \param path empty for no song
  void ShowSong(const std::string& path);
  bool HasCover() const { return !cover_.isNull(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowCover(const QImage& cover);

  CoverLoader loader_;
  QTimer* clear_;
  std::string path_;
  QImage cover_;
  QPixmap scaled_;  ///< of the cover, for the screen of the last paint
};

}  // namespace tallow
