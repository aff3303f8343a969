// Files that other programs have open while they are renamed.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <system_error>
#include <thread>

#include "host/files/renaming.h"
#include "host/files/whole_file.h"
#include "src/base/unique_win.h"
#include "tests/support/temp_folder_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

class Renaming : public testing::Test {
 protected:
  Renaming() {
    folder_.Write("old", "old");
    folder_.Write("new", "new");
  }

  // As most programs open a file that they read: nobody may delete or rename it.
  wfinfo::UniqueFile Reader(const char* name) const {
    return wfinfo::UniqueFile(CreateFileA(folder_.Path(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
  }
  fs::path At(const char* name) const { return folder_.Path(name); }

  wfinfo_test::TempFolder folder_;
};

TEST_F(Renaming, WaitsForAReaderOfEitherFileThatIsSoonDone) {
  for (const char* read : {"new", "old"}) {
    ASSERT_TRUE(WriteWholeFile(At("new"), "new"));
    ASSERT_TRUE(WriteWholeFile(At("old"), "old"));
    auto reader = Reader(read);
    ASSERT_TRUE(reader);
    std::thread closing([&reader] {
      Sleep(60);
      reader = wfinfo::UniqueFile();
    });
    const std::error_code error = RenameOver(At("new"), At("old"));
    closing.join();
    EXPECT_FALSE(error) << read << ": " << error.message();
    EXPECT_EQ(ReadWholeFile(At("old")), "new") << read;
  }
}

TEST_F(Renaming, TellsOfAReaderThatStaysAndLeavesBothFiles) {
  const auto reader = Reader("old");
  ASSERT_TRUE(reader);
  EXPECT_TRUE(RenameOver(At("new"), At("old")));
  EXPECT_EQ(ReadWholeFile(At("new")), "new");
  EXPECT_EQ(ReadWholeFile(At("old")), "old");
}

TEST_F(Renaming, TellsANameThatIsTaken) {
  EXPECT_EQ(RenameToNew(At("new"), At("old")), std::errc::file_exists);
  EXPECT_EQ(ReadWholeFile(At("old")), "old");
}

}  // namespace
}  // namespace wrenfold
