// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/background_picture.h"

#include <vector>

#include "app/tallow.h"
#include "ui/dialogs/frm_picture.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/help_page.h"

namespace tallow {

void BackgroundPicture::Change() {
  problem_.clear();
  frmPicture dialog(
      tallow_,
      [this](const QString& address, bool tiled) {
        std::string problem;
        const std::vector<Jukebox*> open = jukeboxes_.Open();
        for (auto jukebox = open.rbegin(); jukebox != open.rend(); ++jukebox)
          problem =
              jukeboxes_.WindowOf(**jukebox)->PVExplorer1().SetBackgroundImage(address, tiled);
        return problem;
      },
      {}, messages_.Shower(), &frame_);
  dialog.setProperty(kHelpPage, QStringLiteral("picture"));
  dialog.exec();
  messages_.Notice(tallow_.TakeProblems());
}

void BackgroundPicture::ReportProblem(const frmMain& window) {
  if (jukeboxes_.Open().size() != 1 || window.PictureProblem().empty()) return;
  problem_ = window.PictureProblem();
  messages_.Notice({problem_});
}

}  // namespace tallow
