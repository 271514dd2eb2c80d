#include "platform/registry.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

using platform::Registry;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;
using platform::systemRegistry;

constexpr char kKey[] = "Software\\TandrelRegistryTest";

// Looks at the registry without the tested class.
class WindowsRegistry : public testing::Test {
protected:
    WindowsRegistry() {
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\TandrelRegistryTest");
        int created = 0;
        EXPECT_EQ(registry_.createKey(RegistryRoot::kCurrentUser, kKey, RegistryView::kNative, created), 0);
        EXPECT_EQ(created, 1);
        EXPECT_EQ(
            RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\TandrelRegistryTest", 0, KEY_ALL_ACCESS, &key_), 0);
    }
    ~WindowsRegistry() override {
        RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\TandrelRegistryTest");
    }

    std::string rawBytes(const wchar_t* name) const {
        std::string bytes(4096, '\0');
        DWORD size = 4096;
        EXPECT_EQ(
            RegQueryValueExW(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size), 0);
        bytes.resize(size);
        return bytes;
    }
    void setRaw(const wchar_t* name, DWORD type, const std::string& bytes) const {
        ASSERT_EQ(RegSetValueExW(key_, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                                 static_cast<DWORD>(bytes.size())),
                  0);
    }
    void write(const char* name, const RegistryValue& value) {
        ASSERT_EQ(registry_.writeValue(RegistryRoot::kCurrentUser, kKey, RegistryView::kNative, name, value),
                  0);
    }
    RegistryValue read(const char* name) {
        RegistryValue value;
        EXPECT_EQ(registry_.readValue(RegistryRoot::kCurrentUser, kKey, RegistryView::kNative, name, value),
                  0);
        return value;
    }

    Registry& registry_ = systemRegistry();
    HKEY key_ = nullptr;
};

TEST_F(WindowsRegistry, StoresTextsAsUtf16WithOneTerminator) {
    write("text", {platform::kRegString, "a\xD0\x96"});
    EXPECT_EQ(rawBytes(L"text"), std::string("a\0\x16\x04\0\0", 6));
    write("empty", {platform::kRegString, ""});
    EXPECT_EQ(rawBytes(L"empty"), std::string("\0\0", 2));
    write("list", {platform::kRegMultiString, std::string("a\0b", 3)});
    EXPECT_EQ(rawBytes(L"list"), std::string("a\0\0\0b\0\0\0\0\0", 10));
}

TEST_F(WindowsRegistry, ReadsTextsWhateverTheirTerminators) {
    setRaw(L"none", REG_SZ, std::string("a\0b\0", 4));
    EXPECT_EQ(read("none").data, "ab");
    setRaw(L"three", REG_SZ, std::string("a\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(read("three").data, "a");
    setRaw(L"odd", REG_SZ, std::string("a\0b\0c", 5));
    EXPECT_EQ(read("odd").data, "ab");
    setRaw(L"nothing", REG_SZ, "");
    EXPECT_EQ(read("nothing").data, "");
    setRaw(L"list", REG_MULTI_SZ, std::string("a\0\0\0b\0\0\0\0\0", 10));
    EXPECT_EQ(read("list").data, std::string("a\0b", 3));
}

TEST_F(WindowsRegistry, KeepsOtherTypesAsTheyAre) {
    setRaw(L"binary", REG_BINARY, std::string("\1\0\0", 3));
    EXPECT_EQ(read("binary").data, std::string("\1\0\0", 3));
    write("number", {platform::kRegDword, std::string("\x16\0\0\0", 4)});
    DWORD number = 0;
    DWORD size = sizeof(number);
    ASSERT_EQ(RegGetValueW(key_, nullptr, L"number", RRF_RT_REG_DWORD, nullptr, &number, &size), 0);
    EXPECT_EQ(number, 0x16U);
    setRaw(L"strange", 4711, "xyz");
    EXPECT_EQ(read("strange").type, 4711U);
    EXPECT_EQ(read("strange").data, "xyz");
}

TEST_F(WindowsRegistry, ReadsLargeValues) {
    const std::string large(300000, 'x');
    write("large", {platform::kRegString, large});
    EXPECT_EQ(read("large").data, large);
}

TEST_F(WindowsRegistry, SeparatesLevelsByBackslashesOnly) {
    EXPECT_EQ(
        registry_.testKey(RegistryRoot::kCurrentUser, "Software/TandrelRegistryTest", RegistryView::kNative),
        platform::kRegNotFound);
}

TEST_F(WindowsRegistry, ReachesThe32BitViewBelowItsNode) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(RegistryRoot::kLocalMachine, "Software\\TandrelViewTest\\Deep",
                                  RegistryView::k32Bit, created),
              0);
    EXPECT_EQ(created, 2);
    EXPECT_EQ(registry_.testKey(RegistryRoot::kLocalMachine, "Software\\Wow6432Node\\TandrelViewTest\\Deep",
                                RegistryView::kNative),
              0);
    EXPECT_EQ(registry_.deleteKey(RegistryRoot::kLocalMachine, "Software\\TandrelViewTest\\Deep",
                                  RegistryView::kNative),
              platform::kRegNotFound);
    EXPECT_EQ(registry_.deleteKey(RegistryRoot::kLocalMachine, "Software\\TandrelViewTest\\Deep",
                                  RegistryView::k32Bit),
              0);
    EXPECT_EQ(
        registry_.deleteKey(RegistryRoot::kLocalMachine, "Software\\TandrelViewTest", RegistryView::k32Bit),
        0);
}

TEST_F(WindowsRegistry, NeverDeletesARoot) {
    EXPECT_EQ(registry_.deleteKey(RegistryRoot::kCurrentUser, "", RegistryView::kNative),
              platform::kRegBadArgument);
    EXPECT_EQ(registry_.deleteKey(RegistryRoot::kCurrentUser, "\\", RegistryView::kNative),
              platform::kRegBadArgument);
}

}  // namespace
