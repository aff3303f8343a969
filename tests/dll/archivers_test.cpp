// The archivers, with libraries that stand in for them.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

std::string Double(const char* name) { return (std::filesystem::current_path() / "doubles" / name).string(); }

struct Family {
  int (*load)();
  int (*free)();
  int (*run)(void*, const char*);
  const char* (*output)();
  const char* library;
  const char* load_failure;
  std::u8string load_failure_japanese;
  const char* missing_entry;
  std::u8string missing_entry_japanese;
};

class Archiver : public testing::TestWithParam<Family> {
 protected:
  // Where the libraries are found by their bare name.
  void Install(const char* folder) { SetDllDirectoryA(Double(folder).c_str()); }
  void TearDown() override {
    GetParam().free();
    SetDllDirectoryA(nullptr);
  }
  ScriptedHost host_;
};

TEST_P(Archiver, AOneShotCallLeavesNoOutput) {
  Install("archivers");
  EXPECT_EQ(GetParam().run(nullptr, "l something"), 1);
  EXPECT_STREQ(GetParam().output(), "");
  EXPECT_EQ(GetModuleHandleA(GetParam().library), nullptr);
}

TEST_P(Archiver, ALoadedArchiverKeepsItsOutputUntilTheNextCall) {
  Install("archivers");
  EXPECT_EQ(GetParam().load(), 1);
  EXPECT_EQ(GetParam().load(), 1);
  EXPECT_EQ(GetParam().run(nullptr, "l first command"), 1);
  EXPECT_STREQ(GetParam().output(), "window 0, room 10240: l first command");
  EXPECT_EQ(GetParam().run(host_.frame(), "l second"), 1);
  EXPECT_STREQ(GetParam().output(), "window 1, room 10240: l second");
  EXPECT_NE(GetModuleHandleA(GetParam().library), nullptr);
  EXPECT_EQ(GetParam().free(), 0);
  EXPECT_EQ(GetModuleHandleA(GetParam().library), nullptr);
  EXPECT_STREQ(GetParam().output(), "");
}

TEST_P(Archiver, AnOutputThatFillsTheBufferIsTerminated) {
  Install("archivers");
  GetParam().load();
  EXPECT_EQ(GetParam().run(nullptr, "flood"), 0);
  EXPECT_EQ(std::string(GetParam().output()), std::string(10239, 'x'));
}

TEST_P(Archiver, OneThatIsFreedAtItsWorkIsUnloadedWhenThatIsDone) {
  Install("archivers");
  char command[40];
  wsprintfA(command, "call %x%08x", static_cast<UINT>(reinterpret_cast<UINT_PTR>(GetParam().free) >> 32),
            static_cast<UINT>(reinterpret_cast<UINT_PTR>(GetParam().free)));
  for (const bool loads_before : {true, false}) {
    SCOPED_TRACE(loads_before);
    if (loads_before) GetParam().load();
    EXPECT_EQ(GetParam().run(nullptr, command), 7);
    EXPECT_EQ(GetModuleHandleA(GetParam().library), nullptr);
    EXPECT_STREQ(GetParam().output(), "");
  }
  EXPECT_TRUE(HeapValidate(GetProcessHeap(), 0, nullptr));
}

TEST_P(Archiver, AFileIsReallyPacked) {
  Install("archivers");
  const std::string stem = "wfinfo-pack-" + std::to_string(GetCurrentProcessId());
  std::ofstream(stem + ".txt", std::ios::binary) << "packed text";
  EXPECT_EQ(GetParam().run(nullptr, ("a " + stem + ".zip " + stem + ".txt").c_str()), 0);
  std::ifstream packed(stem + ".zip", std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(packed), std::istreambuf_iterator<char>()};
  EXPECT_TRUE(bytes.starts_with("PK\x03\x04"));
  EXPECT_NE(bytes.find(stem + ".txtpacked text"), std::string::npos);
  packed.close();
  std::filesystem::remove(stem + ".txt");
  std::filesystem::remove(stem + ".zip");
}

TEST_P(Archiver, TheOutputBeforeMayBeTheNextCommandLine) {
  Install("archivers");
  ASSERT_EQ(GetParam().load(), 1);
  GetParam().run(nullptr, "first");
  const std::string first = GetParam().output();
  ASSERT_TRUE(first.ends_with(": first"));
  GetParam().run(nullptr, GetParam().output());
  EXPECT_TRUE(std::string(GetParam().output()).ends_with(": " + first)) << GetParam().output();
  GetParam().free();
}

TEST_P(Archiver, FreeingWhatIsNotLoadedDoesNothing) {
  EXPECT_EQ(GetParam().free(), 0);
  EXPECT_STREQ(GetParam().output(), "");
}

TEST_P(Archiver, WithoutTheLibraryTheCallIsReportedAndTheLoadIsSilent) {
  EXPECT_EQ(GetParam().load(), 0);
  EXPECT_EQ(GetParam().run(nullptr, "l"), -1);
  host_.ExpectMessages({GetParam().load_failure});
  host_.SetLanguage(Language::kJapanese);
  EXPECT_EQ(GetParam().run(nullptr, "l"), -1);
  host_.ExpectMessages({Sjis(GetParam().load_failure_japanese)});
  EXPECT_STREQ(GetParam().output(), "");
}

TEST_P(Archiver, AMissingEntryPointIsReportedAndTheArchiverStaysLoaded) {
  Install("archivers_without_entry");
  EXPECT_EQ(GetParam().run(nullptr, "l"), -1);
  EXPECT_NE(GetModuleHandleA(GetParam().library), nullptr);
  host_.ExpectMessages({GetParam().missing_entry});
  host_.SetLanguage(Language::kJapanese);
  EXPECT_EQ(GetParam().run(nullptr, "l"), -1);
  host_.ExpectMessages({Sjis(GetParam().missing_entry_japanese)});
}

INSTANTIATE_TEST_SUITE_P(
    Families, Archiver,
    testing::Values(Family{&LoadUnlhaDll, &FreeUnlhaDll, &Unlha, &GetUnlhaResult, "unlha32.dll",
                           "Failed to load Unlha32.dll. Compression/Decompression is not possible.",
                           u8"Unlha32.dllがロードできませんでした。圧縮/解凍処理はできません。",
                           "Unlha function entry not found.", u8"Unlha関数エントリが見つかりませんでした。"},
                    Family{&LoadZipDll, &FreeZipDll, &Zip, &GetZipResult, "Zip32J.dll",
                           "Failed to load Zip32J.dll. Compression/Decompression is not possible.",
                           u8"Zip32J.dllがロードできませんでした。圧縮/解凍処理はできません。",
                           "Zip function entry not found.", u8"Zip関数エントリが見つかりませんでした。"}),
    [](const testing::TestParamInfo<Family>& family) { return family.index == 0 ? "Lha" : "Zip"; });

}  // namespace
}  // namespace wfinfo_test
