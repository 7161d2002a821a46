// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/common_dialog.h"

#include <QFileDialog>

#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

/// Returns the display texts of a filter; the texts repeat the patterns in parentheses.
QStringList NameFilters(std::string_view filter) {
  QStringList texts;
  const QStringList parts = DisplayText(filter).split(QLatin1Char('|'));
  for (qsizetype k = 0; k < parts.size(); k += 2) texts.append(parts[k].trimmed());
  return texts;
}

/// Sets the help page of a file dialog: that of the dialog that opens it.
void SetHelpPage(QFileDialog& dialog, const QWidget* parent) {
  const QString page = parent != nullptr ? parent->property(kHelpPage).toString() : QString();
  dialog.setProperty(
      kHelpPage, qobject_cast<const QDialog*>(parent) != nullptr ? page : QStringLiteral("files"));
}

/// Shows a file dialog. \returns the chosen path; no value when the user cancels
std::optional<std::string> PathChosenIn(QFileDialog& dialog) {
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return PathOfQt(dialog.selectedFiles().front());
}

}  // namespace

std::optional<std::string> AskForFile(QWidget* parent, const std::string& folder,
                                      std::string_view filter, FileDialogPurpose purpose) {
  const bool opens = purpose == FileDialogPurpose::kOpen;
  QFileDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("CommonDialog1"));
  dialog.setWindowTitle(opens ? QFileDialog::tr("Open") : QFileDialog::tr("Save As"));
  SetHelpPage(dialog, parent);
  dialog.setAcceptMode(opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  dialog.setFileMode(opens ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setDirectory(QtPath(folder));
  dialog.setNameFilters(NameFilters(filter));
  return PathChosenIn(dialog);
}

std::optional<std::string> AskForFolder(QWidget* parent, const std::string& folder) {
  QFileDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("CommonDialog1"));
  dialog.setWindowTitle(QFileDialog::tr("Add Folder"));
  SetHelpPage(dialog, parent);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setDirectory(QtPath(folder));
  return PathChosenIn(dialog);
}

}  // namespace tallow
