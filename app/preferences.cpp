// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "util/errors.h"
#include "util/json_text.h"

namespace tallow {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kFormat = "Tallow preferences";
constexpr int kVersion = 1;

/// Parses the file. \throws std::exception when it is damaged
Json Parse(const std::string& bytes) {
  if (bytes.size() > Preferences::kMaxBytes) throw std::runtime_error("it is too large");
  // Json::dump is recursive, so a deeper value could overflow the stack.
  const auto check_depth = [](int depth, Json::parse_event_t /*event*/, Json& /*parsed*/) {
    if (depth > Preferences::kMaxDepth) throw std::runtime_error("it is nested too deep");
    return true;
  };
  Json root = Json::parse(bytes, check_depth);
  if (!root.is_object() || root.value("format", kFormat) != kFormat ||
      root.value("version", Json(kVersion)) != kVersion)
    throw std::runtime_error("it was written by another program or a newer Tallow");
  return root;
}

/// \throws std::exception when a switch has no value that it can have
Switches SwitchesIn(const Json& root) {
  const std::string name = root.value("style", std::string(NameOfStyle(Style::kClassic)));
  const std::optional<Style> style = StyleOfName(name);
  if (!style) throw std::runtime_error("'" + name + "' is not a style");
  Switches custom;
  if (const auto switches = root.find("switches"); switches != root.end())
    for (const StyleSwitch& one : StyleSwitches())
      custom.*one.member = switches->value(one.name, false);
  return *style == Style::kCustom ? custom : SwitchesOf(*style);
}

Json JsonOf(bool value) { return value; }
Json JsonOf(std::int64_t value) { return value; }
Json JsonOf(double value) { return value; }
Json JsonOf(const std::string& value) {
  std::string quoted;
  AppendJsonText(quoted, value);
  return Json::parse(quoted);
}
Json JsonOf(const std::vector<std::string>& value) {
  Json array = Json::array();
  for (const std::string& text : value) array.push_back(JsonOf(text));
  return array;
}

void Read(const Json& from, bool& to) {
  if (from.is_boolean()) to = from.get<bool>();
}
void Read(const Json& from, std::int64_t& to) {
  const bool is_too_large =
      from.is_number_unsigned() && from.get<std::uint64_t>() > std::uint64_t{INT64_MAX};
  if (from.is_number_integer() && !is_too_large) to = from.get<std::int64_t>();
}
void Read(const Json& from, double& to) {
  if (from.is_number()) to = from.get<double>();
}
void Read(const Json& from, std::string& to) {
  if (from.is_string()) to = BytesOfJsonText(from.get<std::string>());
}
void Read(const Json& from, std::vector<std::string>& to) {
  if (!from.is_array()) return;
  std::vector<std::string> texts;
  for (const Json& text : from) {
    if (!text.is_string()) return;
    texts.push_back(BytesOfJsonText(text.get<std::string>()));
  }
  to = std::move(texts);
}

/// Removes the first name of a key, and returns it.
std::string TakeName(std::string_view& key) {
  const std::size_t point = key.find('.');
  std::string name(key.substr(0, point));
  key = point == std::string_view::npos ? std::string_view() : key.substr(point + 1);
  return name;
}

/// The value of a key; null when there is none.
const Json* Find(const Json& root, std::string_view key) {
  const Json* value = &root;
  while (!key.empty()) {
    const auto member = value->find(TakeName(key));
    // For a value that is no object, find returns its end, too.
    if (member == value->end()) return nullptr;
    value = &*member;
  }
  return value;
}

}  // namespace

struct Preferences::Content {
  Json root = Json::object();
};

Preferences::Preferences() : content_(std::make_unique<Content>()) {}

Preferences::~Preferences() = default;

bool Preferences::Load(const std::string& path) {
  content_ = std::make_unique<Content>();
  stored_ = {};
  is_on_disk_ = false;
  const std::size_t before = problems_.size();
  file_.Load(
      path, [this](const std::string& bytes) { Decode(bytes); }, problems_);
  if (problems_.size() == before) return true;
  problems_.back() += IsOverridden() ? " All preferences are as they were at first."
                                     : " Tallow runs in the classic style now.";
  problems_.back() += " To choose again, open Tools > Preferences.";
  return false;
}

void Preferences::Decode(const std::string& bytes) {
  Json root = Parse(bytes);
  stored_ = SwitchesIn(root);
  content_->root = std::move(root);
  is_on_disk_ = true;
}

void Preferences::SetSwitches(const Switches& switches) {
  const Switches before = this->switches();
  override_.reset();
  if (switches != stored_) {
    stored_ = switches;
    StoreSwitches();
    Save();
  }
  if (before != switches && changed_) changed_(before);
}

bool Preferences::IsStyleChosen() const {
  return IsOverridden() || content_->root.contains("style");
}

void Preferences::StoreSwitches() {
  Json& root = content_->root;
  const Style style = StyleOf(stored_);
  root["style"] = NameOfStyle(style);
  if (style == Style::kClassic && !is_on_disk_) root.erase("style");
  // The switches of a style are not stored: a later version of it may have more of them.
  if (style != Style::kCustom && !root.contains("switches")) return;
  Json& switches = root["switches"];
  for (const StyleSwitch& one : StyleSwitches()) {
    if (style == Style::kCustom)
      switches[one.name] = stored_.*one.member;
    else
      switches.erase(one.name);
  }
  if (switches.empty()) root.erase("switches");
}

void Preferences::Save() {
  // Without a file, everything has its default anyway.
  if (file_.path().empty() || (content_->root.empty() && !is_on_disk_)) return;
  if (file_.IsUnreadable())
    return AddSaveProblem("The preferences could not be saved, because " + file_.path() +
                          " could not be read at the start. They last until Tallow ends.");
  Json file = {{"format", kFormat}, {"version", kVersion}};
  file.update(content_->root);
  try {
    file_.Save(file.dump(2) + "\n");
    is_on_disk_ = true;
    save_problem_.clear();
  } catch (const FileError& error) {
    AddSaveProblem("The preferences could not be saved. " + std::string(error.what()) +
                   ". Free some disk space, or make the file writable.");
  }
}

void Preferences::AddSaveProblem(std::string problem) {
  if (problem == save_problem_) return;
  save_problem_ = problem;
  problems_.push_back(std::move(problem));
}

template <typename T>
T Preferences::Get(std::string_view key, T otherwise) const {
  if (const Json* const value = Find(content_->root, key)) Read(*value, otherwise);
  return otherwise;
}

template <typename T>
void Preferences::Set(std::string_view key, const T& value) {
  Json made = JsonOf(value);
  const Json* const old = Find(content_->root, key);
  if (old != nullptr && *old == made && old->type() == made.type()) return;
  Json* place = &content_->root;
  while (!key.empty()) {
    if (!place->is_object()) *place = Json::object();
    place = &(*place)[TakeName(key)];
  }
  *place = std::move(made);
  Save();
  if (changed_) changed_(switches());
}

template bool Preferences::Get(std::string_view, bool) const;
template std::int64_t Preferences::Get(std::string_view, std::int64_t) const;
template double Preferences::Get(std::string_view, double) const;
template std::string Preferences::Get(std::string_view, std::string) const;
template std::vector<std::string> Preferences::Get(std::string_view,
                                                   std::vector<std::string>) const;
template void Preferences::Set(std::string_view, const bool&);
template void Preferences::Set(std::string_view, const std::int64_t&);
template void Preferences::Set(std::string_view, const double&);
template void Preferences::Set(std::string_view, const std::string&);
template void Preferences::Set(std::string_view, const std::vector<std::string>&);

}  // namespace tallow
