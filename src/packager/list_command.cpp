#include "packager/commands.h"
#include "packager/package_file_reader.h"
#include "packager/packed_description.h"

namespace {

// Two columns for each place; two empty ones without a place.
std::string placeColumns(const std::vector<InstalledPlace>& places) {
    std::string columns;
    for (const InstalledPlace& place : places) {
        columns += "\t" + printable(place.directory) + "\t" + printable(place.condition);
    }
    return places.empty() ? "\t\t" : columns;
}

}  // namespace

void runList(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(commandLine.package);
    package.load();
    const Cabinet& cabinet = package.cabinet();
    const PackedDescription description(cabinet);
    output.print("size\tstored\tMD5\tname\talias\tdestination\tcondition");
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        const CabinetEntry& entry = cabinet.entry(i);
        output.print(std::to_string(entry.fileSize()) + "\t" + std::to_string(entry.storedSize()) + "\t" +
                     digestText(entry.digest()) + "\t" + printable(entry.name()) + "\t" +
                     printable(entry.alias()) + placeColumns(description.placesOf(entry.alias())));
    }
}
