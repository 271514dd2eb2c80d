#include "packager/commands.h"
#include "packager/package_file_reader.h"

void runList(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(commandLine.package);
    package.load();
    const Cabinet& cabinet = package.cabinet();
    output.print("size\tstored\tMD5\tname\talias");
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        const CabinetEntry& entry = cabinet.entry(i);
        output.print(std::to_string(entry.fileSize()) + "\t" + std::to_string(entry.storedSize()) + "\t" +
                     digestText(entry.digest()) + "\t" + printable(entry.name()) + "\t" +
                     printable(entry.alias()));
    }
}
