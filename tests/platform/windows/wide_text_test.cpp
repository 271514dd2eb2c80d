#include "platform/windows/wide_text.h"

#include <gtest/gtest.h>

namespace {

using platform::namesDevice;
using platform::systemPath;
using platform::utf8Of;
using platform::wideOf;

TEST(WideText, ConvertsBothWays) {
    EXPECT_EQ(wideOf("\xD0\x96\xF0\x9F\x98\x80"), L"\x0416\xD83D\xDE00");
    EXPECT_EQ(utf8Of(L"\x0416\xD83D\xDE00"), "\xD0\x96\xF0\x9F\x98\x80");
    EXPECT_EQ(wideOf(""), L"");
}

TEST(WideText, KeepsBytesThatAreNoUtf8) {
    EXPECT_EQ(utf8Of(wideOf("a\xFF\x80z")), "a\xFF\x80z");
}

TEST(WideText, KeepsALoneSurrogate) {
    const wchar_t lone[] = {L'a', 0xD800, L'z', 0};
    EXPECT_EQ(wideOf(utf8Of(lone).c_str()), lone);
}

TEST(WideText, KeepsZeroCharactersInsideAText) {
    EXPECT_EQ(wideOf(std::string_view("a\0b\0", 4)), std::wstring(L"a\0b\0", 4));
    EXPECT_EQ(utf8Of(std::wstring_view(L"a\0b\0", 4)), std::string("a\0b\0", 4));
}

TEST(SystemPath, UsesBackslashesOnly) {
    EXPECT_EQ(systemPath("C:/a\\b/c"), L"C:\\a\\b\\c");
}

TEST(SystemPath, LiftsTheLengthLimitOfLongPathsOnly) {
    const std::string longName(240, 'x');
    EXPECT_EQ(systemPath(("C:/" + longName).c_str()), L"C:\\" + wideOf(longName));
    EXPECT_EQ(systemPath(("C:/d/../e/./" + longName).c_str()), L"\\\\?\\C:\\e\\" + wideOf(longName));
    EXPECT_EQ(systemPath(("//server/share/" + longName).c_str()),
              L"\\\\?\\UNC\\server\\share\\" + wideOf(longName));
    EXPECT_EQ(systemPath(("\\\\?\\C:\\" + longName).c_str()), L"\\\\?\\C:\\" + wideOf(longName));
}

TEST(SystemPath, MakesLongRelativePathsAbsolute) {
    const std::wstring path = systemPath((std::string(200, 'x') + "/" + std::string(100, 'y')).c_str());
    EXPECT_TRUE(path.starts_with(L"\\\\?\\"));
    EXPECT_NE(path[5], L'x');
    EXPECT_TRUE(path.ends_with(L"\\" + std::wstring(100, L'y')));
}

TEST(NamesDevice, KnowsTheReservedNamesInAnyDisguise) {
    for (const wchar_t* path :
         {L"con", L"C:\\a\\NUL", L"C:\\Aux.txt", L"prn .log", L"x\\com1", L"lpt9.a.b", L"CONIN$", L"conout$",
          L"COM\x00B2", L"nul:", L"C:\\aux\\file.txt", L"\\\\.\\C:", L"//./pipe/x"}) {
        EXPECT_TRUE(namesDevice(path)) << utf8Of(path);
    }
}

TEST(NamesDevice, LetsSimilarNamesPass) {
    for (const wchar_t* path : {L"", L"con1", L"C:\\console", L"null.txt", L"com", L"com10", L"lpt", L"a.con",
                                L"\\\\?\\C:\\x", L"xcom1"}) {
        EXPECT_FALSE(namesDevice(path)) << utf8Of(path);
    }
}

}  // namespace
