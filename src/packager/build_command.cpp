#include "package/package_writer.h"
#include "packager/commands.h"
#include "packager/packing_list.h"
#include "packager/stripe_balancer.h"

namespace {

ChecksumVersion checksumVersion(const CommandLine& commandLine, platform::Environment& environment) {
    return commandLine.oldChecksum ? ChecksumVersion::kVersion1
                                   : checksumVersionFor(environment.get("OLD_CHECKSUMMING").value_or(""));
}

}  // namespace

void runBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
              platform::Environment& environment) {
    PackingList list({commandLine.description, commandLine.root, commandLine.image}, files);
    list.read();
    for (const std::string& warning : list.warnings()) {
        output.warn("packager: warning: " + printable(warning));
    }
    PackageOptions options;
    options.imagePath = commandLine.bin ? std::string() : commandLine.image;
    options.stripes =
        commandLine.stripes == 0 ? PackageWriter::defaultStripes(list.cabinetSize()) : commandLine.stripes;
    options.level = commandLine.level;
    options.threads = OUtils::readThreadSettings(environment);
    options.checksum = checksumVersion(commandLine, environment);
    PackageWriter writer(files);
    writer.setProgress([&](std::string_view step, int percent) { output.progress(step, percent); });
    std::vector<PackageFile> entries = list.entries();
    balanceStripes(entries, options.stripes);
    const PackageTotals totals = writer.write(entries, options, commandLine.output);
    output.print(printable(commandLine.output) + ": " + std::to_string(totals.fileCount) + " files, " +
                 std::to_string(totals.payloadSize) + " bytes packed into " +
                 std::to_string(totals.packageSize));
}
