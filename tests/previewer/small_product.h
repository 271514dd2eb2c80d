#pragma once

#include <string>
#include <vector>

#include "package/package_writer.h"
#include "platform/memory/memory_file_system.h"
#include "rehearsal/rehearsal.h"

// A product of one file, with a frame around two pages, and its payload.
namespace SmallProduct {

// `welcome` is the text of its first page, `settings` are the elements of the second one. It goes to `place`.
inline std::string description(const std::string& welcome = "Hello.", const std::string& settings = "",
                               const std::string& place = "/product") {
    return "<TandrelGroupInstallation><ProductDesc><Fullname>Small</Fullname><MajorVersion>1</MajorVersion>"
           "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion><Website>x</Website></ProductDesc>"
           "<Dialogs><Welcome w='300' h='200'><Text x='10' y='10' w='200'>" +
           welcome +
           "</Text></Welcome><Main Special='HasSubDialogs' w='300' h='200'>"
           "<Text x='10' y='10' "
           "w='200'>Frame.</Text><TaskList><Settings/><CopyProgress/></TaskList><SubDialogs>"
           "<Settings>" +
           settings +
           "</Settings><CopyProgress Special='AutoNext'/></SubDialogs></Main>"
           "<End Special='Finish'/></Dialogs>"
           "<UninstallDialogs><Bye/><CopyProgress/><End Special='Finish'/></UninstallDialogs>"
           "<DefValues><Value Name='NAME' DataType='value'>nobody</Value>"
           "<Value Name='PROGRAMS' DataType='envvar' Default='/opt'>ProgramFiles</Value>"
           "<Value Name='PLACE' DataType='value'>$PROGRAMS/small</Value></DefValues>"
           "<InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError>"
           "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables>"
           "<Installation><Uninstall><UninstallCmd>" +
           place + "/installer</UninstallCmd><InstallLogFile>" + place +
           "/install.log</InstallLogFile><InstallBackupFile>" + place +
           "/backup.bin</InstallBackupFile><UninstallXmlFile>" + place +
           "/install.xml</UninstallXmlFile></Uninstall><UninstallWildcards><L Dest='" + place +
           "'>install.log</L><B Dest='" + place +
           "'>backup.bin</B></UninstallWildcards></Installation><FileSet Name='Own'><FN Dest='" + place +
           "'>install.xml</FN><FN Dest='" + place + "'>installer</FN></FileSet></TandrelGroupInstallation>";
}

inline std::string payload(const std::string& description) {
    MemoryFileSystem files;
    files.addFile("/in/install.xml", description);
    files.addFile("/in/installer", "the image");
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(files).write(
        {{"/in/install.xml", "install.xml", "install.xml"}, {"/in/installer", "installer", "installer"}},
        options, "/package");
    return files.content("/package");
}

inline RehearsedProduct product(const std::string& description) {
    return {payload(description), 0, std::nullopt};
}

}  // namespace SmallProduct
