// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/explorer_keys.h"

#include <algorithm>

#include <QApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>

#include "library/cls_main.h"
#include "ui/jukebox/explorer/digit_keys.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

/// The modifiers of a key. Keys of the numeric keypad are equivalent to the other keys.
Qt::KeyboardModifiers ModifiersOf(const QKeyEvent& key) {
  return key.modifiers() & ~Qt::KeypadModifier;
}

/// The digit of a key that is pressed with Ctrl; -1 for none. On some keyboards the digits need
/// Shift; there the key of the digit counts with Ctrl alone as well.
int DigitWithCtrl(const QKeyEvent& key) {
  const Qt::KeyboardModifiers modifiers = ModifiersOf(key);
  const bool is_digit = key.key() >= Qt::Key_0 && key.key() <= Qt::Key_9;
  if (is_digit && (modifiers & ~Qt::ShiftModifier) == Qt::ControlModifier)
    return key.key() - Qt::Key_0;
  return modifiers == Qt::ControlModifier ? DigitOfNativeKey(key) : -1;
}

/// The item of the rank menu that a digit stands for; 0 for none.
int RankItemOfDigit(int digit) {
  if (digit == 0) return kNoRankItem;
  const int item = kBestRank + 1 - digit;
  return item > 0 && item < kRankItems ? item : 0;
}

}  // namespace

ExplorerKeys::ExplorerKeys(const clsMain& library, FolderTreeView& tree, SongListView& list)
    : library_(library), tree_(tree), list_(list) {
  tree.installEventFilter(this);
  list.installEventFilter(this);
}

bool ExplorerKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress)
    return KeyPressed(*static_cast<QKeyEvent*>(event), watched == &list_ ? kListPane : kTreePane);
  return QObject::eventFilter(watched, event);
}

bool ExplorerKeys::KeyPressed(const QKeyEvent& key, PopUpPane pane) {
  if (EditKeyPressed(key, pane) || (has_more_commands_ && MoreKeyPressed(key, pane))) return true;
  if (key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier) {
    emit MenuKey(pane);
    return true;
  }
  if (key.key() == Qt::Key_Backspace && ModifiersOf(key) == Qt::NoModifier) {
    emit ParentKey();
    return true;
  }
  if (key.key() == Qt::Key_Escape && ModifiersOf(key) == Qt::NoModifier) {
    emit EscapeKey();
    return false;
  }
  if (key.key() == Qt::Key_Space) {
    // While a name is being typed, the blank belongs to it.
    const bool is_typing = pane == kListPane ? list_.IsTyping() : IsTypingInTree();
    if (!library_.Switches().plays_on || ModifiersOf(key) != Qt::NoModifier || is_typing)
      return false;
    if (!key.isAutoRepeat()) emit PauseKey();
    return true;
  }
  if (pane == kTreePane && !key.text().isEmpty() && key.text().front().isPrint())
    since_typed_.start();
  return pane == kListPane && ListKeyPressed(key);
}

bool ExplorerKeys::IsTypingInTree() const {
  return since_typed_.isValid() && !since_typed_.hasExpired(QApplication::keyboardInputInterval());
}

bool ExplorerKeys::EditKeyPressed(const QKeyEvent& key, PopUpPane pane) {
  const QKeyCombination pressed(ModifiersOf(key), Qt::Key(key.key()));
  const auto is = [&](QKeyCombination combination) { return pressed == combination; };
  const auto command = [&](TreeCommand of_tree, ListCommand of_list) {
    if (pane == kListPane)
      emit ListCommandKey(of_list);
    else
      emit TreeCommandKey(of_tree);
    return true;
  };
  if (is(Qt::CTRL | Qt::Key_X)) return command(TreeCommand::kCutFolder, ListCommand::kCutSongs);
  if (is(Qt::CTRL | Qt::Key_C)) return command(TreeCommand::kCopyFolder, ListCommand::kCopySongs);
  if (is(Qt::CTRL | Qt::Key_V)) return command(TreeCommand::kPasteFolder, ListCommand::kPasteSongs);
  if (is(QKeyCombination(Qt::Key_Delete)))
    return command(TreeCommand::kDeleteFolder, ListCommand::kDeleteSongs);
  if (is(Qt::CTRL | Qt::Key_Z)) {
    emit UndoKey();
    return true;
  }
  if (is(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)) {
    emit RedoKey();
    return true;
  }
  return false;
}

bool ExplorerKeys::MoreKeyPressed(const QKeyEvent& key, PopUpPane pane) {
  const bool has_alt = ModifiersOf(key) == Qt::AltModifier;
  if (has_alt && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)) {
    if (pane == kListPane)
      emit ListCommandKey(ListCommand::kProperties);
    else
      emit TreeCommandKey(TreeCommand::kFolderProperties);
    return true;
  }
  if (pane != kListPane) return false;
  if (has_alt && (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down)) {
    emit MoveKey(key.key() == Qt::Key_Up);
    return true;
  }
  const int item = RankItemOfDigit(DigitWithCtrl(key));
  if (item != 0) emit ListCommandKey(RankCommand(item));
  return item != 0;
}

bool ExplorerKeys::ListKeyPressed(const QKeyEvent& key) {
  const int last = list_.model()->rowCount() - 1;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (ModifiersOf(key) != Qt::NoModifier) return false;
      if (list_.currentIndex().isValid() && !key.isAutoRepeat())
        emit OpenKey(list_.currentIndex().row());
      return true;
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Up:
    case Qt::Key_Down: {
      // A list that has only received the focus has a current row, but no selected row.
      if (last < 0 || list_.selectionModel()->hasSelection()) return false;
      const int current = std::max(0, list_.currentIndex().row());
      const int row = key.key() == Qt::Key_Home ? 0 : key.key() == Qt::Key_End ? last : current;
      list_.SelectRows(row, row);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace tallow
