#include "packager/commands.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

using Lines = std::vector<std::string>;
using VerifyCommandTest = CommandsTest;

TEST_F(VerifyCommandTest, NamesTheDamage) {
    ASSERT_EQ(build(), 0);
    const std::string good = files_.content("/out/setup");
    const std::size_t lead = files_.content("/image").size();
    const auto problem = [&] {
        EXPECT_EQ(run({"verify", "/out/setup"}), 1);
        files_.addFile("/out/setup", good);
        return output_.errors.empty() ? std::string() : output_.errors.front();
    };
    change(good.size() - 1);
    EXPECT_EQ(problem(),
              "packager: /out/setup: the checksum doesn't match: the file is damaged or incomplete");
    change(lead);
    EXPECT_EQ(problem(), "packager: /out/setup: there is no payload after this program");
    change(64 + 56 + 1);  // within the stamp
    EXPECT_EQ(problem(),
              "packager: /out/setup: the program doesn't know where its payload is: build the package again");
    files_.addFile("/out/setup", good.substr(0, good.size() - 1));
    EXPECT_EQ(problem(),
              "packager: /out/setup: the checksum doesn't match: the file is damaged or incomplete");
    files_.addFile("/out/setup", files_.content("/image"));
    EXPECT_EQ(problem(), "packager: /out/setup: there is no payload after this program");
    files_.addFile("/out/setup", good.substr(0, lead - 1));
    EXPECT_EQ(problem(), "packager: /out/setup: this program is incomplete: copy it again");
    files_.addFile("/out/setup", "text");
    EXPECT_EQ(problem(), "packager: /out/setup: this is not a package");
    files_.addFile("/out/setup", "");
    EXPECT_EQ(problem(), "packager: /out/setup: this is not a package");
}

TEST_F(VerifyCommandTest, ChecksTotalsStreamAndDigests) {
    const std::string cabinet = entry("a", "text") + endRecord();
    const auto verify = [&](const std::string& package) {
        files_.addFile("/out/p", package);
        const int exitCode = run({"verify", "/out/p"});
        return exitCode == 0 ? std::string() : output_.errors.front();
    };
    EXPECT_EQ(verify(leadBlock(4, 1) + solidStream({cabinet})), "");
    EXPECT_EQ(verify(leadBlock(5, 1) + solidStream({cabinet})),
              "packager: /out/p: the totals in the lead block are not those of the files");
    EXPECT_EQ(verify(leadBlock(4, 2) + solidStream({cabinet})),
              "packager: /out/p: the totals in the lead block are not those of the files");
    std::string damaged = cabinet;
    damaged[608] ^= 1;
    EXPECT_EQ(verify(leadBlock(4, 1) + solidStream({damaged})),
              "packager: /out/p: the file \"a\" is damaged");
    const std::string whole = leadBlock(4, 1) + solidStream({cabinet});
    EXPECT_EQ(verify(whole.substr(0, whole.size() - 1)),
              "packager: /out/p: its compressed stream is damaged (-28)");
    EXPECT_EQ(verify(leadBlock(4, 1) + solidStream({entry("a", "text")})),
              "packager: /out/p: its catalogue is damaged (-9)");
}

}  // namespace
