#include "session/logged_variables.h"

#include "description/description_fixture.h"
#include "support/p_file_stream.h"

namespace {

class LoggedVariablesTest : public DescriptionTest {
protected:
    bool import(const std::string& log) {
        files_.addFile("/log", log);
        PFileStream stream(files_);
        EXPECT_EQ(stream.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead,
                                  PFileStream::kOpenExisting),
                  0);
        return importLoggedVariables(stream, variables_, console_);
    }
};

TEST_F(LoggedVariablesTest, BecomeThoseOfTheSession) {
    EXPECT_TRUE(import("/x\r\n\r\nNUMVARS\t2\r\nVAR\tA\t1\r\nVAR\tB\t2\r\n"));
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "2");
}

TEST_F(LoggedVariablesTest, AreReadAsFarAsADamagedLogGivesThem) {
    EXPECT_FALSE(import("/x\r\n\r\nNUMXXXX\t2\r\nVAR\tA\t1\r\nFILE\tCREATE\t/a\r\n"));
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_TRUE(log_.hasLine("ERROR: No variable number found in the provided log file!"));
}

TEST_F(LoggedVariablesTest, LoseOnlyTheOnesThatCannotBeRead) {
    EXPECT_FALSE(import("/x\r\n\r\nNUMVARS\t2\r\nVAR\tA\t\r\nVAR\tB\t2\r\n"));
    EXPECT_EQ(valueOf("A"), "(none)");
    EXPECT_EQ(valueOf("B"), "2");
}

}  // namespace
