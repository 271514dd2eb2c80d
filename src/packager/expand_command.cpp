#include "packager/commands.h"
#include "packager/packing_list.h"

void runExpand(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const std::string text = descriptionText(commandLine.description, files);
    TreeExpansion trees({commandLine.description, commandLine.root, commandLine.image}, files);
    const std::optional<std::string> expanded = trees.expand(text);
    for (const std::string& warning : trees.warnings()) {
        output.warn("packager: warning: " + printable(warning));
    }
    printLines(expanded.value_or(text), output);
}
