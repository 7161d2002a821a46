// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/player_page.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "app/playing/player_choice.h"
#include "app/search/player_search.h"
#include "app/tallow.h"
#include "ui/dialogs/button_sentence.h"
#include "ui/dialogs/common_dialog.h"
#include "ui/support/display_text.h"
#include "ui/support/qt_path.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// The name of the sound device that the system chooses.
constexpr const char* kSystemsDevice = "auto";

/// Characters of a list of choices that are always shown.
constexpr int kListCharacters = 30;

/// Whether the player that can be searched for is Winamp; otherwise it is Tallow's own.
bool SearchesForWinamp() { return KindOfPlayer(PlayerProgramName()) == PlayerKind::kWinamp; }

}  // namespace

PlayerPage::PlayerPage(PreferencesContext context, QWidget* parent)
    : QWidget(parent), context_(std::move(context)), preferences_(context_.tallow.preferences) {
  auto* const layout = new QVBoxLayout(this);
  AddPlayer(*layout);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  keeps_volume_ = AddBox(
      *layout, "chkKeepsVolume", tr("Begin with the &volume and balance of last time"),
      tr("Without this, the player begins at half of the volume, with both sides equally loud."),
      &PlayingPreferences::SetKeepsVolume);
  restores_queue_ = AddBox(
      *layout, "chkRestoresQueue", tr("Restore the &queue at start, paused"),
      tr("The songs that were to come are there again, at the place where Tallow was closed. "
         "Nothing plays until you press Play."),
      &PlayingPreferences::SetRestoresQueue);
  marks_ = AddBox(*layout, "chkMarks", tr("&Mark the song that plays in lists"),
                  tr("A triangle and bold text mark the song that plays. A song that could not be "
                     "played has a mark that says why."),
                  &PlayingPreferences::SetShowsMarks);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  AddSound(*layout);
  layout->addStretch(1);
  ShowAll();
}

// The field loses the focus, and ends its editing, while QWidget is destroyed.
PlayerPage::~PlayerPage() { program_->disconnect(this); }

void PlayerPage::AddPlayer(QVBoxLayout& layout) {
  auto* const form = new QFormLayout;
  // A label above its field where both do not fit.
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  layout.addLayout(form);
  players_ =
      AddList(*form, "cboPlayer", tr("Pla&yer:"), tr("Chooses the player among those found"));
  connect(players_, &QComboBox::activated, this,
          [this](int row) { Choose(programs_[static_cast<std::size_t>(row)]); });
  program_ = new QLineEdit(this);
  program_->setObjectName(QStringLiteral("txtProgram"));
  program_->setAccessibleDescription(tr("The full path of the player's program"));
  connect(program_, &QLineEdit::editingFinished, this, &PlayerPage::ChooseTyped);
  program_->installEventFilter(this);
  browse_ = new QPushButton(tr("&Browse..."), this);
  browse_->setObjectName(QStringLiteral("cmdBrowse"));
  browse_->setAutoDefault(false);
  browse_->setAccessibleDescription(tr("Chooses the program of a player"));
  connect(browse_, &QPushButton::clicked, this, &PlayerPage::Browse);
  auto* const row = new QHBoxLayout;
  row->addWidget(program_, 1);
  row->addWidget(browse_);
  form->addRow(tr("Pro&gram:"), row);
  static_cast<QLabel*>(form->labelForField(row))->setBuddy(program_);
  search_ = new QPushButton(
      SearchesForWinamp() ? tr("Search for Win&amp") : tr("Search for a Pl&ayer"), this);
  search_->setObjectName(QStringLiteral("cmdSearch"));
  search_->setAutoDefault(false);
  search_->setAccessibleDescription(tr("Searches the fixed disks of this computer"));
  connect(search_, &QPushButton::clicked, this, &PlayerPage::Search);
  layout.addWidget(search_, 0, Qt::AlignLeft);
  state_ = AddText(layout, "lblPlayerState");
  AddText(layout, "lblPlayerActs")
      ->setText(
          tr("The chosen player is used when you next play songs. A player that runs now is not "
             "closed before that."));
}

