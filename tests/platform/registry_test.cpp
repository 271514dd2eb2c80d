#include "platform/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "fakes/temporary_directory.h"
#include "platform/environment.h"
#include "platform/memory/memory_registry_rules.h"
#include "platform/overlay/overlay_registry.h"

namespace {

using platform::kRegAccessDenied;
using platform::kRegNotFound;
using platform::kRegOk;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

constexpr RegistryRoot kRoot = RegistryRoot::kCurrentUser;
constexpr RegistryView kView = RegistryView::kNative;

// A store of its own for all tests of this program, where the system's store is a file. Elsewhere the tests
// below keep to one key and remove it.
class OwnStateDirectory : public testing::Environment {
public:
    void SetUp() override {
        // The copies of this program that tests start and end keep to the store of the one that started them,
        // because they leave without clearing up.
        if (platform::systemEnvironment().get(kMark)) {
            return;
        }
        ASSERT_TRUE(platform::systemEnvironment().set(kMark, "1"));
        directory_ = std::make_unique<TemporaryDirectory>();
        ASSERT_TRUE(platform::systemEnvironment().set("TANDREL_STATE_DIR", directory_->path().c_str()));
    }
    void TearDown() override { directory_.reset(); }

private:
    static constexpr const char* kMark = "TANDREL_TEST_HAS_STATE_DIR";
    std::unique_ptr<TemporaryDirectory> directory_;
};

[[maybe_unused]] const testing::Environment* const kStateDirectory =
    testing::AddGlobalTestEnvironment(new OwnStateDirectory);

// A registry under test.
class RegistryUnderTest {
public:
    virtual ~RegistryUnderTest() = default;
    virtual platform::Registry& registry() = 0;
};

class SystemUnderTest : public RegistryUnderTest {
public:
    platform::Registry& registry() override { return platform::systemRegistry(); }
};

class OverlaidSystem : public RegistryUnderTest {
public:
    platform::Registry& registry() override { return registry_; }

private:
    OverlayRegistry registry_{platform::systemRegistry(), platform::systemRegistryRules()};
};

// The registry in memory takes any name.
class StrictRules : public MemoryRegistryRules {
public:
    using MemoryRegistryRules::MemoryRegistryRules;
    bool isKeyName(std::string_view name) const override { return name.size() <= 255; }
};

class OverlaidMemory : public RegistryUnderTest {
public:
    platform::Registry& registry() override { return registry_; }

protected:
    MemoryRegistry base_;

private:
    StrictRules rules_{base_};
    OverlayRegistry registry_{base_, rules_};
};

constexpr const char* kTop = "Software\\TandrelPlatformTest";

// What tests make is in the base, and is taken away before they begin.
class OverlaidFullMemory : public OverlaidMemory {
public:
    OverlaidFullMemory() {
        for (const char* const name : {"a\\b\\c", "a\\deep", "b", "MIXEDCASE", "none"}) {
            base_.addKey(kRoot, std::string(kTop) + "\\" + name);
            base_.addText(kRoot, std::string(kTop) + "\\" + name, "value", "what the base has");
            base_.addText(kRoot, kTop, name, "what the base has");
        }
    }
};

template <typename Machine>
std::unique_ptr<RegistryUnderTest> make() {
    return std::make_unique<Machine>();
}

// With the system itself and with overlays, for which the same holds.
class RegistryTest : public testing::TestWithParam<std::unique_ptr<RegistryUnderTest> (*)()> {
protected:
    void SetUp() override {
        removeTree(kTop);
        int created = 0;
        ASSERT_EQ(registry().createKey(kRoot, kTop, kView, created), kRegOk);
    }
    void TearDown() override { removeTree(kTop); }

    platform::Registry& registry() { return machine_->registry(); }

    void removeTree(const std::string& path) {
        std::vector<std::string> names;
        registry().listKeys(kRoot, path.c_str(), kView, names);
        for (const std::string& name : names) {
            removeTree(path + "\\" + name);
        }
        registry().deleteKey(kRoot, path.c_str(), kView);
    }

    static std::string key(const std::string& name) { return std::string(kTop) + "\\" + name; }

    int write(const std::string& path, const char* name, const RegistryValue& value) {
        return registry().writeValue(kRoot, path.c_str(), kView, name, value);
    }
    int read(const std::string& path, const char* name, RegistryValue& outValue) {
        return registry().readValue(kRoot, path.c_str(), kView, name, outValue);
    }
    int test(const std::string& path) { return registry().testKey(kRoot, path.c_str(), kView); }

