// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/unsaved_keeper.h"

#include <QTimer>
#include <QWidget>

#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "util/errors.h"

namespace tallow {
namespace {

/// How often unsaved changes are saved for recovery, in ms.
constexpr int kKeepUnsavedEvery = 60 * 1000;

}  // namespace

UnsavedKeeper::UnsavedKeeper(QWidget& frame, Tallow& tallow, const JukeboxArea& jukeboxes,
                             FrameMessages& messages)
    : tallow_(tallow), jukeboxes_(jukeboxes), messages_(messages) {
  auto* const timer = new QTimer(&frame);
  timer->setObjectName(QStringLiteral("KeepUnsavedTimer"));
  connect(timer, &QTimer::timeout, this, [this, &frame] {
    // While songs are being filed, the trees are incomplete.
    if (frame.isEnabled()) Keep();
  });
  timer->start(kKeepUnsavedEvery);
}

void UnsavedKeeper::Keep() {
  for (const Jukebox* const jukebox : jukeboxes_.Open()) {
    try {
      tallow_.unsaved.Keep(*jukebox, tallow_.library);
    } catch (const FileError& error) {
      messages_.AddNotice({"The unsaved changes of " + jukebox->Caption() +
                           " could not be stored for crash recovery. " + error.what() +
                           ". Save the jukebox."});
    }
  }
}

}  // namespace tallow
