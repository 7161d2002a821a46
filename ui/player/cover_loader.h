// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QImage>
#include <QObject>

namespace tallow {

/// Decodes the file of a cover.
///
/// \param bytes of a JPEG, PNG, GIF, BMP or WebP file
/// \param size  a larger picture is scaled down until its longer side has this many pixels
/// \returns a null image when the bytes are anything else, and for pictures of more than 25 million
///          pixels
QImage DecodeCover(const std::string& bytes, int size);

/// Reads and decodes covers on a thread of its own. Where the picture of the tags cannot be
/// decoded, that of the folder is shown. Only the newest request counts; the work for the one
/// before is stopped.
class CoverLoader : public QObject {
  Q_OBJECT

 public:
  /// Reads the file of the cover of a song, on the thread. Must return soon after stopped() has
  /// become true; the result is then ignored.
  using Read =
      std::function<std::string(const std::string& path, const std::function<bool()>& stopped)>;

  explicit CoverLoader(Read read, QObject* parent = nullptr);
  CoverLoader(const CoverLoader&) = delete;
  CoverLoader& operator=(const CoverLoader&) = delete;
  /// Stops, within 100 ms: a thread that is blocked by a disk is abandoned.
  ~CoverLoader() override;

  /// Loads the cover of a song.
  /// \param path of the song
  /// \param size see DecodeCover
  void Load(const std::string& path, int size);
  /// Forgets the newest request.
  void Cancel();

 signals:
  /// The newest request was done.
  /// \param cover a null image when the song has none that can be shown
  void Loaded(const QImage& cover);

 private:
  struct State;

  static void Work(const std::shared_ptr<State>& state);
  void Deliver(unsigned number, const QImage& cover);

  std::shared_ptr<State> state_;
};

}  // namespace tallow
