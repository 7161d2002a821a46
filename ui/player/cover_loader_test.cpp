// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/cover_loader.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

#include <QBuffer>
#include <QSignalSpy>
#include <QTest>

#include "details/cover_reader.h"
#include "tests/picture_frame.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

std::string FileOf(const QImage& image, const char* format = "PNG") {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes.toStdString();
}

QImage Filled(int width, int height, QColor color) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

TEST(DecodeCover, ScalesDownAndKeepsTheProportions) {
  const QImage wide = DecodeCover(FileOf(Filled(400, 100, Qt::red)), 200);
  EXPECT_EQ(wide.size(), QSize(200, 50));
  EXPECT_EQ(wide.pixelColor(100, 25), QColor(Qt::red));
  EXPECT_EQ(DecodeCover(FileOf(Filled(100, 400, Qt::red), "JPEG"), 200).size(), QSize(50, 200));
  EXPECT_EQ(DecodeCover(FileOf(Filled(30, 20, Qt::red)), 200).size(), QSize(30, 20));
  EXPECT_EQ(DecodeCover(FileOf(Filled(4000, 1, Qt::red)), 100).size(), QSize(100, 1));
}

TEST(DecodeCover, OfOtherBytesIsNull) {
  const std::string good = FileOf(Filled(30, 20, Qt::red));
  EXPECT_TRUE(DecodeCover("", 100).isNull());
  EXPECT_TRUE(DecodeCover("no picture", 100).isNull());
  EXPECT_TRUE(DecodeCover(good.substr(0, 40), 100).isNull());
  EXPECT_TRUE(
      DecodeCover("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>", 100)
          .isNull());
  // A format that Qt reads.
  EXPECT_TRUE(DecodeCover(FileOf(Filled(30, 20, Qt::red), "PPM"), 100).isNull());
}

TEST(DecodeCover, OfAHugePictureIsNull) {
  const auto square = [](int side) {
    QImage image(side, side, QImage::Format_Mono);
    image.fill(0);
    return FileOf(image);
  };
  EXPECT_EQ(DecodeCover(square(5000), 100).size(), QSize(100, 100));
  EXPECT_TRUE(DecodeCover(square(5001), 100).isNull());
}

class CoverLoading : public testing::Test {
 protected:
  /// Waits for a cover; a null image when none comes.
  static QImage Next(QSignalSpy& loaded) {
    if (loaded.isEmpty() && !loaded.wait(20'000)) return {};
    return loaded.takeFirst().front().value<QImage>();
  }
};

TEST_F(CoverLoading, LoadsTheCoverOfASongFile) {
  const TempFolder folder;
  const std::string tagged = folder.File(
      "a.mp3", TagOfFrames(PictureFrame(FileOf(Filled(300, 300, Qt::red)))) + Audio(800));
  const std::string plain = folder.File("b.mp3", Audio(800));
  folder.File("Cover.JPG", FileOf(Filled(300, 300, Qt::blue), "JPEG"));
  CoverLoader loader([](const std::string& path, const std::function<bool()>& stopped) {
    return ReadCover(path, {}, stopped);
  });
  QSignalSpy loaded(&loader, &CoverLoader::Loaded);
  loader.Load(tagged, 96);
  const QImage of_tag = Next(loaded);
  EXPECT_EQ(of_tag.size(), QSize(96, 96));
  EXPECT_EQ(of_tag.pixelColor(50, 50), QColor(Qt::red));
  loader.Load(plain, 96);
  const QColor of_folder = Next(loaded).pixelColor(50, 50);
  EXPECT_GT(of_folder.blue(), 240);
  EXPECT_LT(of_folder.red(), 15);
}

TEST_F(CoverLoading, ADamagedPictureOfTheTagsDoesNotHideThatOfTheFolder) {
  const TempFolder folder;
  const std::string song =
      folder.File("a.mp3", TagOfFrames(PictureFrame("no picture")) + Audio(800));
  folder.File("cover.jpg", FileOf(Filled(300, 300, Qt::blue), "JPEG"));
  CoverLoader loader([](const std::string& path, const std::function<bool()>& stopped) {
    return ReadCover(path, {}, stopped);
  });
  QSignalSpy loaded(&loader, &CoverLoader::Loaded);
  loader.Load(song, 96);
  EXPECT_GT(Next(loaded).pixelColor(50, 50).blue(), 240);
}

TEST_F(CoverLoading, OfTheNewestRequestWins) {
  std::atomic<int> waits = 0;
  CoverLoader loader([&](const std::string& path, const std::function<bool()>& stopped) {
    ++waits;
    while (path == "slow" && !stopped()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return FileOf(Filled(static_cast<int>(path.size()), 1, Qt::red));
  });
  QSignalSpy loaded(&loader, &CoverLoader::Loaded);
  loader.Load("slow", 96);
  while (waits == 0) std::this_thread::yield();
  loader.Load("skipped", 96);
  loader.Load("this one", 96);
  EXPECT_EQ(Next(loaded).width(), 8);
  EXPECT_TRUE(loaded.isEmpty());
}

TEST_F(CoverLoading, CanBeCancelled) {
  std::atomic<bool> began = false;
  CoverLoader loader([&](const std::string&, const std::function<bool()>& stopped) {
    began = true;
    while (!stopped()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return std::string();
  });
  QSignalSpy loaded(&loader, &CoverLoader::Loaded);
  loader.Load("slow", 96);
  while (!began) std::this_thread::yield();
  loader.Cancel();
  loader.Load("slow", 96);
  loader.Cancel();
  EXPECT_FALSE(loaded.wait(200));
}

TEST_F(CoverLoading, EndsWhileADiskDoesNotAnswer) {
  struct Disk {
    std::atomic<bool> began = false;
    std::atomic<bool> answers = false;
    std::atomic<bool> ended = false;
  };
  const auto disk = std::make_shared<Disk>();
  {
    CoverLoader loader([disk](const std::string&, const std::function<bool()>&) {
      disk->began = true;
      while (!disk->answers) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      disk->ended = true;
      return std::string("no picture");
    });
    loader.Load("a.mp3", 96);
    while (!disk->began) std::this_thread::yield();
  }
  EXPECT_FALSE(disk->ended);
  disk->answers = true;
  while (!disk->ended) std::this_thread::yield();
}

}  // namespace
}  // namespace tallow
