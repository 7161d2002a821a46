// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <QDialog>

#include "app/style_findings.h"

namespace tallow {

/// The list of the songs and files that the classic style leaves out or files without their tags.
class frmStyleFindings : public QDialog {
  Q_OBJECT

 public:
  /// \param findings the library must not change while the dialog is open
  explicit frmStyleFindings(std::vector<StyleFindings> findings, QWidget* parent = nullptr);
};

}  // namespace tallow