    std::unique_ptr<RegistryUnderTest> machine_ = GetParam()();
};

TEST_P(RegistryTest, CreateKeyMakesTheMissingLevelsAndCountsThem) {
    int created = 77;
    EXPECT_EQ(registry().createKey(kRoot, key("a\\b\\c").c_str(), kView, created), kRegOk);
    EXPECT_EQ(created, 3);
    EXPECT_EQ(registry().createKey(kRoot, key("a\\b\\d").c_str(), kView, created), kRegOk);
    EXPECT_EQ(created, 1);
    EXPECT_EQ(registry().createKey(kRoot, key("a\\b").c_str(), kView, created), kRegOk);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(test(key("a\\b\\c")), kRegOk);
    EXPECT_EQ(test(key("a\\c")), kRegNotFound);
}

TEST_P(RegistryTest, ValuesOfEachTypeComeBackUnchanged) {
    const RegistryValue values[] = {
        {platform::kRegString, "text"},
        {platform::kRegString, ""},
        {platform::kRegString, "Gr\xc3\xb6\xc3\x9f\x65 \xf0\x9f\x93\xa6"},
        {platform::kRegExpandString, "%PATH%;more"},
        {platform::kRegDword, std::string("\x01\x02\x00\xff", 4)},
        {platform::kRegQword, std::string("\x01\x02\x00\xff\x00\x00\x00\x80", 8)},
        {platform::kRegBinary, std::string("\x00\xff\n", 3)},
        {platform::kRegBinary, ""},
        {platform::kRegNone, "raw"},
        {platform::kRegString, std::string(30000, 'x')},
    };
    for (const RegistryValue& value : values) {
        ASSERT_EQ(write(kTop, "value", value), kRegOk) << value.type;
        RegistryValue found;
        ASSERT_EQ(read(kTop, "value", found), kRegOk) << value.type;
        EXPECT_EQ(found.type, value.type);
        EXPECT_EQ(found.data, value.data);
    }
}

TEST_P(RegistryTest, AMissingValueOrKeyIsNotFound) {
    RegistryValue value;
    EXPECT_EQ(read(kTop, "none", value), kRegNotFound);
    EXPECT_EQ(read(kTop, "", value), kRegNotFound);
    EXPECT_EQ(read(key("none"), "value", value), kRegNotFound);
    EXPECT_EQ(registry().deleteValue(kRoot, kTop, kView, "none"), kRegNotFound);
    EXPECT_EQ(registry().deleteValue(kRoot, key("none").c_str(), kView, "value"), kRegNotFound);
    EXPECT_EQ(registry().deleteKey(kRoot, key("none").c_str(), kView), kRegNotFound);
}

TEST_P(RegistryTest, WritingNeedsTheKey) {
    EXPECT_EQ(write(key("none"), "value", {platform::kRegString, "x"}), kRegNotFound);
    EXPECT_EQ(test(key("none")), kRegNotFound);
}

TEST_P(RegistryTest, TheEmptyNameIsTheDefaultValue) {
    ASSERT_EQ(write(kTop, "", {platform::kRegString, "default"}), kRegOk);
    ASSERT_EQ(write(kTop, "other", {platform::kRegString, "other"}), kRegOk);
    RegistryValue value;
    ASSERT_EQ(read(kTop, "", value), kRegOk);
    EXPECT_EQ(value.data, "default");
}

TEST_P(RegistryTest, NamesIgnoreCaseAndKeepTheirSpelling) {
    int created = 0;
    ASSERT_EQ(registry().createKey(kRoot, key("MixedCase").c_str(), kView, created), kRegOk);
    ASSERT_EQ(registry().createKey(kRoot, key("MIXEDCASE").c_str(), kView, created), kRegOk);
    EXPECT_EQ(created, 0);
    ASSERT_EQ(write(key("mixedcase"), "ValueName", {platform::kRegString, "one"}), kRegOk);
    ASSERT_EQ(write(key("MixedCASE"), "VALUENAME", {platform::kRegString, "two"}), kRegOk);
    RegistryValue value;
    ASSERT_EQ(read(key("MIXEDcase"), "valuename", value), kRegOk);
    EXPECT_EQ(value.data, "two");
    std::vector<std::string> names;
    ASSERT_EQ(registry().listKeys(kRoot, kTop, kView, names), kRegOk);
    EXPECT_THAT(names, testing::ElementsAre("MixedCase"));
    ASSERT_EQ(registry().listValues(kRoot, key("mixedcase").c_str(), kView, names), kRegOk);
    EXPECT_THAT(names, testing::ElementsAre("ValueName"));
}

TEST_P(RegistryTest, ListsGiveDirectMembersOnly) {
    int created = 0;
    for (const char* name : {"b", "a\\deep", "c"}) {
        ASSERT_EQ(registry().createKey(kRoot, key(name).c_str(), kView, created), kRegOk);
    }
    ASSERT_EQ(write(kTop, "v1", {platform::kRegString, "x"}), kRegOk);
    ASSERT_EQ(write(key("a"), "v2", {platform::kRegString, "x"}), kRegOk);
    std::vector<std::string> names{"stale"};
    EXPECT_EQ(registry().listKeys(kRoot, kTop, kView, names), kRegOk);
    EXPECT_THAT(names, testing::UnorderedElementsAre("a", "b", "c"));
    EXPECT_EQ(registry().listValues(kRoot, kTop, kView, names), kRegOk);
    EXPECT_THAT(names, testing::ElementsAre("v1"));
    EXPECT_EQ(registry().listKeys(kRoot, key("none").c_str(), kView, names), kRegNotFound);
    EXPECT_TRUE(names.empty());
}

TEST_P(RegistryTest, AKeyWithSubkeysStays) {
    int created = 0;
    ASSERT_EQ(registry().createKey(kRoot, key("a\\b").c_str(), kView, created), kRegOk);
    EXPECT_EQ(registry().deleteKey(kRoot, key("a").c_str(), kView), kRegAccessDenied);
    EXPECT_EQ(test(key("a\\b")), kRegOk);
    EXPECT_EQ(registry().deleteKey(kRoot, key("a\\b").c_str(), kView), kRegOk);
    EXPECT_EQ(registry().deleteKey(kRoot, key("a").c_str(), kView), kRegOk);
    EXPECT_EQ(test(key("a")), kRegNotFound);
}

TEST_P(RegistryTest, DeletingAKeyTakesItsValues) {
    int created = 0;
    ASSERT_EQ(registry().createKey(kRoot, key("a").c_str(), kView, created), kRegOk);
    ASSERT_EQ(write(key("a"), "value", {platform::kRegString, "old"}), kRegOk);
    ASSERT_EQ(registry().deleteKey(kRoot, key("a").c_str(), kView), kRegOk);
    ASSERT_EQ(registry().createKey(kRoot, key("a").c_str(), kView, created), kRegOk);
    RegistryValue value;
    EXPECT_EQ(read(key("a"), "value", value), kRegNotFound);
}

TEST_P(RegistryTest, DeleteValueTakesOneValue) {
    ASSERT_EQ(write(kTop, "a", {platform::kRegString, "1"}), kRegOk);
    ASSERT_EQ(write(kTop, "b", {platform::kRegString, "2"}), kRegOk);
    EXPECT_EQ(registry().deleteValue(kRoot, kTop, kView, "A"), kRegOk);
    RegistryValue value;
    EXPECT_EQ(read(kTop, "a", value), kRegNotFound);
    EXPECT_EQ(read(kTop, "b", value), kRegOk);
}

TEST_P(RegistryTest, AnOverlongKeyNameIsRefused) {
    int created = 77;
    EXPECT_NE(registry().createKey(kRoot, key(std::string(256, 'k')).c_str(), kView, created), kRegOk);
    std::vector<std::string> names;
    ASSERT_EQ(registry().listKeys(kRoot, kTop, kView, names), kRegOk);
    EXPECT_TRUE(names.empty());
}

std::string nameOf(const testing::TestParamInfo<std::unique_ptr<RegistryUnderTest> (*)()>& info) {
    const char* const names[] = {"System", "OverlayOfTheSystem", "OverlayOfAMachineInMemory",
                                 "OverlayOfAMemoryThatItEmptied"};
    return names[info.index];
}

INSTANTIATE_TEST_SUITE_P(Machines, RegistryTest,
                         testing::Values(make<SystemUnderTest>, make<OverlaidSystem>, make<OverlaidMemory>,
                                         make<OverlaidFullMemory>),
                         nameOf);

}  // namespace
