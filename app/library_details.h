// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/remaining_time.h"
#include "details/child_reader.h"
#include "details/details_filler.h"
#include "details/details_table.h"
#include "details/song_tags.h"
#include "jukebox/filing_tags.h"

namespace tallow {

class clsMain;

/// What the files of the library's songs say of them: the database of song details, and filling it
/// in the background. The database is opened when it is first used.
///
/// Nothing is read before Start. From then on Poll has to be called regularly, by the thread that
/// changes the library, but not while songs are being searched or filed.
class LibraryDetails {
 public:
  /// \param path of the database; its folder has to exist at the first use
  /// \param now  the clock; empty: std::chrono::steady_clock
  explicit LibraryDetails(std::string path, std::function<RemainingTime::Time()> now = {});
  LibraryDetails(const LibraryDetails&) = delete;
  LibraryDetails& operator=(const LibraryDetails&) = delete;
  /// Stops, and closes the database.
  ~LibraryDetails();

  /// Makes TagReader and Start read files in child processes, see TagChildren and ChildReader.
  /// Otherwise they read in this process, which a damaged file may then end.
  void ReadInChildren(ChildSettings settings) { children_ = std::move(settings); }

  /// The function that reads the tags of a file for filing: the stored ones if size and time of
  /// change of the file are the same, otherwise those that ReadSongTags returns. It may be called
  /// on several threads at once, and after this object is destroyed. The children run until it and
  /// its copies are destroyed.
  ReadTags TagReader() const;

  /// The tags that are stored for a file; no value when its details were not read yet, or the
  /// database was not used yet. Does not ask the disk for the file.
  std::optional<SongTags> TagsOf(const std::string& path) const;

  /// What lists show of a song, without asking the disk for its file: what was read or stored last.
  /// Not known when the details were not read yet, or neither Use nor Start was called. Until the
  /// database was used, only what this run has read is known. The texts are valid until the next
  /// call of a function that is not const.
  DetailsRow RowOf(std::int32_t record);

  /// Starts to read the stored details of all songs that are present or away, on another thread;
  /// Poll and LoadAll take them. Later calls only read those of songs that the library has got
  /// since. Call it when LoadAll will probably be called soon.
  void BeginLoading();

  /// Calls BeginLoading, and waits for the details.
  ///
  /// \param max_wait the details that come later are taken by the next Poll or LoadAll
  const DetailsTable& LoadAll(std::chrono::milliseconds max_wait = kMaxLoading);
  static constexpr std::chrono::milliseconds kMaxLoading = std::chrono::seconds(10);

  /// Whether details of BeginLoading are still to be taken.
  bool IsLoading() const noexcept { return loading_ != nullptr; }

  /// The details that are in memory.
  const DetailsTable& Table() const noexcept { return table_; }

  /// Grows whenever details were read that RowOf did not return before.
  std::uint64_t Version() const noexcept { return version_; }

  /// The function that reads the cover of a song, see tallow::ReadCover. It may be called after
  /// this object is destroyed.
  std::function<std::string(const std::string& path, const std::function<bool()>& stopped)>
  CoverReader() const;

  /// Sets the library whose songs RowOf returns; Start does that, too.
  /// \param library has to outlive this object
  void Use(const clsMain& library) noexcept { library_ = &library; }

  /// Starts to read the details of all present songs, and of songs that are added later. Songs that
  /// are away are left out. What is known of the songs of this library stays known.
  ///
  /// \param library     has to outlive this object
  /// \param make_reader see DetailsFiller; empty: as ReadInChildren says
  void Start(const clsMain& library, DetailsFiller::MakeReader make_reader = {});

  /// Call after a scan: songs that have come back are read too, and Songs() is counted again.
  void Refresh() noexcept { needs_pass_ = true; }

  /// Takes the details that were read since the last call: those of BeginLoading, and at most
  /// DetailsFiller::kMaxWaiting others.
  void Poll();

  /// Stops within 100 ms; the next run of the program goes on. Only Start continues in this run.
  /// \returns false when a thread was abandoned
  bool Stop();

  /// Whether there are songs left to read.
  bool IsReading() const noexcept { return filler_ && !progress_.IsFinished(); }

  /// "Reading the details of songs: 120 of 5,000" when that takes more than two seconds from now
  /// on; else empty.
  std::string ProgressText() const;

  /// The number of songs that are present or away, as of the last Poll.
  std::int32_t Songs() const noexcept { return songs_; }
  /// How many of them are known to carry only newer tags.
  std::int32_t SongsWithOnlyNewerTags() const noexcept { return newer_; }
  /// Their record numbers, ascending.
  std::vector<std::int32_t> OnlyNewerTags() const { return Having(kOnlyNewer); }
  /// The record numbers of the songs whose details could not be read, ascending.
  std::vector<std::int32_t> Unreadable() const { return Having(kFailed); }

  /// Returns, and clears, sentences on what is wrong with the database.
  std::vector<std::string> TakeProblems();

 private:
  struct Stored;
  struct Loading;
  /// What is known of a song, bits.
  enum Fact : unsigned char { kRead = 1, kOnlyNewer = 2, kFailed = 4 };

  RemainingTime::Time Now() const;
  void BeginPass();
  void Add(std::int32_t record, const SongDetails& details);
  /// Stores the details that were read.
  void Keep(std::int32_t record, const DetailsRow& row);
  std::vector<std::int32_t> Having(Fact fact) const;
  /// Takes what is being loaded. \param until see AllRows::Take
  void TakeLoaded(std::chrono::steady_clock::time_point until);
  void StoreLoaded(std::string_view path, const DetailsRow& row);
  /// Stops loading if songs have got other numbers or files since it began.
  void DropOutdatedLoading();

  std::shared_ptr<Stored> stored_;
  std::optional<ChildSettings> children_;
  std::function<RemainingTime::Time()> now_;
  const clsMain* library_ = nullptr;  ///< null before Use
  std::optional<DetailsFiller> filler_;
  DetailsFiller::Progress progress_;  ///< of this pass
  std::optional<RemainingTime> remaining_;
  bool needs_pass_ = false;           ///< begin a pass when the running one ends
  std::vector<std::int32_t> pass_;    ///< the record numbers that this pass reads
  std::vector<unsigned char> facts_;  ///< by record number
  DetailsTable table_;
  std::unique_ptr<Loading> loading_;  ///< null while nothing is being loaded
  std::int32_t loaded_ = 0;           ///< the songs up to this record number were loaded
  bool returned_unknown_ = false;     ///< RowOf has returned a row that is not known
  std::uint64_t version_ = 0;
  std::int32_t rows_ = 0;  ///< of the library when this pass began
  std::int32_t songs_ = 0;
  std::int32_t newer_ = 0;
};

}  // namespace tallow
