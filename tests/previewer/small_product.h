#pragma once

#include <string>
#include <vector>

#include "package/package_writer.h"
#include "platform/memory/memory_file_system.h"

// A product of one file, with a frame around two pages, and its payload.
namespace SmallProduct {

inline std::string description(const std::string& welcome = "Hello.", const std::string& settings = "") {
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
           "<DefValues><Value Name='NAME' DataType='value'>nobody</Value></DefValues>"
           "<InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError>"
           "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables>"
           "<Installation><Uninstall><UninstallCmd>/product/installer</UninstallCmd>"
           "<InstallLogFile>/product/install.log</InstallLogFile>"
           "<InstallBackupFile>/product/backup.bin</InstallBackupFile>"
           "<UninstallXmlFile>/product/install.xml</UninstallXmlFile></Uninstall></Installation>"
           "<FileSet Name='Own'><FN Dest='/product'>install.xml</FN><FN Dest='/product'>installer</FN>"
           "</FileSet></TandrelGroupInstallation>";
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

}  // namespace SmallProduct
