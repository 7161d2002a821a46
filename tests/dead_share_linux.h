// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>

#include "library/mounted_volumes.h"
#include "tests/dead_folder_linux.h"
#include "tests/library_fixture.h"
#include "tests/system_fixture.h"

namespace tallow {

/// Starts with a collection whose folder "b" is a network share.
class DeadShare : public SystemTest {
 protected:
  DeadShare() { StartAgain(); }

  bool StartAgain() {
    windows.emplace();
    tallow.emplace(application.path());
    tallow->library.UseDrives([this] { return mounted; }, {});
    system.emplace(*tallow, drives, *windows);
    windows->progress.on_events = [this] {
      if (on_events) on_events();
    };
    return system->Main(runtime_file);
  }
  std::int32_t Row(const std::string& name) const {
    for (std::int32_t row = 1; row <= tallow->library.UBoundOfMp3Array(); ++row)
      if (tallow->library.Mp3Info(kFileName, row) == name) return row;
    return 0;
  }
  std::string Waiting() const { return "Waiting for " + share + ", which does not answer"; }
  bool IsSaid(const std::string& status) const {
    const Texts& said = windows->progress.status;
    return std::find(said.begin(), said.end(), status) != said.end();
  }
  /// Cancels as soon as the status line shows that the program is waiting for the share.
  void CancelWhenAsked() {
    on_events = [this] {
      if (!windows->progress.status.empty() && windows->progress.status.back() == Waiting())
        tallow->SearchCancelled = true;
    };
  }

  const std::string share = music / "b/";
  MountedVolumes mounted{{music.path(), {"uuid A", "/"}, false, false},
                         {share, {"source server:/b", "/"}, false, true}};
  std::function<void()> on_events;
};

}  // namespace tallow
