// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/open_jukeboxes.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

#include "jukebox/jukebox.h"
#include "util/json_file.h"
#include "util/json_text.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr JsonFileFormat kFormat = {"Tallow open jukeboxes", 1};

/// No edge of a window is farther from that of its area, in pixels.
constexpr int kMaxPixels = 1'000'000;

/// The names of WindowPlace::State, in its order.
constexpr std::array<std::string_view, 3> kStates = {"normal", "maximized", "minimized"};

FolderNames NamesOf(const Folder& folder) {
  FolderNames names;
  for (const Folder* part = &folder; part != nullptr; part = part->Parent())
    names.push_back(part->Text());
  std::ranges::reverse(names);
  return names;
}

/// Calls a function for each folder below one; for the folders of a tree if that is null.
template <typename Act>
void ForEachFolder(const FolderTree& tree, const Act& act) {
  std::vector<Folder*> left;
  for (std::int32_t k = tree.Children(); k-- > 0;) left.push_back(&tree.ChildAt(k));
  while (!left.empty()) {
    Folder& folder = *left.back();
    left.pop_back();
    act(folder);
    for (std::int32_t k = folder.Children(); k-- > 0;) left.push_back(&folder.ChildAt(k));
  }
}

void AppendNames(std::string& bytes, const FolderNames& names) {
  bytes += '[';
  const char* comma = "";
  for (const std::string& name : names) {
    bytes += std::exchange(comma, ",");
    AppendJsonText(bytes, name);
  }
  bytes += ']';
}

void AppendJukebox(std::string& bytes, const OpenJukebox& jukebox) {
  const WindowPlace& place = jukebox.place;
  bytes += "{\"file\":";
  AppendJsonText(bytes, jukebox.file);
  bytes += jukebox.is_active ? ",\"active\":true" : ",\"active\":false";
  bytes += ",\"state\":";
  AppendJsonText(bytes, kStates.at(static_cast<std::size_t>(place.state)));
  bytes += ",\"place\":[";
  const char* comma = "";
  for (const int number : {place.left, place.top, place.width, place.height})
    bytes += std::exchange(comma, ",") + std::to_string(number);
  bytes += "],\"shown\":";
  AppendNames(bytes, jukebox.shown);
  bytes += ",\"expanded\":[";
  comma = "";
  for (const FolderNames& names : jukebox.expanded) {
    bytes += std::exchange(comma, ",");
    AppendNames(bytes, names);
  }
  bytes += "]}";
}

std::string Encode(const std::vector<OpenJukebox>& jukeboxes) {
  std::string bytes = BeginJsonFile(kFormat) + ",\"jukeboxes\":[";
  const char* separator = "\n";
  for (const OpenJukebox& jukebox : jukeboxes) {
    bytes += std::exchange(separator, ",\n");
    AppendJukebox(bytes, jukebox);
  }
  return bytes + "]}\n";
}

FolderNames NamesFrom(const nlohmann::json& texts) {
  FolderNames names;
  for (const auto& text : texts) names.push_back(BytesOfJsonText(text.get<std::string>()));
  return names;
}

OpenJukebox JukeboxFrom(const nlohmann::json& member) {
  OpenJukebox jukebox;
  jukebox.file = BytesOfJsonText(member.at("file").get<std::string>());
  jukebox.is_active = member.at("active").get<bool>();
  const auto* const state = std::ranges::find(kStates, member.at("state").get<std::string>());
  const auto place = member.at("place").get<std::array<int, 4>>();
  const bool is_far = std::ranges::any_of(
      place, [](int number) { return number < -kMaxPixels || number > kMaxPixels; });
  if (state == kStates.end() || is_far || !IsAbsolutePath(jukebox.file))
    throw std::runtime_error("a jukebox has an invalid state, place or file");
  jukebox.place = {static_cast<WindowPlace::State>(state - kStates.begin()), place[0], place[1],
                   place[2], place[3]};
  jukebox.shown = NamesFrom(member.at("shown"));
  for (const auto& names : member.at("expanded")) jukebox.expanded.push_back(NamesFrom(names));
  return jukebox;
}

std::vector<OpenJukebox> Decode(const std::string& bytes) {
  const auto root = ParseJsonFile(bytes, kFormat);
  std::vector<OpenJukebox> jukeboxes;
  for (const auto& member : root.at("jukeboxes")) jukeboxes.push_back(JukeboxFrom(member));
  if (jukeboxes.size() > OpenJukeboxes::kMaxJukeboxes)
    throw std::runtime_error("it has too many jukeboxes");
  return jukeboxes;
}

}  // namespace

OpenJukebox DescribeOpen(const Jukebox& jukebox) {
  OpenJukebox open;
  open.file = jukebox.FilePath();
  if (jukebox.selectednode() != nullptr) open.shown = NamesOf(*jukebox.selectednode());
  ForEachFolder(jukebox.Nodes(), [&](const Folder& folder) {
    if (folder.Open() && folder.Children() > 0 &&
        open.expanded.size() < OpenJukeboxes::kMaxExpanded)
      open.expanded.push_back(NamesOf(folder));
  });
  return open;
}

Folder* FindFolder(const FolderTree& tree, const FolderNames& names) {
  Folder* folder = nullptr;
  for (const std::string& name : names) {
    Folder* next =
        folder == nullptr ? (tree.Children() > 0 ? &tree.ChildAt(0) : nullptr) : folder->Child();
    while (next != nullptr && next->Text() != name) next = next->Next();
    if (next == nullptr) return nullptr;
    folder = next;
  }
  return folder;
}

void ExpandAsBefore(const OpenJukebox& before, Jukebox& jukebox) {
  ForEachFolder(jukebox.Nodes(), [](Folder& folder) { folder.Open(false); });
  for (const FolderNames& names : before.expanded)
    if (Folder* const folder = FindFolder(jukebox.Nodes(), names)) folder->Open(true);
}

void OpenJukeboxes::LoadOnce(std::vector<std::string>& problems) {
  if (std::exchange(is_loaded_, true)) return;
  file_.Load(
      path_,
      [this](const std::string& bytes) {
        loaded_ = Decode(bytes);
        stored_ = bytes;
      },
      problems);
}

std::vector<OpenJukebox> OpenJukeboxes::Load(std::vector<std::string>& problems) {
  LoadOnce(problems);
  return loaded_;
}

void OpenJukeboxes::Store(const std::vector<OpenJukebox>& open) {
  if (!is_storing_) return;
  std::vector<std::string> problems;
  LoadOnce(problems);
  std::vector<OpenJukebox> all = open;
  for (const OpenJukebox& away : away_)
    if (std::ranges::none_of(
            open, [&](const OpenJukebox& other) { return IsSamePathText(other.file, away.file); }))
      all.push_back(away);
  if (all.size() > kMaxJukeboxes) all.resize(kMaxJukeboxes);
  std::string bytes = Encode(all);
  if (bytes == stored_) return;
  file_.Save(bytes);
  stored_ = std::move(bytes);
}

}  // namespace tallow
