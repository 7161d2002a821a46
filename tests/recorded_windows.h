// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/system.h"
#include "jukebox/jukebox.h"
#include "tests/recorded_progress.h"

namespace tallow {

/// The windows of a start-up without a screen: record the calls and return the answers set by the
/// test.
class RecordedWindows : public StartUpWindows {
 public:
  void ShowSplash() override { Log("splash"); }
  SearchProgress& Splash() override { return progress; }
  SearchProgress* LoadedSplash() override { return &progress; }
  void ShowCancelButton(bool visible) override { Log(visible ? "cancel on" : "cancel off"); }
  void ShowFoundLine(bool visible) override { Log(visible ? "found on" : "found off"); }
  void UnloadSplash() override { Log("splash off"); }
  Jukebox& NewJukebox() override {
    jukeboxes.push_back(std::make_unique<Jukebox>());
    open.push_back(jukeboxes.back().get());
    return *jukeboxes.back();
  }
  void ShowJukebox(Jukebox& jukebox) override {
    Log("jukebox");
    last_shown = &jukebox;
  }
  std::span<Jukebox* const> OpenJukeboxes() override { return open; }
  MessageAnswer Show(const Message& message) override {
    const bool is_question = message.buttons != MessageButtons::kOk;
    (is_question ? asked : messages).push_back(message.text);
    if (!is_question) return MessageAnswer::kOk;
    if (message.can_be_dismissed && leaves_questions) return MessageAnswer::kCancel;
    return answer ? MessageAnswer::kYes : MessageAnswer::kNo;
  }
  std::optional<std::size_t> Choose(const std::string& text,
                                    const std::vector<std::string>& of) override {
    asked.push_back(text);
    choices = of;
    if (on_choose) on_choose();
    return choice;
  }
  void Notice(const std::vector<std::string>& lines) override {
    notices.insert(notices.end(), lines.begin(), lines.end());
  }
  void NoticeScan(const std::vector<std::string>& lines) override { scan = lines.back(); }
  void DiscardJukebox(Jukebox& jukebox) override { std::erase(open, &jukebox); }
  void SelectFolder(Jukebox& /*jukebox*/, Folder& folder) override {
    selected.push_back(folder.Text());
  }
  void PlaceJukeboxes(const std::vector<PlacedJukebox>& of, Jukebox& in_front) override {
    placed = of;
    front = &in_front;
  }
  void OpenInTextEditor(const std::string& path) override { Log("editor " + path); }
  void ShowTip() override { Log("tip"); }

  RecordedProgress progress;
  Jukebox* last_shown = nullptr;
  std::vector<std::unique_ptr<Jukebox>> jukeboxes;
  std::vector<Jukebox*> open;
  std::vector<std::string> log;
  std::vector<std::string> messages;
  std::vector<std::string> asked;
  std::vector<std::string> notices;
  std::vector<std::string> selected;  ///< the folders of SelectFolder()
  std::vector<PlacedJukebox> placed;
  Jukebox* front = nullptr;  ///< of PlaceJukeboxes()
  std::string scan;          ///< the last line of the start's notice, with the counts
  bool answer = true;
  std::vector<std::string> choices;       ///< of the last Choose()
  std::optional<std::size_t> choice = 0;  ///< index into `choices` that Choose() returns
  std::function<void()> on_choose;        ///< called while Choose() waits for the user
  bool leaves_questions = false;

 private:
  void Log(std::string what) { log.push_back(std::move(what)); }
};

}  // namespace tallow
