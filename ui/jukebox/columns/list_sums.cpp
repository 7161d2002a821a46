// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/list_sums.h"

#include <optional>
#include <vector>

#include "app/columns/song_sums.h"
#include "app/play_commands.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Time between a change and the new sums, in ms.
constexpr int kDelay = 100;

}  // namespace

ListSums::ListSums(Tallow& tallow, const Jukebox& jukebox, const PVExplorer& explorer)
    : tallow_(tallow), jukebox_(jukebox), explorer_(explorer) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &ListSums::Update);
  connect(&explorer, &PVExplorer::ListRefilled, this, &ListSums::Changed);
  connect(&explorer, &PVExplorer::SelectionChanged, this, &ListSums::Changed);
}

void ListSums::Changed() {
  // A running timer is not started again; details that are being read change all the time.
  if (!timer_.isActive()) timer_.start(kDelay);
}

void ListSums::Update() {
  QString text = Sum();
  if (text == text_) return;
  text_ = std::move(text);
  emit TextChanged();
}

QString ListSums::Sum() const {
  const Folder* const shown = jukebox_.ListFolder();
  if (shown == nullptr || !tallow_.preferences.switches().columns_of_details) return {};
  const auto sums_of = [this](const std::vector<std::int32_t>& songs) {
    return SumsOf(tallow_.library, tallow_.details, songs);
  };
  const SongSums all = sums_of(ShownSongsOf(*shown, tallow_.library));
  const std::vector<int> rows = explorer_.SelectedRows();
  std::optional<SongSums> selected;
  if (!rows.empty()) selected = sums_of(SongsOf(*shown, rows));
  return DisplayText(SumsText(all, selected));
}

}  // namespace tallow
