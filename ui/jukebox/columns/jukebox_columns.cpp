// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/jukebox_columns.h"

#include <algorithm>
#include <exception>

#include <QMenu>
#include <QPoint>

#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "ui/jukebox/columns/column_menu.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"

namespace tallow {

JukeboxColumns::JukeboxColumns(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer)
    : tallow_(tallow),
      jukebox_(jukebox),
      explorer_(explorer),
      texts_(tallow.library, tallow.details, tallow.play_counts),
      menu_(MakeColumnMenu(
          nullptr, {.show = [this](ListColumn column,
                                   bool shown) { Choose(WithColumn(shown_, column, shown)); },
                    .sort = [this](ListColumn column) { Sort(column); },
                    .move = [this](ListColumn column,
                                   bool left) { Choose(WithColumnMoved(shown_, column, left)); },
                    .reset = [this] { Choose({}); }})) {
  connect(menu_.get(), &QMenu::aboutToShow, this,
          [this] { UpdateColumnMenu(*menu_, shown_, FirstColumns(HasDetails()), arrow_.column); });
  connect(&explorer, &PVExplorer::HeaderPopUp, this,
          [this](const QPoint& position) { menu_->popup(position); });
  connect(&explorer, &PVExplorer::ColumnsChanged, this, &JukeboxColumns::Choose);
  connect(&explorer, &PVExplorer::ColumnClick, this, &JukeboxColumns::Sort);
  connect(&explorer, &PVExplorer::ListRefilled, this, &JukeboxColumns::ListRefilled);
  connect(&explorer, &PVExplorer::SongsRenumbered, this, &JukeboxColumns::Renumber);
  Follow();
}

JukeboxColumns::~JukeboxColumns() = default;

void JukeboxColumns::PopUp() { menu_->popup(explorer_.BelowHeaders()); }

bool JukeboxColumns::HasDetails() const {
  return tallow_.preferences.switches().columns_of_details;
}

void JukeboxColumns::Follow() {
  const bool details = HasDetails();
  std::vector<ChosenColumn> columns = ColumnsOf(tallow_.preferences, details);
  if (columns == shown_ && details == shows_details_) return;
  shown_ = std::move(columns);
  shows_details_ = details;
  explorer_.ShowColumns(shown_, texts_, details);
  ShowArrow(arrow_);
}

bool JukeboxColumns::ShowNewDetails() {
  const std::uint64_t version = tallow_.details.Version();
  if (version == details_version_) return false;
  details_version_ = version;
  explorer_.DetailsChanged();
  return true;
}

void JukeboxColumns::Choose(const std::vector<ChosenColumn>& columns) {
  const bool details = HasDetails();
  ChooseColumns(tallow_.preferences, details, columns);
  Follow();
  const QStringList problems = DisplayMessages(tallow_.TakeProblems());
  if (!problems.isEmpty()) emit Problem(problems);
}

void JukeboxColumns::Sort(ListColumn column) {
  // The songs are in the order of their positions; the header has moved its arrow.
  if (!CanSort(column)) return ShowArrow(arrow_);
  const PVExplorer::Place place = explorer_.CurrentPlace();
  if (column == ListColumn::kName || column == ListColumn::kKey)
    SortByName();
  else
    SortBy(column);
  // Sorting reassigns the songs of the entries; the selection follows the songs.
  explorer_.FollowSongs(place);
}

void JukeboxColumns::SortByName() {
  try {
    jukebox_.ColumnClick(tallow_.library);
  } catch (const std::exception& error) {
    emit Problem({tr("The list could not be sorted: a rank is not a number (%1).")
                      .arg(DisplayMessage(error.what()))});
  }
  Sorted({});
}

void JukeboxColumns::SortBy(ListColumn column) {
  const bool descending =
      arrow_.column == column ? !arrow_.descending : SortsDescendingFirst(column);
  jukebox_.SortByColumn(tallow_.library, texts_.KeysOf(column), descending);
  Sorted({column, descending});
}

void JukeboxColumns::Sorted(const Arrow& arrow) {
  ShowArrow(arrow);
  const Folder* const folder = jukebox_.selectednode();
  if (jukebox_.ShowsHits() || folder == nullptr) return;
  of_folder_ = arrow;
  sorted_folder_ = folder->Key();
  sorted_songs_.clear();
  if (!arrow.column) return;
  for (const SongEntry& entry : folder->Items()) sorted_songs_.push_back(entry.SubItem());
}

void JukeboxColumns::ListRefilled() {
  // New hits have their own order. The folder comes back in the order that it had.
  if (jukebox_.ShowsHits()) return ShowArrow({});
  if (!IsFolderStillSorted()) {
    of_folder_ = {};
    sorted_songs_.clear();
  }
  ShowArrow(of_folder_);
}

/// Whether the list shows the sorted folder, and its songs are those of the sort, in the same
/// order. Some may be missing, but none added.
bool JukeboxColumns::IsFolderStillSorted() const {
  const Folder* const folder = jukebox_.selectednode();
  if (folder == nullptr || folder->Key() != sorted_folder_) return false;
  auto next = sorted_songs_.begin();
  for (const SongEntry& entry : folder->Items()) {
    next = std::find(next, sorted_songs_.end(), entry.SubItem());
    if (next == sorted_songs_.end()) return false;
    ++next;
  }
  return true;
}

void JukeboxColumns::Renumber(const NewNumbers& numbers) {
  for (std::int32_t& song : sorted_songs_)
    if (const auto found = numbers.find(song); found != numbers.end()) song = found->second;
}

void JukeboxColumns::ShowArrow(const Arrow& arrow) {
  arrow_ = arrow;
  explorer_.ShowSort(arrow.column, arrow.descending);
}

}  // namespace tallow
