// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/jukebox_columns.h"

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
          [this] { UpdateColumnMenu(*menu_, shown_, FirstColumns(HasDetails()), sorted_by_); });
  connect(&explorer, &PVExplorer::HeaderPopUp, this,
          [this](const QPoint& position) { menu_->popup(position); });
  connect(&explorer, &PVExplorer::ColumnsChanged, this, &JukeboxColumns::Choose);
  connect(&explorer, &PVExplorer::ColumnClick, this, &JukeboxColumns::Sort);
  connect(&explorer, &PVExplorer::ListRefilled, this, &JukeboxColumns::ListRefilled);
  connect(&explorer, &PVExplorer::HitsHidden, this, &JukeboxColumns::HitsHidden);
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
  ShowArrow(sorted_by_, descending_);
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
  if (!CanSort(column)) return ShowArrow(sorted_by_, descending_);
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
  ShowArrow({}, false);
}

void JukeboxColumns::SortBy(ListColumn column) {
  const bool descending = sorted_by_ == column ? !descending_ : SortsDescendingFirst(column);
  jukebox_.SortByColumn(tallow_.library, texts_.KeysOf(column), descending);
  ShowArrow(column, descending);
}

void JukeboxColumns::ListRefilled() {
  // The hits of a search take the place of a folder, which comes back in its order.
  const bool hits = jukebox_.ShowsHits();
  if (hits && !shows_hits_) of_folder_ = {sorted_by_, descending_};
  shows_hits_ = hits;
  ShowArrow({}, false);
}

void JukeboxColumns::HitsHidden() { ShowArrow(of_folder_.column, of_folder_.descending); }

void JukeboxColumns::ShowArrow(std::optional<ListColumn> column, bool descending) {
  sorted_by_ = column;
  descending_ = descending;
  explorer_.ShowSort(column, descending);
}

}  // namespace tallow
