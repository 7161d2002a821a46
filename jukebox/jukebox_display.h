// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// The header of the name column whenever a folder is shown.
inline constexpr std::string_view kNameHeader = "Name    --        (click to sort)";
/// The header of the second column.
inline constexpr std::string_view kKeyHeader = "Key";

/// Callbacks from a jukebox to its window.
class JukeboxView {
 public:
  virtual ~JukeboxView() = default;
  virtual void CaptionChanged() = 0;
  /// The shown folder or its songs have changed: fill the list again.
  virtual void ListChanged() = 0;
  /// Texts or pictures of the shown songs have changed; the set of songs is the same.
  virtual void LabelsChanged() = 0;
  virtual void HeadersChanged() = 0;
  /// Songs have other record numbers; the list is not filled again yet.
  virtual void Renumbered(const NewNumbers& /*numbers*/) {}
};

/// What the window of a jukebox displays: the caption, the folder whose songs are listed, and the
/// column headers of the list. Notifies the window of changes.
class JukeboxDisplay {
 public:
  /// \param view null for none; must outlive this object or be removed before
  void SetView(JukeboxView* view) noexcept { view_ = view; }
  JukeboxView* View() const noexcept { return view_; }

  const std::string& Caption() const noexcept { return caption_; }
  void Caption(std::string_view caption);

  /// The number of the window among the documents, as text.
  const std::string& Tag() const noexcept { return tag_; }
  void Tag(std::string_view tag) { tag_ = tag; }

  /// Whether the tree is shown with all folders expanded.
  bool Expanded() const noexcept { return expanded_; }
  void Expanded(bool expanded) noexcept { expanded_ = expanded; }

  /// The texts of the column headers, from left to right.
  const std::vector<std::string>& ColumnHeaders() const noexcept { return headers_; }
  void AddColumnHeader(std::string_view text);
  /// Replaces the header of the first column.
  void NameColumnHeader(std::string_view text);
  /// Replaces all headers. Does not notify the window.
  void ColumnHeaders(std::vector<std::string> headers) noexcept { headers_ = std::move(headers); }

  /// The folder shown; null for none.
  Folder* ShownFolder() const noexcept { return shown_folder_; }
  /// Replaces the folder shown, and removes the labels from the songs of the folder shown before.
  /// Does not notify the window.
  /// \param folder null for none
  void ShowFolder(Folder* folder);
  /// Shows no folder. The songs of the folder shown before keep their labels, so call this only
  /// when that folder is about to be destroyed.
  void ForgetFolder() noexcept { shown_folder_ = nullptr; }

  /// Notify the window, see JukeboxView.
  void ListChanged();
  void LabelsChanged();
  void HeadersChanged();
  void Renumbered(const NewNumbers& numbers);

 private:
  JukeboxView* view_ = nullptr;
  std::string caption_;
  std::string tag_;
  bool expanded_ = false;
  std::vector<std::string> headers_;
  Folder* shown_folder_ = nullptr;
};

}  // namespace tallow
