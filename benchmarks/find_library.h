// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallow {

class Tallow;

/// What the benchmarks of the search type, letter by letter; UTF-8.
inline constexpr std::string_view kTypedTexts[] = {"beatles", "queen live", "the night",
                                                   "e t a",   "día",        "для"};

/// A large library whose songs are in memory and in the database of details only; there are no
/// files.
class FindLibrary {
 public:
  /// \param folder for the database, which later runs use again; ends in a separator
  /// \param count  of songs
  FindLibrary(const std::string& folder, std::int32_t count);

  /// The application folder of a Tallow for this library.
  const std::string& Application() const noexcept { return application_; }
  /// Path of the database of details.
  const std::string& Database() const noexcept { return database_; }

  /// Adds the songs to the library, and their details to the database if it is new.
  void Fill(Tallow& tallow) const;

 private:
  std::string application_;
  std::string database_;
  std::int32_t count_;
};

}  // namespace tallow