QLabel* PlayerPage::AddText(QVBoxLayout& layout, const char* name) {
  auto* const text = new QLabel(this);
  text->setObjectName(QLatin1String(name));
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  layout.addWidget(text);
  return text;
}

void PlayerPage::AddSound(QVBoxLayout& layout) {
  auto* const form = new QFormLayout;
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  layout.addLayout(form);
  gain_ = AddList(*form, "cboGain", tr("&ReplayGain:"),
                  tr("Plays songs equally loud, by the values in their tags"));
  // In the order of ReplayGain.
  gain_->addItems({tr("Off"), tr("Track: each song equally loud"),
                   tr("Album: each album equally loud, its songs as they were recorded")});
  connect(gain_, &QComboBox::activated, this, [this](int row) {
    const auto gain = static_cast<ReplayGain>(row);
    preferences_.SetGain(gain);
    if (context_.player.set_gain) context_.player.set_gain(gain);
    context_.changed();
  });
  device_ = AddList(*form, "cboDevice", tr("Sound &device:"), tr("Where the sound is played"));
  connect(device_, &QComboBox::activated, this, [this](int row) {
    const std::string& name = devices_[static_cast<std::size_t>(row)];
    preferences_.SetDevice(name);
    if (context_.player.set_device) context_.player.set_device(name);
    context_.changed();
  });
  why_not_ = AddText(layout, "lblWhyNot");
}

QCheckBox* PlayerPage::AddBox(QVBoxLayout& layout, const char* name, const QString& caption,
                              const QString& sentence, void (PlayingPreferences::*set)(bool)) {
  auto* const box = new QCheckBox(caption, this);
  box->setObjectName(QLatin1String(name));
  layout.addWidget(box);
  AddButtonSentence(layout, *box, sentence);
  connect(box, &QCheckBox::clicked, this, [this, set](bool on) {
    (preferences_.*set)(on);
    context_.changed();
  });
  return box;
}

QComboBox* PlayerPage::AddList(QFormLayout& form, const char* name, const QString& caption,
                               const QString& description) {
  auto* const list = new QComboBox(this);
  list->setObjectName(QLatin1String(name));
  list->setAccessibleDescription(description);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(kListCharacters);
  list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  form.addRow(caption, list);
  return list;
}

bool PlayerPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      // The dialog would take the key for its button Close.
      ChooseTyped();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void PlayerPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // The page Style may have changed what is on by default.
  ShowAll();
}

std::string PlayerPage::OwnPlayer() const {
  return context_.player.find_own ? context_.player.find_own() : std::string();
}

QString PlayerPage::NameOfPlayer(const std::string& program) const {
  if (IsSamePathText(program, OwnPlayer())) return tr("Tallow's own player");
  const bool is_winamp = PathKey(NameOfPath(program)) == PathKey("winamp.exe");
  return is_winamp ? tr("Winamp in %1").arg(DisplayText(FolderOfPath(program)))
                   : DisplayText(program);
}

void PlayerPage::ChooseTyped() {
  if (program_->isModified()) Choose(PathOfQt(program_->text().trimmed()));
}

void PlayerPage::Choose(const std::string& program) {
  const std::string problem = ChoosePlayer(context_.tallow, program);
  if (!problem.empty()) {
    // What was typed stays, so that it can be corrected.
    program_->setModified(false);
    return ShowState(DisplayText(problem));
  }
  ShowPlayers();
  ShowDevices();
  ShowAbilities();
  ShowState({});
  context_.changed();
}

void PlayerPage::Browse() {
  const std::string folder(FolderOfPath(context_.tallow.player_path));
  const std::optional<std::string> chosen =
      context_.player.ask_for_program
          ? context_.player.ask_for_program(window())
          : AskForFile(window(), folder,
                       SearchesForWinamp() ? "Programs (*.exe) |*.exe" : "Programs (*) |*",
                       FileDialogPurpose::kOpen);
  if (chosen) Choose(*chosen);
}

