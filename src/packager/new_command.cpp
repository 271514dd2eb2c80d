#include <string>

#include "base/failure.h"
#include "packager/commands.h"
#include "packager/make_directories.h"
#include "packager/template_files.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"

namespace {

void makeDirectoryOf(const std::string& path, platform::FileSystem& files) {
    std::string failed;
    if (const int status = makeDirectories(path.substr(0, path.rfind('/')), files, failed); status != 0) {
        fail(failed + ": the directory can't be made: " + platform::errorText(status));
    }
}

void writeNewFile(const std::string& path, const std::string& text, platform::FileSystem& files) {
    PFileStream stream(files);
    int status = stream.createNew(path, false);
    if (status == 0) {
        status = stream.writeText(text);
        const int closed = stream.close();
        status = status == 0 ? closed : status;
    }
    if (status != 0) {
        fail(path + " can't be written: " + platform::errorText(status));
    }
}

}  // namespace

// Somebody's work may be in the directory, so nothing is written unless all of it can be.
void runNew(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const std::string& directory = commandLine.directory;
    for (const TemplateFile& file : templateFiles()) {
        const std::string path = directory + "/" + file.path;
        if (files.exists(path)) {
            fail(path + " is there already: name a directory that is new or empty");
        }
    }
    for (const TemplateFile& file : templateFiles()) {
        const std::string path = directory + "/" + file.path;
        makeDirectoryOf(path, files);
        writeNewFile(path, file.text, files);
        output.print(printable(path));
    }
    const std::string name = printable(directory);
    output.print("Next: packager check " + name + "/install.xml");
    output.print("      packager build --description " + name + "/install.xml --root " + name +
                 "/files --image IMAGE --output SETUP");
}
