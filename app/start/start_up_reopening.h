// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "app/open_jukeboxes.h"

namespace tallow {

class Jukebox;
class StartUpFiling;
class StartUpNotices;
class StartUpWait;
class StartUpWindows;
class Tallow;

/// Opens the jukeboxes that were open when Tallow ended, in their order, and shows them as they
/// were shown.
class StartUpReopening {
 public:
  /// All parameters must outlive this object.
  StartUpReopening(Tallow& tallow, StartUpWindows& windows, StartUpNotices& notices,
                   StartUpWait& wait, StartUpFiling& filing)
      : tallow_(tallow), windows_(windows), notices_(notices), wait_(wait), filing_(filing) {}

  /// Opens the jukeboxes and files the songs in them, without showing them. One that was recovered
  /// is open already. Those that cannot be opened are named to the user.
  ///
  /// \returns whether at least one is open
  bool Open();

  /// Whether Open has named a file as one that cannot be opened.
  bool HasNamed(const std::string& file) const;

  /// Shows the jukeboxes that are open, as they were shown before.
  /// \param front the jukebox to be in front; null for the one that was
  void Show(Jukebox* front);

 private:
  struct Reopened {
    OpenJukebox before;
    Jukebox* jukebox;
    bool is_recovered;
  };

  Jukebox* OpenedFrom(const std::string& file);
  bool MayOpen(const OpenJukebox& before);
  Jukebox* Load(const OpenJukebox& before);

  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices& notices_;
  StartUpWait& wait_;
  StartUpFiling& filing_;
  std::vector<Reopened> reopened_;
  std::vector<std::string> named_;
  Jukebox* spare_ = nullptr;  ///< whose file could not be loaded; the next one gets its window
};

}  // namespace tallow
