#include "base/errors.h"
#include "package/package_writer.h"
#include "packager/commands.h"
#include "packager/packing_list.h"
#include "packager/stripe_balancer.h"

void runBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
              platform::Environment& environment) {
    PackingList list({commandLine.description, commandLine.root, commandLine.image}, files);
    list.read();
    for (const std::string& warning : list.warnings()) {
        output.tell("packager: warning: " + printable(warning));
    }
    PackageOptions options;
    options.imagePath = commandLine.bin ? std::string() : commandLine.image;
    options.stripes =
        commandLine.stripes == 0 ? PackageWriter::defaultStripes(list.cabinetSize()) : commandLine.stripes;
    options.level = commandLine.level;
    options.threads = OUtils::readThreadSettings(environment);
    if (commandLine.oldChecksum) {
        options.checksum = ChecksumVersion::kVersion1;
    }
    PackageWriter writer(files);
    writer.setProgress([&](const char* step, int percent) { output.progress(step, percent); });
    std::vector<PackageFile> entries = list.entries();
    balanceStripes(entries, options.stripes);
    const PackageTotals totals = writer.write(entries, options, commandLine.output);
    output.print(printable(commandLine.output) + ": " + std::to_string(totals.fileCount) + " files, " +
                 std::to_string(totals.payloadSize) + " bytes packed into " +
                 std::to_string(totals.packageSize));
}
