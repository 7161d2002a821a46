// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/new_jukebox.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "app/jukebox_documents.h"
#include "app/tallow.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "ui/frame/jukebox_area.h"

namespace tallow {
namespace {

void MakeSample(Tallow& tallow, const JukeboxArea& jukeboxes, DocumentWindows& windows) {
  Jukebox& jukebox = windows.NewJukebox();
  const std::vector<Jukebox*> open = jukeboxes.Open();
  std::unique_ptr<LongWork> work = windows.BeginWork(kFilingSongs);
  bool is_filed = true;
  bool is_shown = false;
  const auto show = [&] {
    work.reset();
    windows.ShowJukebox(jukebox);
    is_shown = true;
    if (!is_filed) windows.Notice({FilingCancelledLine() + "."});
  };
  const auto go_on = [&](std::size_t filed, std::size_t songs) {
    is_filed = work == nullptr || work->GoOn([=] { return FilingLine(filed, songs); });
    tallow.filing_is_pending = tallow.filing_is_pending || !is_filed;
    return is_filed;
  };
  try {
    BuildInitialJukebox(tallow.library, jukebox, open, show, nullptr, go_on,
                        tallow.details.TagReader());
  } catch (const FilingError& error) {
    windows.Notice(error.problems());
  } catch (const std::exception& error) {
    windows.Notice({std::string("The songs could not be filed. ") + error.what()});
    if (!is_shown) windows.DiscardJukebox(jukebox);
  }
}

void MakeNew(Tallow& tallow, JukeboxArea& jukeboxes, DocumentWindows& windows) {
  Jukebox& jukebox = windows.NewJukebox();
  jukebox.Caption(jukeboxes.NewCaption());
  BuildNewJukebox(tallow.library, jukebox);
  windows.ShowJukebox(jukebox);
}

}  // namespace

void MakeNewJukebox(Tallow& tallow, JukeboxArea& jukeboxes, DocumentWindows& windows) {
  if (jukeboxes.Open().empty())
    MakeSample(tallow, jukeboxes, windows);
  else
    MakeNew(tallow, jukeboxes, windows);
}

}  // namespace tallow