void PlayerPage::Search() {
  if (!context_.player.search) return;
  const QPointer<PlayerPage> alive(this);
  const std::optional<std::string> found = context_.player.search();
  // The search processes events.
  if (alive == nullptr) return;
  if (!found) return ShowState(tr("The search was cancelled."));
  std::vector<std::string> all = PlayersNearby();
  if (!found->empty()) {
    all.push_back(*found);
    if (std::ranges::find(found_, *found) == found_.end()) found_.push_back(*found);
  }
  ShowPlayers();
  const bool has_others = std::ranges::any_of(all, [this](const std::string& program) {
    return !IsSamePathText(program, context_.tallow.player_path);
  });
  if (has_others)
    ShowState(tr("Found; choose it above."));
  else if (!all.empty())
    ShowState(tr("No other player was found."));
  else
    ShowState(tr("No %1 was found on the fixed disks of this computer.")
                  .arg(DisplayText(PlayerProgramName())));
}

std::vector<std::string> PlayerPage::PlayersNearby() const {
  std::vector<std::string> players;
  if (context_.player.find_winamps) players = context_.player.find_winamps();
  if (std::string own = OwnPlayer(); !own.empty()) players.push_back(std::move(own));
  return players;
}

void PlayerPage::ShowState(const QString& text) {
  state_->setText(text);
  state_->setVisible(!text.isEmpty());
}

void PlayerPage::ShowAll() {
  keeps_volume_->setChecked(preferences_.KeepsVolume());
  restores_queue_->setChecked(preferences_.RestoresQueue());
  marks_->setChecked(preferences_.ShowsMarks());
  gain_->setCurrentIndex(static_cast<int>(preferences_.Gain()));
  ShowPlayers();
  ShowDevices();
  ShowAbilities();
  ShowState({});
}

void PlayerPage::ShowPlayers() {
  std::vector<std::string> winamps;
  if (context_.player.find_winamps) winamps = context_.player.find_winamps();
  winamps.insert(winamps.end(), found_.begin(), found_.end());
  const std::string& chosen = context_.tallow.player_path;
  programs_ = PlayersToChooseFrom(context_.tallow, OwnPlayer(), winamps);
  players_->clear();
  for (const std::string& program : programs_) players_->addItem(NameOfPlayer(program));
  const auto at = std::ranges::find_if(
      programs_, [&](const std::string& program) { return IsSamePathText(program, chosen); });
  players_->setCurrentIndex(at == programs_.end() ? -1 : static_cast<int>(at - programs_.begin()));
  players_->setPlaceholderText(tr("No player is chosen"));
  players_->setEnabled(!programs_.empty());
  program_->setText(QtPath(chosen));
}

void PlayerPage::ShowDevices() {
  std::vector<SoundDevice> devices;
  if (context_.player.devices) devices = context_.player.devices();
  are_devices_known_ = !devices.empty();
  const std::string chosen = preferences_.Device();
  devices_ = {kSystemsDevice};
  device_->clear();
  device_->addItem(tr("Chosen by the system"));
  for (const SoundDevice& device : devices) {
    if (device.name == kSystemsDevice) continue;
    devices_.push_back(device.name);
    device_->addItem(DisplayText(device.description.empty() ? device.name : device.description));
  }
  if (std::ranges::find(devices_, chosen) == devices_.end()) {
    devices_.push_back(chosen);
    device_->addItem(are_devices_known_ ? tr("%1 (not there)").arg(DisplayText(chosen))
                                        : DisplayText(chosen));
  }
  device_->setCurrentIndex(
      static_cast<int>(std::ranges::find(devices_, chosen) - devices_.begin()));
}

void PlayerPage::ShowAbilities() {
  const std::string& chosen = context_.tallow.player_path;
  const bool is_own = !chosen.empty() && KindOfPlayer(chosen) == PlayerKind::kTallowPlayer;
  gain_->setEnabled(is_own);
  device_->setEnabled(is_own);
  if (chosen.empty())
    why_not_->setText(tr("No player is chosen. Choose one above."));
  else if (!is_own)
    why_not_->setText(tr("Winamp cannot do this. Tallow's own player can; choose it above."));
  else if (!are_devices_known_)
    why_not_->setText(tr("The sound devices are listed here while the player runs."));
  else
    why_not_->setText({});
  why_not_->setVisible(!why_not_->text().isEmpty());
  for (QComboBox* const list : {gain_, device_})
    list->setToolTip(is_own ? QString() : why_not_->text());
}

}  // namespace tallow
