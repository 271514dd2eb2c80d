#include "rehearsal/registry_text.h"

#include <gtest/gtest.h>

#include "rehearsal/fault_text.h"

namespace {

RegistryEntry read(const std::string& line) {
    return readRegistryEntry({4, line}, platform::RegistryView::kNative);
}

TEST(RegistryTextTest, IsAKeyOrAValue) {
    const auto key = read("HKCU\\Software\\My Product");
    EXPECT_EQ(key.root, platform::RegistryRoot::kCurrentUser);
    EXPECT_EQ(key.path, "Software\\My Product");
    EXPECT_FALSE(key.name);
    const auto value = read("HKLM\\Software\\X : \"a = b\" = string C:\\x = y");
    EXPECT_EQ(value.name, "a = b");
    EXPECT_EQ(value.value.type, platform::kRegString);
    EXPECT_EQ(value.value.data, "C:\\x = y");
    EXPECT_EQ(read("HKLM\\X : \"\" = string a").name, "");
}

TEST(RegistryTextTest, ReadsBackEachType) {
    const platform::RegistryValue values[] = {
        {platform::kRegString, ""},
        {platform::kRegString, "a \"b\""},
        {platform::kRegExpandString, "%X%"},
        {platform::kRegMultiString, std::string("a\0b", 3)},
        {platform::kRegDword, std::string("\x01\x02\x00\xFF", 4)},
        {platform::kRegQword, std::string("\x01\0\0\0\0\0\0\xFF", 8)},
        {platform::kRegBinary, std::string("\x00\xAB", 2)},
        {platform::kRegBinary, ""},
        {platform::kRegNone, "x"},
    };
    for (const platform::RegistryValue& value : values) {
        const std::string text = registryValueText(value);
        const auto entry = read(registryNameText("HKLM\\a", "name") + " = " + text);
        EXPECT_EQ(entry.value.type, value.type) << text;
        EXPECT_EQ(entry.value.data, value.data) << text;
    }
    EXPECT_EQ(registryValueText({platform::kRegDword, "xy"}), "type 4 7879");
    EXPECT_EQ(registryValueText({99, "xy"}), "type 99 7879");
}

TEST(RegistryTextTest, SaysWhatIsWrong) {
    for (const char* line :
         {"HKXX\\a", "HKLM", "HKLM\\", "HKLM\\a = string b", "HKLM\\a : b", "HKLM\\a : b = x y",
          "HKLM\\a : b = string", "HKLM\\a : b = dword 4294967296", "HKLM\\a : b = dword x",
          "HKLM\\a : b = qword -1", "HKLM\\a : b = binary abc", "HKLM\\a : b = binary zz"}) {
        EXPECT_TRUE(faultOf([&] { read(line); }).starts_with("line 4: ")) << line;
    }
}

}  // namespace
