// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QWidget>

namespace tallow {

/// A page of the preferences that leads to a command: a sentence on what it is for, and its button.
class CommandPage : public QWidget {
  Q_OBJECT

 public:
  /// \param name    object name of the button
  /// \param command called by a click on the button
  CommandPage(const QString& sentence, const char* name, const QString& caption,
              std::function<void()> command, QWidget* parent);
};

}  // namespace tallow
