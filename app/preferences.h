// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/style_switches.h"
#include "library/state_file.h"
#include "library/switches.h"

namespace tallow {

// The file "Preferences.json" holds the style, and the settings of the pages of the preferences
// dialog. It is a JSON object in UTF-8:
//
//   {
//     "format": "Tallow preferences",
//     "version": 1,
//     "style": "custom",
//     "switches": {
//       "newerTags": true,
//       "moreFormats": false
//     }
//   }
//
// | Member   | Value                                                        | Default   |
// |----------|--------------------------------------------------------------|-----------|
// | format   | "Tallow preferences"                                         | this      |
// | version  | 1                                                            | this      |
// | style    | "classic", "modern", or "custom": that of the switches below | "classic" |
// | switches | true or false for each StyleSwitch; used for "custom" only   | false     |
//
// Other members are the settings of Get and Set, or belong to other versions of Tallow. All are
// kept, at any level. A member of the table with another value makes the file a damaged one.

/// The user's preferences. Each change is stored in the file at once; the file is made by the first
/// value that is not its default. Not thread-safe.
class Preferences {
 public:
  /// A larger file is damaged, and so is one whose arrays and objects are nested deeper.
  static constexpr std::size_t kMaxBytes = std::size_t{16} << 20U;
  static constexpr int kMaxDepth = 100;

  Preferences();
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;
  ~Preferences();

  /// Reads the file; without one, everything has its default. Until then changes are not stored.
  ///
  /// A damaged file is renamed to end in ".bak". A file that cannot be read is never replaced; the
  /// changes then last until the program ends. Either adds a problem.
  ///
  /// \returns false when there is a file that cannot be used
  bool Load(const std::string& path);

  /// What applies in this run.
  const Switches& switches() const noexcept { return override_ ? *override_ : stored_; }
  Style style() const { return StyleOf(switches()); }

  /// Sets and stores all switches. This ends an override.
  void SetSwitches(const Switches& switches);
  /// Sets and stores the switches of a style. \param style not kCustom
  void SetStyle(Style style) { SetSwitches(SwitchesOf(style)); }

  /// Lets a style apply in place of the stored switches until the next SetSwitches. It is not
  /// stored, and no change is reported.
  ///
  /// \param style not kCustom
  void OverrideStyle(Style style) { override_ = SwitchesOf(style); }
  bool IsOverridden() const noexcept { return override_.has_value(); }

  /// Whether the user has ever chosen a style: one is in the file, or the command line gave one.
  bool IsStyleChosen() const;

  /// Returns another setting of the file.
  ///
  /// \tparam T bool, std::int64_t, double, std::string or std::vector<std::string>. A text is any
  ///         sequence of bytes, see util/json_text.h
  /// \param key       names of members from the outermost to the innermost, with points between
  ///                  them, such as "music.folders". The first is none of the table above
  /// \param otherwise returned when the file does not have the setting, or has a value of another
  ///                  type
  template <typename T>
  T Get(std::string_view key, T otherwise) const;
  /// Sets and stores another setting, see Get. Replaces a value of any type.
  template <typename T>
  void Set(std::string_view key, const T& value);

  /// Sets the function that is called after each change, when it is stored; empty for none.
  ///
  /// \param changed gets the switches that applied before. They equal those of now when another
  ///                setting was changed
  void OnChange(std::function<void(const Switches& before)> changed) {
    changed_ = std::move(changed);
  }

  /// Returns, and clears, sentences on what could not be read or stored.
  std::vector<std::string> TakeProblems() { return std::exchange(problems_, {}); }

 private:
  struct Content;

  void Decode(const std::string& bytes);
  void StoreSwitches();
  void Save();
  void AddSaveProblem(std::string problem);

  StateFile file_;
  bool is_on_disk_ = false;           ///< the file exists and is not damaged
  std::unique_ptr<Content> content_;  ///< all of the file, unknown members too
  Switches stored_;
  std::optional<Switches> override_;
  std::function<void(const Switches& before)> changed_;
  std::vector<std::string> problems_;
  std::string save_problem_;  ///< of the last Save; empty when it succeeded
};

}  // namespace tallow
