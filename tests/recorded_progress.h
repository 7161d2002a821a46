// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/search/drive_list.h"
#include "app/search/search_progress.h"
#include "util/file_system.h"

namespace tallow {

/// A splash window without a screen that records its texts.
class RecordedProgress : public SearchProgress {
 public:
  bool IsLoaded() const override { return loaded; }
  void SetStatus(std::string_view text) override { status.emplace_back(text); }
  void SetFound(std::string_view text) override { found.emplace_back(text); }
  void Repaint() override { ++repaints; }
  void Yield() override {
    ++yields;
    if (on_yield) on_yield();
  }
  void YieldAfterSong() override {
    ++song_yields;
    if (on_song) on_song();
  }
  void VisitFolder(std::string_view /*folder*/) override {
    if (on_events) on_events();
  }

  bool loaded = true;
  std::vector<std::string> status;
  std::vector<std::string> found;
  int repaints = 0;
  int yields = 0;
  int song_yields = 0;
  std::function<void()> on_yield;
  std::function<void()> on_song;
  std::function<void()> on_events;
};

/// Drives of any type, each in a folder. Mount points and forbidden links can be set.
class TestDrives : public DriveList {
 public:
  struct Drive {
    std::string root;
    int type = kFixedDrive;
  };
  explicit TestDrives(std::vector<Drive> drives) : drives(std::move(drives)) {}

  std::string GetLogicalDriveList() const override {
    std::string list;
    for (const Drive& drive : drives) {
      list += drive.root;
      list.push_back('\0');
    }
    list.push_back('\0');
    return list;
  }
  int TypeOf(const std::string& root) const override {
    for (const Drive& drive : drives)
      if (drive.root == root) return FolderExists(root) ? drive.type : kNoDrive;
    return kUnknownDrive;
  }
  int ListedTypeOf(const std::string& root) const override {
    for (const Drive& drive : drives)
      if (drive.root == root) return drive.type;
    return kUnknownDrive;
  }
  bool IsMountPoint(const std::string& folder) const override { return folder == mount_point; }
  bool MayFollow(const std::string& folder) const override { return folder != forbidden_link; }

  std::vector<Drive> drives;
  std::string mount_point;
  std::string forbidden_link;
};

}  // namespace tallow
