// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"
#include "util/errors.h"
#ifndef _WIN32
#include "tests/as_nobody_linux.h"
#endif

namespace tallow {
namespace {

CommandLine Parse(const std::vector<std::string>& arguments) { return ParseCommandLine(arguments); }

bool NoDrive(const std::string& /*root*/) { return false; }
bool AnyDrive(const std::string& /*root*/) { return true; }

TEST(CommandLine, AMissingDriveIsAnErrorUnlessItIsKnown) {
  const TempFolder folder;
  const std::string none = folder / "none/";
  EXPECT_EQ(ProblemOfDrive(none, NoDrive), "The drive folder " + none + " does not exist.");
  EXPECT_EQ(ProblemOfDrive(none, AnyDrive), "");
  EXPECT_EQ(ProblemOfDrive(folder.path(), NoDrive), "");
  // The parser does not check drives: known drives are looked up later, in the application folder.
  EXPECT_EQ(Parse({"--drive", none}).error, "");
}

TEST(CommandLine, AnUnusableApplicationFolderIsAFolderError) {
  const TempFolder folder;
  const CommandLine line = Parse({"--app-folder", folder / "none", "--exit-after-startup"});
  EXPECT_TRUE(line.is_folder_error);
  EXPECT_TRUE(line.exit_after_startup);
  EXPECT_FALSE(Parse({"--fast"}).is_folder_error);
}

TEST(CommandLine, WithoutArgumentsTheDefaultsApply) {
  const CommandLine line = Parse({});
  EXPECT_EQ(line.error, "");
  EXPECT_EQ(line.application_folder, "");
  EXPECT_TRUE(line.drives.empty());
  EXPECT_FALSE(line.exit_after_startup);
}

TEST(CommandLine, AcceptsEveryOption) {
  const TempFolder folder;
  const std::string a = folder.Folder("a");
  const std::string b = folder.Folder("b");
  const CommandLine line =
      Parse({"--drive", b, "--app-folder", folder / "a", "--drive", a, "--exit-after-startup"});
  EXPECT_EQ(line.error, "");
  EXPECT_EQ(line.application_folder, a);
  EXPECT_EQ(line.drives, (std::vector<std::string>{b, a}));
  EXPECT_TRUE(line.exit_after_startup);
  EXPECT_TRUE(Parse({"--help"}).help);
  EXPECT_TRUE(Parse({"--version"}).version);
}

TEST(CommandLine, InvalidArgumentsAreNamed) {
  const TempFolder folder;
  EXPECT_EQ(Parse({"--fast"}).error,
            "'--fast' is not an option of Tallow. tallow --help lists them.");
  EXPECT_EQ(Parse({"--drive"}).error, "--drive requires a folder.");
  EXPECT_EQ(Parse({"--app-folder", ""}).error, "--app-folder requires a folder.");
  EXPECT_EQ(Parse({"--app-folder", folder / "none"}).error,
            "The application folder " + (folder / "none/") + " does not exist.");
}

TEST(CommandLine, TakesAStyle) {
  EXPECT_EQ(Parse({}).style, std::nullopt);
  EXPECT_EQ(Parse({"--style", "classic"}).style, Style::kClassic);
  const CommandLine line = Parse({"--style", "classic", "--style", "modern", "a.juk"});
  EXPECT_EQ(line.style, Style::kModern);
  EXPECT_EQ(line.error, "");
  EXPECT_EQ(line.files.size(), 1U);
}

TEST(CommandLine, AStyleThatIsNoneIsNamed) {
  EXPECT_EQ(Parse({"--style"}).error, "--style requires classic or modern.");
  EXPECT_EQ(Parse({"--style", ""}).error, "--style requires classic or modern.");
  EXPECT_EQ(Parse({"--style", "--version"}).error, "--style requires classic or modern.");
  for (const char* const name : {"retro", "Modern", "custom"}) {
    const CommandLine line = Parse({"--style", name});
    EXPECT_EQ(line.error,
              "'" + std::string(name) + "' is not a style. --style requires classic or modern.");
    EXPECT_EQ(line.style, std::nullopt);
    EXPECT_FALSE(line.is_folder_error);
  }
}

TEST(CommandLine, TheHelpNamesEveryOption) {
  const std::string help = HelpText();
  for (const char* option : {"--app-folder DIR", "--drive DIR", "--style STYLE",
                             "--exit-after-startup", "--help", "--version"})
    EXPECT_NE(help.find(option), std::string::npos) << option;
}

#ifndef _WIN32
TEST(CommandLine, AFolderWithALineBreakCannotHoldTheSettings) {
  const TempFolder folder;
  const std::string broken = folder.Folder("a\nb");
  EXPECT_EQ(Parse({"--app-folder", broken}).error,
            "The application folder " + broken + " has a line break in its path.");
}
#endif

TEST(ApplicationFolder, IsAFolderThatCanBeWritten) {
  EXPECT_TRUE(FolderIsWritable(DefaultApplicationFolder()));
}

TEST(ApplicationFolder, IsTheProgramsOwnFolderWhenItCanBeWritten) {
  const TempFolder own;
  const TempFolder data;
  EXPECT_EQ(DefaultApplicationFolder(own.path(), data.path()), own.path());
  EXPECT_FALSE(FolderExists(data / "Tallow"));
}

TEST(ApplicationFolder, IsElseMadeInTheUsersData) {
  const TempFolder data;
  for (const std::string& own : {std::string(), data / "none/"}) {
    EXPECT_EQ(DefaultApplicationFolder(own, data / "made/"), data / "made/Tallow/");
    EXPECT_TRUE(FolderExists(data / "made/Tallow"));
  }
}

TEST(ApplicationFolder, WithoutAUsersFolderTheProgramsFolderIsNamed) {
  const TempFolder folder;
  const std::string own = folder / "none/";
  try {
    DefaultApplicationFolder(own, {});
    ADD_FAILURE() << "no exception";
  } catch (const FileError& error) {
    EXPECT_EQ(std::string(error.what()),
              own + ": No file can be created there, and the user has no data folder.");
  }
}

TEST(ApplicationFolder, AFileInItsPlaceIsNamed) {
  const TempFolder data;
  data.File("Tallow");
  try {
    DefaultApplicationFolder({}, data.path());
    ADD_FAILURE() << "no exception";
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), data / "Tallow/");
  }
}

TEST(CommandLine, AnOptionIsNotReadAsAFolder) {
  EXPECT_EQ(Parse({"--drive", "--app-folder", "x"}).error, "--drive requires a folder.");
}

#ifndef _WIN32
TEST(CommandLine, FoldersWithoutPermissionAreNamed) {
  const TempFolder folder;
  const std::string closed = folder.Folder("closed");
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  const AsNobody nobody;
  EXPECT_EQ(ProblemOfDrive(closed, NoDrive), "The drive folder " + closed + " cannot be read.");
  EXPECT_EQ(Parse({"--app-folder", folder.path()}).error,
            "No file can be created in the application folder " + folder.path() + ".");
}

TEST(ApplicationFolder, AUsersFolderWithoutPermissionIsNamed) {
  const TempFolder data;
  const std::string folder = data.Folder("Tallow");
  std::filesystem::permissions(
      folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec |
                  std::filesystem::perms::others_read | std::filesystem::perms::others_exec);
  const AsNobody nobody;
  try {
    DefaultApplicationFolder(data / "none/", data.path());
    ADD_FAILURE() << "no exception";
  } catch (const FileError& error) {
    EXPECT_EQ(std::string(error.what()),
              folder + ": No file can be created in the application folder " + folder + ".");
  }
}
#endif

}  // namespace
}  // namespace tallow
