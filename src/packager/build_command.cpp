#include "base/failure.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/document_fault.h"
#include "package/package_writer.h"
#include "packager/build_check.h"
#include "packager/commands.h"
#include "packager/image_resources.h"
#include "packager/loss_warnings.h"
#include "packager/packing_list.h"
#include "packager/stripe_balancer.h"
#include "support/utilities.h"

namespace {

ChecksumVersion checksumVersion(const CommandLine& commandLine, platform::Environment& environment) {
    return commandLine.oldChecksum ? ChecksumVersion::kVersion1
                                   : checksumVersionFor(environment.get("OLD_CHECKSUMMING").value_or(""));
}

// A document that is broken isn't shown at all.
void warnOfDocument(const PackingList::ShownDocument& shown, PackagerOutput& output,
                    platform::FileSystem& files) {
    std::string document;
    if (OUtils::readWholeFile(shown.path, document, files) != 0) {
        return;  // the writer reports it
    }
    warnOfLosses(shown.path, document, shown.format, output);
    const std::string fault = documentFault(document, shown.format);
    if (!fault.empty()) {
        output.warn("packager: warning: " + printable(shown.path + ": a setup won't show it: " + fault));
    }
}

// An output of an earlier run among the files of a tree would be packed in, and again each time.
void refuseOutputAmong(const std::vector<PackageFile>& entries, const std::string& output,
                       platform::FileSystem& files) {
    std::string realOutput;
    if (files.realPath(output, realOutput) != 0) {
        return;  // it isn't there
    }
    const std::string_view name = OUtils::lastPathComponent(realOutput);
    for (const PackageFile& entry : entries) {
        std::string real;
        if (OUtils::equalsIgnoreCase(OUtils::lastPathComponent(entry.path), name) &&
            files.realPath(entry.path, real) == 0 && real == realOutput) {
            fail(output + " is to be packed itself: choose another output");
        }
    }
}

// The file of the icon, empty without one.
std::string iconOf(const SetupIdentity& identity, const PackingList& list, platform::FileSystem& files) {
    const PackageFile* const file = list.findAlias(identity.icon);
    std::string icon;
    if (file != nullptr && OUtils::readWholeFile(file->path, icon, files) != 0) {
        icon.clear();  // the writer reports it
    }
    return icon;
}

std::function<std::string(std::string)> imageFinisher(const PackingList& list, const std::string& output,
                                                      platform::FileSystem& files) {
    if (!list.identity()) {
        return {};
    }
    return [&list, &output, &files](std::string image) {
        const SetupIdentity& identity = *list.identity();
        return withResources(std::move(image), identity, iconOf(identity, list, files),
                             OUtils::lastPathComponent(output));
    };
}

}  // namespace

void runBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
              platform::Environment& environment) {
    checkBeforeBuild(commandLine, output, files);
    PackingList list({commandLine.description, commandLine.root, commandLine.image}, files);
    list.read();
    for (const std::string& warning : list.warnings()) {
        output.warn("packager: warning: " + printable(warning));
    }
    for (const PackingList::ShownDocument& document : list.documents()) {
        warnOfDocument(document, output, files);
    }
    refuseOutputAmong(list.entries(), commandLine.output, files);
    PackageOptions options;
    options.imagePath = commandLine.bin ? std::string() : commandLine.image;
    options.finishImage = imageFinisher(list, commandLine.output, files);
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
