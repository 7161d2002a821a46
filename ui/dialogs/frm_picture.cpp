// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_picture.h"

#include <utility>

#include <QCheckBox>
#include <QFile>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "app/data_paths.h"
#include "app/tallow.h"
#include "ui/dialogs/common_dialog.h"
#include "ui/jukebox/picture_address.h"
#include "ui/jukebox/picture_file.h"
#include "ui/support/display_text.h"
#include "ui/support/message_box.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr std::string_view kPictureFilter =
    "JPEG (*.jpg) |*.jpg|JPEG (*.jpeg) |*.jpeg|PNG (*.png) |*.png";

/// Maximum width of the picture's path, in average characters; a longer path is elided in the
/// middle.
constexpr int kPathCharacters = 48;

}  // namespace

frmPicture::frmPicture(Tallow& tallow, ShowPicture show, AskForPicture ask,
                       ShowMessage show_message, QWidget* parent)
    : QDialog(parent),
      tallow_(tallow),
      show_(std::move(show)),
      ask_(ask ? std::move(ask)
               : [this](const std::string& folder) {
                   return AskForFile(this, folder, kPictureFilter, FileDialogPurpose::kOpen);
                 }),
      show_message_(show_message ? std::move(show_message)
                 : [this](const Message& message) { return ShowMessageBox(message, this); }),
      picture_location_(tallow.settings.PictureLocation()),
      path_(new QLabel(this)),
      show_picture_(new QCheckBox(tr("Show Picture"), this)),
      tile_picture_(new QCheckBox(tr("Tile Picture"), this)) {
  setObjectName(QStringLiteral("frmPicture"));
  setWindowTitle(tr("Picture"));
  path_->setObjectName(QStringLiteral("lblPicture"));
  path_->setAccessibleName(tr("Picture file"));
  path_->setMinimumWidth(kPathCharacters * fontMetrics().averageCharWidth());
  show_picture_->setObjectName(QStringLiteral("ChkNoPicture"));
  tile_picture_->setObjectName(QStringLiteral("CheckTilePicture"));
  show_picture_->setChecked(tallow.settings.IsThereAPicture());
  tile_picture_->setChecked(tallow.settings.IsItTiled());

  const auto button = [this](const char* name, const QString& caption, void (frmPicture::*act)()) {
    auto* const made = new QPushButton(caption, this);
    made->setObjectName(QLatin1String(name));
    connect(made, &QPushButton::clicked, this, act);
    return made;
  };
  auto* const browse = button("Command1", tr("Browse . . ."), &frmPicture::Browse);
  browse->setAutoDefault(false);
  auto* const ok = button("Command2", tr("OK"), &frmPicture::Apply);
  auto* const cancel = button("Command3", tr("Cancel"), &frmPicture::Cancel);
  ok->setDefault(true);

  show_picture_->setAccessibleDescription(
      tr("Shows the picture behind the songs of every jukebox"));
  tile_picture_->setAccessibleDescription(tr("Repeats the picture over the whole list"));
  browse->setAccessibleDescription(tr("Chooses the picture file"));
  ok->setAccessibleDescription(tr("Applies the settings"));
  cancel->setAccessibleDescription(tr("Leaves everything as it was"));

  SetUpLayout(browse, ok, cancel);
  ShowPath();
  // Esc and the close button cancel as well.
  connect(this, &QDialog::rejected, this,
          [this] { tallow_.settings.PictureLocation(picture_location_); });
  adjustSize();
  move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

void frmPicture::SetUpLayout(QWidget* browse, QWidget* ok, QWidget* cancel) {
  auto* const file = new QHBoxLayout;
  file->addWidget(path_, 1);
  file->addWidget(browse);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(file);
  layout->addWidget(show_picture_);
  layout->addWidget(tile_picture_);
  layout->addStretch(1);
  layout->addLayout(buttons);
}

void frmPicture::ShowPath() {
  const QString path = DisplayText(tallow_.settings.PictureLocation());
  path_->setText(path.isEmpty()
                     ? tr("(no picture chosen)")
                     : fontMetrics().elidedText(path, Qt::ElideMiddle, path_->minimumWidth()));
  path_->setToolTip(path);
}

void frmPicture::Browse() {
  const std::string& location = tallow_.settings.PictureLocation();
  const bool exists = !location.empty() && FileExists(location);
  const auto chosen = ask_(exists ? std::string(FolderOfPath(location))
                                  : GroupingFolder(tallow_.application_folder));
  if (!chosen) return;
  if (HasLineBreak(*chosen)) {
    show_message_({.text = *chosen +
                           " cannot be the picture: its path has a line break. Rename the file or "
                           "its folder.",
                   .icon = MessageIcon::kCritical});
    return;
  }
  if (std::string problem = ReadPicture(*chosen).problem; !problem.empty()) {
    show_message_({.text = std::move(problem), .icon = MessageIcon::kCritical});
    return;
  }
  tallow_.settings.PictureLocation(*chosen);
  show_picture_->setChecked(true);
  ShowPath();
}

void frmPicture::Apply() {
  tallow_.settings.IsItTiled(tile_picture_->isChecked());
  tallow_.settings.IsThereAPicture(show_picture_->isChecked());
  tallow_.SaveSettings();
  std::string problem = PictureAddressProblem(tallow_.settings);
  std::string unread = show_(PictureAddress(tallow_.settings), tallow_.settings.IsItTiled());
  if (problem.empty()) problem = std::move(unread);
  if (!problem.empty()) show_message_({.text = std::move(problem), .icon = MessageIcon::kCritical});
  accept();
}

void frmPicture::Cancel() { reject(); }

}  // namespace tallow
