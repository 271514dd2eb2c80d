#include "engine/product_records.h"

#include "engine_fixture.h"
#include "support/p_file_stream.h"

namespace {

class ProductRecordsTest : public EngineTest {
protected:
    ProductRecords recordsOf(const std::string& log) {
        describe(
            "<ProductDesc/><Installation><Uninstall><InstallLogFile>[DIR]/install.log</InstallLogFile>"
            "<InstallBackupFile>/described.bin</InstallBackupFile><UninstallCmd>[DIR]/remove</UninstallCmd>"
            "</Uninstall></Installation>");
        files_.addFile("/tmp/log", log);
        PFileStream stream(files_);
        EXPECT_EQ(stream.openFile("/tmp/log", PFileStream::kGenericRead, PFileStream::kShareRead,
                                  PFileStream::kOpenExisting),
                  0);
        return productRecordsOf(stream, parts_.model, console_);
    }
};

TEST_F(ProductRecordsTest, AreThoseOfTheLogAndItsVariables) {
    variables_.set("DIR", "/new");
    const ProductRecords records =
        recordsOf("/app/product.xml\r\n/app/backup.bin \r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\n");
    EXPECT_EQ(records.description, "/app/product.xml");
    EXPECT_EQ(records.archive, "/app/backup.bin");
    EXPECT_EQ(records.log, "/app/install.log");
    EXPECT_EQ(records.uninstaller, "/app/remove");
}

TEST_F(ProductRecordsTest, AreEmptyInAnEmptyLog) {
    const ProductRecords records = recordsOf("");
    EXPECT_EQ(records.description, "");
    EXPECT_EQ(records.archive, "");
}

}  // namespace
