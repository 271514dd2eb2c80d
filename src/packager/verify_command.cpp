#include "base/failure.h"
#include "package/package_checksum.h"
#include "packager/commands.h"
#include "packager/package_file_reader.h"

namespace {

void verifyStamp(const PackageFileReader& package, const std::string& path) {
    const std::optional<std::uint32_t> stamped = package.stampedOffset();
    if (!stamped || std::int64_t{*stamped} != package.offset()) {
        fail(path + ": the program doesn't know where its payload is: build the package again");
    }
}

void verifyTotals(const PackageFileReader& package, const std::string& path) {
    std::uint64_t fileSizes = 0;
    std::uint64_t storedSizes = 0;
    const Cabinet& cabinet = package.cabinet();
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        fileSizes += cabinet.entry(i).fileSize();
        storedSizes += cabinet.entry(i).storedSize();
    }
    const PackageFileReader::LeadTotals& totals = package.leadTotals();
    if (totals.entryCount != static_cast<std::uint32_t>(cabinet.getCount()) ||
        totals.uncompressedSize != fileSizes || totals.storedSize != storedSizes) {
        fail(path + ": the totals in the lead block are not those of the files");
    }
}

void verifyEntries(const Cabinet& cabinet, const std::string& path, PackagerOutput& output) {
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        output.progress("Checking files",
                        static_cast<int>(static_cast<std::int64_t>(i) * 100 / cabinet.getCount()));
        if (!hasRightDigest(cabinet, i)) {
            fail(path + ": the file \"" + std::string(cabinet.entry(i).alias()) + "\" is damaged");
        }
    }
}

}  // namespace

void runVerify(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const std::string& path = commandLine.package;
    PackageFileReader package(files);
    package.locate(path);
    if (package.hasImage()) {
        verifyStamp(package, path);
        if (!verifyInstallerChecksum(path, files)) {
            fail(path + ": the checksum doesn't match: the file is damaged or incomplete");
        }
        output.print("checksum: right");
    } else {
        output.print("checksum: none in a package without image");
    }
    package.load();
    output.print("stream: right");
    verifyTotals(package, path);
    verifyEntries(package.cabinet(), path, output);
    output.print("files: " + std::to_string(package.cabinet().getCount()) + ", all right");
}
