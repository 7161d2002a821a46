// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/temp_folder.h"
#include "tests/wait_until.h"
#include "util/start_program.h"

namespace tallow {
namespace {

TEST(StartProgramLinux, AProgramRunsInASessionOfItsOwnWithAnEmptyInput) {
  const TempFolder folder;
  const std::string said = folder / "said";
  // Field 6 is the session.
  const std::string program = folder.File(
      "program", "#!/bin/sh\n{ echo $# $(cut -d' ' -f6 /proc/$$/stat); cat; echo end; } > '" +
                     said + ".new'\nmv '" + said + ".new' '" + said + "'\n");
  ASSERT_EQ(chmod(program.c_str(), S_IRWXU), 0);
  ASSERT_TRUE(StartProgram(program, FirstWindow::kNormal));
  ASSERT_TRUE(WaitUntil([&] { return FileExists(said); }));
  const std::string text = ReadWholeFile(said).value_or("");
  EXPECT_TRUE(text.starts_with("0 ")) << text;
  EXPECT_TRUE(text.ends_with("\nend\n")) << text;
  EXPECT_NE(std::stoi(text.substr(2)), getsid(0)) << text;
}

TEST(StartProgramLinux, AFileThatIsNoProgramIsNotStarted) {
  const TempFolder folder;
  EXPECT_FALSE(StartProgram(folder / "none", FirstWindow::kNormal));
  EXPECT_FALSE(StartProgram(folder.File("text", "no program"), FirstWindow::kNormal));
}

}  // namespace
}  // namespace tallow
