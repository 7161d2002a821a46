// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_display.h"

namespace tallow {

void JukeboxDisplay::Caption(std::string_view caption) {
  caption_ = caption;
  if (view_ != nullptr) view_->CaptionChanged();
}

void JukeboxDisplay::AddColumnHeader(std::string_view text) {
  headers_.emplace_back(text);
  HeadersChanged();
}

void JukeboxDisplay::NameColumnHeader(std::string_view text) {
  if (headers_.empty()) headers_.emplace_back();
  headers_.front() = text;
  HeadersChanged();
}

void JukeboxDisplay::ShowFolder(Folder* folder) {
  if (shown_folder_ != nullptr)
    for (SongEntry& entry : shown_folder_->Items()) entry.LabelPosition(0);
  shown_folder_ = folder;
}

void JukeboxDisplay::ListChanged() {
  if (view_ != nullptr) view_->ListChanged();
}

void JukeboxDisplay::LabelsChanged() {
  if (view_ != nullptr) view_->LabelsChanged();
}

void JukeboxDisplay::HeadersChanged() {
  if (view_ != nullptr) view_->HeadersChanged();
}

void JukeboxDisplay::Renumbered(const NewNumbers& numbers) {
  if (view_ != nullptr) view_->Renumbered(numbers);
}

}  // namespace tallow
