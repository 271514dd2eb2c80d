#pragma once

#include <string>
#include <vector>

#include "package/package_writer.h"
#include "platform/memory/memory_file_system.h"
#include "rehearsal/rehearsal.h"

// A product that does a bit of everything, and the package that it makes.
namespace SmallProduct {

// `more` goes before the end of its description's Installation, `pages` in front of its pages.
inline std::string description(const std::string& more = "", const std::string& pages = "") {
    return "<TandrelGroupInstallation><ProductDesc><Fullname>Small</Fullname><MajorVersion>1</MajorVersion>"
           "<MinorVersion>0</MinorVersion><MinestVersion>0</MinestVersion><Website>https://x</Website>"
           "</ProductDesc><InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError>"
           "</InstallerControlVariables><DefValues><Value Name=\"INSTALL_ERROR\" DataType=\"value\">0</Value>"
           "<Value Name=\"DIR\" DataType=\"value\">/opt/small</Value>"
           "<Value Name=\"NAME\" DataType=\"value\">nobody</Value></DefValues>"
           "<Dialogs>" +
           pages +
           "<CopyProgress Special=\"AutoNext\"/><RegisterApplication Special=\"AutoNext\"/>"
           "<Finish Special=\"Finish\"><Text>Done.</Text></Finish></Dialogs>"
           "<UninstallDialogs><UnregisterApplication Special=\"AutoNext\"/><CopyProgress "
           "Special=\"AutoNext\"/>"
           "<Finish Special=\"Finish\"/></UninstallDialogs>"
           "<Installation><Uninstall><InstallLogFile>[DIR]/u/install.log</InstallLogFile>"
           "<InstallBackupFile>[DIR]/u/backup.bin</InstallBackupFile><UninstallCmd>[DIR]/u/installer</"
           "UninstallCmd>"
           "<UninstallXmlFile>[DIR]/u/install.xml</UninstallXmlFile></Uninstall>"
           "<FileSet Name=\"F\"><FN Dest=\"[DIR]/u\" Executable=\"1\">installer</FN><FN "
           "Dest=\"[DIR]/u\">install.xml</FN><FN Dest=\"[DIR]\" "
           "ExpandVarsInFile=\"1\">name.txt</FN></FileSet>"
           "<UninstallWildcards><L Dest=\"[DIR]/u\">install.log</L><B Dest=\"[DIR]/u\">backup.bin</B>"
           "</UninstallWildcards>" +
           more + "</Installation></TandrelGroupInstallation>";
}

inline RehearsedProduct product(const std::string& text) {
    MemoryFileSystem files;
    files.addFile("/in/install.xml", text);
    files.addFile("/in/installer", "image");
    files.addFile("/in/name.txt", "Name: [NAME]\n");
    std::vector<PackageFile> list;
    for (const char* const name : {"install.xml", "installer", "name.txt"}) {
        list.push_back({std::string("/in/") + name, name, name});
    }
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(files).write(list, options, "/package");
    return {files.content("/package"), 0, std::nullopt};
}

}  // namespace SmallProduct
