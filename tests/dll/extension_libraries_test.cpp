// Calls into any library, and into the host's spam filter.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

std::string Double(const char* name) { return (std::filesystem::current_path() / "doubles" / name).string(); }

TEST(ExtensionLibrary, TenValuesArriveInOrderAndInFullWidth) {
  ScriptedHost host;
  void* const library = LoadDll(Double("extension.dll").c_str());
  ASSERT_NE(library, nullptr);
  EXPECT_EQ(DllFunc(library, "Digits", 1, 2, 3, 4, 5, 6, 7, 8, 9, 0), 987654321);
  EXPECT_EQ(DllFunc(library, "Wide", -5, 0, 0, 0, 0, 0, 0, 0, 0, 0), -5);
  EXPECT_EQ(DllFunc(library, "Wide", 0x123456789ABCDEF0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0x123456789ABCDEF0);
  EXPECT_STREQ(reinterpret_cast<const char*>(DllFunc(library, "Greeting", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)),
               "hello from the library");
  EXPECT_NE(FreeDll(library), 0);
}

TEST(ExtensionLibrary, ABareNameOfTheSystemDirectoryLoads) {
  ScriptedHost host;
  void* const library = LoadDll("version.dll");
  ASSERT_NE(library, nullptr);
  FreeDll(library);
}

TEST(ExtensionLibrary, AFailingNameWithABackslashEndsAtOnce) {
  ScriptedHost host;
  EXPECT_EQ(LoadDll("C:\\no\\such.dll"), nullptr);
  EXPECT_EQ(LoadDll("no-such-library.dll"), nullptr);
  EXPECT_EQ(LoadDll(nullptr), nullptr);
  EXPECT_EQ(LoadDll(kNumberForText), nullptr);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST(ExtensionLibrary, WhatDoesNotLoadLeavesTheSystemsReason) {
  ScriptedHost host;
  for (const char* name : {"C:\\no\\such.dll", "no-such-library.dll"}) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(LoadDll(name), nullptr);
    EXPECT_EQ(Bypass_GetLastError(), ERROR_MOD_NOT_FOUND) << name;
  }
}

TEST(ExtensionLibrary, ATrailByteThatLooksLikeABackslashIsNone) {
  ScriptedHost host;
  // U+8868 is 0x95 0x5C: the name has no backslash, so the search goes on to the system directory and
  // ends there.
  EXPECT_EQ(LoadDll("\x95\x5C.dll"), nullptr);
}

TEST(ExtensionLibrary, AnUnknownFunctionIsNamedUpTo127Bytes) {
  ScriptedHost host;
  void* const library = LoadDll(Double("extension.dll").c_str());
  const std::string head = "The function specified in DllFunc is not found. function name = ";
  const std::string name(130, 'n');
  EXPECT_EQ(DllFunc(library, name.c_str(), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
  host.ExpectMessages({head + name.substr(0, 127)});
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(DllFunc(library, "none", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
  host.ExpectMessages({Sjis(u8"DllFuncで指定された関数が見つかりません。関数名 = none")});
  FreeDll(library);
}

TEST(ExtensionLibrary, BadHandlesAndNamesAreReported) {
  ScriptedHost host;
  const auto bad_module = reinterpret_cast<void*>(0x123450000);
  EXPECT_EQ(DllFunc(bad_module, "Digits", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
  host.ExpectMessages({"Module handle specified by DllFunc function is invalid."});
  EXPECT_EQ(DllFunc(bad_module, kNumberForText, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
  host.ExpectMessages({kStringMessageEnglish, "CallDll function parameter is invalid."});
  EXPECT_EQ(FreeDll(bad_module), 0);
}

TEST(ExtensionLibrary, AFunctionIsFoundOrNotWithoutAWord) {
  ScriptedHost host;
  const std::string library = Double("extension.dll");
  EXPECT_EQ(IsFunctionExist(library.c_str(), "Digits"), 1);
  EXPECT_EQ(IsFunctionExist(library.c_str(), "digits"), 0);
  EXPECT_EQ(IsFunctionExist(library.c_str(), reinterpret_cast<const char*>(1)), 1) << "an ordinal";
  EXPECT_EQ(IsFunctionExist("no-such-library.dll", "Digits"), 0);
  EXPECT_EQ(IsFunctionExist(nullptr, "Digits"), 0);
  EXPECT_EQ(IsFunctionExist(library.c_str(), nullptr), 0);
  EXPECT_EQ(GetModuleHandleA("extension.dll"), nullptr) << "and it was given back";
}

// A plug-in whose texts lie below 2 GiB, as the 32-bit passage of their addresses demands.
struct Plugin {
  const void* table[9] = {};
  static inline char* text;

  Plugin() {
    if (text == nullptr) {
      text = static_cast<char*>(
          VirtualAlloc(reinterpret_cast<void*>(0x20000000), 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    }
    lstrcpyA(text, "Sieve");
    lstrcpyA(text + 100, "2.5");
    table[6] = reinterpret_cast<const void*>(
        +[]() -> int { return static_cast<int>(reinterpret_cast<INT_PTR>(text)); });
    table[7] = reinterpret_cast<const void*>(
        +[]() -> int { return static_cast<int>(reinterpret_cast<INT_PTR>(text)) + 100; });
    table[8] = reinterpret_cast<const void*>(+[](int a1, int a2, int, int, int, int, int, int, int,
                                                 int a10) -> int { return a1 * 100 + a2 * 10 + a10; });
  }
};

TEST(SpamFilter, FunctionsOfThePlugInAreCalledThroughItsTable) {
  ScriptedHost host;
  const Plugin plugin;
  ASSERT_NE(Plugin::text, nullptr);
  host.Expect(176).Int(0).Always().Do([&](const Request& request) {
    request.block[0] = static_cast<Slot>(reinterpret_cast<INT_PTR>(plugin.table));
    return static_cast<Slot>(reinterpret_cast<INT_PTR>("Sieve.dll"));
  });
  EXPECT_STREQ(GetSpamFilterTitle(), "Sieve");
  EXPECT_STREQ(GetSpamFilterVersion(), "2.5");
  EXPECT_EQ(CallAnySpamFilterFunc(64, -1, 2, 0, 0, 0, 0, 0, 0, 0, 7), -73);
  EXPECT_EQ(CallAnySpamFilterFunc(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0) << "an empty entry";
}

TEST(SpamFilter, WithoutAPlugInTheResultIsEmpty) {
  ScriptedHost host;
  host.Expect(176).Int(0).Always().Answer(0);
  EXPECT_STREQ(GetSpamFilterTitle(), "");
  EXPECT_STREQ(GetSpamFilterVersion(), "");
  EXPECT_EQ(CallAnySpamFilterFunc(48, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
}

}  // namespace
}  // namespace wfinfo_test
