#include "installer/version_option.h"

#include <gtest/gtest.h>

#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
#include "session/command_line_parameters.h"

namespace {

class VersionOptionTest : public testing::Test {
protected:
    bool asks(const std::vector<std::string>& tokens, const std::string& binFile = "") {
        CommandLineParameters parameters;
        EXPECT_EQ(parameters.parse(tokens), 0);
        platform::Platform platform = machine_.bundle();
        return asksForVersion(parameters, binFile, platform);
    }
    void addPackage(const std::string& values) {
        machine_.files.addFile("/src/install.xml", "<TandrelGroupInstallation><ProductDesc/><DefValues>" +
                                                       values + "</DefValues></TandrelGroupInstallation>");
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(machine_.files)
            .write({{"/src/install.xml", "install.xml", "install.xml"}}, options, "/payload.bin");
    }

    MemoryPlatform machine_;
};

TEST_F(VersionOptionTest, IsTheOptionWithoutAValue) {
    for (const char* const word : {"-version", "--version", "-version="}) {
        EXPECT_TRUE(asks({word})) << word;
        EXPECT_TRUE(asks({"-gui=0", word, "-auto"})) << word;
    }
    EXPECT_FALSE(asks({}));
    EXPECT_FALSE(asks({"-version=2"}));
    EXPECT_FALSE(asks({"-version", "2"}));
    EXPECT_FALSE(asks({"-Version"})) << "names of options are case-sensitive";
    EXPECT_FALSE(asks({"-VARIABLE_version"}));
}

TEST_F(VersionOptionTest, BelongsToADescriptionThatReadsIt) {
    addPackage("<Value Name='Version' DataType='cmdlinearg'>0</Value>");
    EXPECT_FALSE(asks({"-version"}, "/payload.bin"));
}

TEST_F(VersionOptionTest, DoesNotBelongToADescriptionThatReadsOthers) {
    addPackage(
        "<Value Name='version' DataType='value'>0</Value><Value Name='versions' "
        "DataType='cmdlinearg'>0</Value>");
    EXPECT_TRUE(asks({"-version"}, "/payload.bin"));
}

TEST_F(VersionOptionTest, APackageThatCanNotBeReadReadsNothing) {
    machine_.files.addFile("/payload.bin", "no package");
    EXPECT_TRUE(asks({"-version"}, "/payload.bin"));
    EXPECT_TRUE(asks({"-version"}, "/missing.bin"));
}

TEST_F(VersionOptionTest, TheLineNamesVersionAndRevision) {
    const std::string line = versionLine();
    ASSERT_TRUE(line.starts_with("Tandrel installer ")) << line;
    EXPECT_NE(line.find(", revision "), std::string::npos) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1);
}

}  // namespace
