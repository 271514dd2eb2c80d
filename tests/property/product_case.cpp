#include "product_case.h"

#include <array>
#include <map>

namespace {

constexpr std::array kKindNames = {
    "File",        "Environment",   "Ini",         "ModifyFile",          "Shortcut",          "FirewallPort",
    "FirewallApp", "RegistryValue", "RegistryKey", "RemoveRegistryValue", "RemoveRegistryKey", "CopyFile",
    "CreateFile",  "RemoveFile",    "RemoveDir",   "RunProgram"};
static_assert(kKindNames.size() == kItemKindCount);

// Few different lines, so that searches meet each other.
std::string randomLine(RandomNumbers& random) {
    static const std::array kLines = {"alpha", "beta", "gamma", "", "alpha beta"};
    return kLines[random.below(kLines.size())];
}

std::string attribute(const std::string& name, const std::string& value) {
    return " " + name + "='" + value + "'";
}

std::string element(const std::string& name, const std::string& attributes, const std::string& text) {
    return "<" + name + attributes + ">" + text + "</" + name + ">";
}

std::string fileElement(const Item& item) {
    const std::string path = filePathOf(item);
    return element(
        "FN", attribute("Dest", path.substr(0, path.rfind('/'))) + (item.option ? " BackupExisting=''" : ""),
        path.substr(path.rfind('/') + 1));
}

std::string environmentElement(const Item& item) {
    static const std::array kModes = {"Replace", "Append", "Insert"};
    return element(kModes[static_cast<std::size_t>(item.variant) % kModes.size()],
                   attribute("VarName", item.name("VAR")) + (item.option ? " IsPath=''" : ""),
                   environmentValueOf(item));
}

std::string iniElement(const Item& item) {
    return element("Add",
                   attribute("FileName", iniPathOf(item)) + attribute("Section", "main") +
                       attribute("Key", "key") + (item.option ? attribute("BeforeKey", "other") : ""),
                   item.name("value"));
}

std::string shortcutElement(const Item& item) {
    static const std::array kTypes = {"File", "URL", "Uninstall", "Symlink"};
    const std::string path = linkPathOf(item);
    return element("Add",
                   attribute("Type", kTypes[static_cast<std::size_t>(item.variant) % kTypes.size()]) +
                       attribute("Dest", path.substr(0, path.rfind('/'))) +
                       attribute("Target", "/product/run"),
                   path.substr(path.rfind('/') + 1));
}

std::string portElement(const Item& item) {
    static const std::array kProtocols = {"", " Protocol='TCP'", " Protocol='UDP'"};
    return element("Port",
                   attribute("Port", std::to_string(1000 + item.number)) +
                       kProtocols[static_cast<std::size_t>(item.variant) % kProtocols.size()],
                   item.name("rule"));
}

std::string registryElement(const Item& item) {
    const std::string place =
        attribute("Place", "HKEY_LOCAL_MACHINE") + attribute("Path", registryPathOf(item));
    static const std::array kTypes = {"", " Type='REG_SZ'", " Type='REG_DWORD'", " Type='REG_BINARY'"};
    switch (item.kind) {
        case ItemKind::kRegistryKey:
            return element("AddKey", place, "");
        case ItemKind::kRemoveRegistryValue:
            return element("RemoveValue", place + attribute("Value", "name"), "");
        case ItemKind::kRemoveRegistryKey:
            return element("RemoveKey", place, "");
        default:
            return element("AddValue",
                           place + attribute("Value", "name") +
                               kTypes[static_cast<std::size_t>(item.variant) % kTypes.size()],
                           "10");
    }
}

std::string actionElement(const Item& item) {
    switch (item.kind) {
        case ItemKind::kCopyFile:
            return element("CopyFile", attribute("Dest", item.name("/product/copy")), "/data/keep");
        case ItemKind::kCreateFile:
            return element("CreateFile", attribute("Dest", "/product"), item.name("created"));
        case ItemKind::kRemoveFile:
            return element("RemoveFile", "", item.name("/data/gone"));
        case ItemKind::kRemoveDirectory:
            return element("RemoveDir", "", item.name("/data/empty"));
        case ItemKind::kRunProgram:
            return element("RunProgram", attribute("Wait", "1"), "/product/run");
        default:
            return element("Registry", "", registryElement(item));
    }
}

std::string cleanUpElement(const Item& item) {
    if (item.kind == ItemKind::kCopyFile) {
        return element("RemoveFile", "", item.name("/product/copy"));
    }
    return item.kind == ItemKind::kCreateFile ? element("RemoveFile", "", item.name("/product/created")) : "";
}

// The elements of the items, by the group that they belong into.
std::map<std::string, std::string> groupsOf(const ProductCase& product) {
    std::map<std::string, std::string> groups;
    for (const Item& item : product.items) {
        switch (item.kind) {
            case ItemKind::kFile:
                groups["FileSet Name='All'"] += fileElement(item);
                break;
            case ItemKind::kEnvironment:
                groups["Environment"] += environmentElement(item);
                break;
            case ItemKind::kIni:
                groups["IniFiles"] += iniElement(item);
                break;
            case ItemKind::kModifyFile:
                groups["FileSet Name='All'"] +=
                    element("FN", attribute("Dest", "/product"), item.name("change"));
                groups["ModifyFiles"] +=
                    element("File", attribute("Path", textPathOf(item)) + attribute("Command", "AddAfter"),
                            item.name("/product/change"));
                break;
            case ItemKind::kShortcut:
                groups["Shortcuts"] += shortcutElement(item);
                break;
            case ItemKind::kFirewallPort:
                groups["Firewall"] += portElement(item);
                break;
            case ItemKind::kFirewallApplication:
                groups["Firewall"] +=
                    element("Application", attribute("Target", item.name("/product/app")), item.name("app"));
                break;
            default:
                groups["AdditionalInstall"] += actionElement(item);
                groups["PreUninstall"] += cleanUpElement(item);
                break;
        }
    }
    return groups;
}

constexpr std::array kCourseNames = {"plain",
                                     "installed again",
                                     "repaired",
                                     "a damaged archive",
                                     "a cut archive",
                                     "a lost archive",
                                     "a damaged log",
                                     "a cut log",
                                     "a failing call of the installation",
                                     "a failing call of the uninstallation",
                                     "a full disk"};
static_assert(kCourseNames.size() == kCourseCount);

}  // namespace

const char* nameOf(Course course) {
    return kCourseNames[static_cast<std::size_t>(course)];
}

const char* limitOf(Course course) {
    switch (course) {
        case Course::kRepair:
            return "what comes back into a directory of the product keeps that directory for ever";
        case Course::kDamageArchive:
            return "a changed byte within a content of the archive can't be noticed";
        case Course::kFailUninstallation:
            return "a failure in the last steps can leave the entry or the sums of the product";
        default:
            return nullptr;
    }
}

ProductCase randomCase(RandomNumbers& random) {
    ProductCase product;
    const std::size_t count = random.below(10);
    for (std::size_t i = 0; i < count; ++i) {
        Item item;
        item.kind = static_cast<ItemKind>(random.below(kItemKindCount));
        item.number = static_cast<int>(i) + 1;
        item.variant = static_cast<int>(random.below(12));
        item.option = random.oneIn(2);
        item.earlier = random.oneIn(2);
        item.touched = random.oneIn(4);
        for (std::size_t lines = random.below(8); lines > 0; --lines) {
            item.lines.push_back(randomLine(random));
        }
        product.items.push_back(std::move(item));
    }
    do {
        product.course = random.oneIn(2) ? Course::kPlain : static_cast<Course>(random.below(kCourseCount));
    } while (limitOf(product.course) != nullptr);
    product.operation = static_cast<int>(random.below(kFailingOperationCount));
    product.point = static_cast<int>(random.oneIn(2) ? random.below(12) : random.below(4000));
    product.foreignFile = random.oneIn(8);
    product.firewallOff = random.oneIn(8);
    product.registers = random.oneIn(2);
    return product;
}

std::string describe(const ProductCase& product) {
    std::string text =
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname><MajorVersion>1</MajorVersion>"
        "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion><Website>x</Website></ProductDesc>"
        "<Dialogs><Hello/><CopyProgress/>" +
        std::string(product.registers ? "<RegisterApplication/>" : "") +
        "<End Special='Finish'/></Dialogs>"
        "<UninstallDialogs><Bye/><CopyProgress/>" +
        std::string(product.registers ? "<UnregisterApplication/>" : "") +
        "<End Special='Finish'/></UninstallDialogs><DefValues/>"
        "<InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError>"
        "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables>"
        "<Installation><Uninstall><UninstallCmd>/product/installer</UninstallCmd>"
        "<InstallLogFile>/product/install.log</InstallLogFile>"
        "<InstallBackupFile>/product/backup.bin</InstallBackupFile>"
        "<UninstallXmlFile>/product/install.xml</UninstallXmlFile></Uninstall>"
        "<UninstallWildcards><WC Dest='/product'>install.log</WC><WC Dest='/product'>backup.bin</WC>"
        "</UninstallWildcards></Installation>"
        "<FileSet Name='Own'><FN Dest='/product'>install.xml</FN></FileSet>";
    for (const auto& [group, children] : groupsOf(product)) {
        text += "<" + group + ">" + children + "</" + group.substr(0, group.find(' ')) + ">";
    }
    return text + "</TandrelGroupInstallation>";
}

std::string summarize(const ProductCase& product) {
    std::string text;
    for (const Item& item : product.items) {
        text += std::string("  ") + kKindNames[static_cast<std::size_t>(item.kind)] + " number " +
                std::to_string(item.number) + " variant " + std::to_string(item.variant) +
                (item.option ? " option" : "") + (item.earlier ? " earlier" : "") +
                (item.touched ? " touched" : "") + " lines";
        for (const std::string& line : item.lines) {
            text += " \"" + line + "\"";
        }
        text += "\n";
    }
    text += std::string("  course: ") + nameOf(product.course) + " at " + std::to_string(product.point) +
            " (operation " + std::to_string(product.operation) + ")\n";
    return text + (product.foreignFile ? "  a foreign file\n" : "") +
           (product.firewallOff ? "  the firewall is off\n" : "") +
           (product.registers ? "  registers itself\n" : "");
}

std::string filePathOf(const Item& file) {
    static const std::array kPlaces = {"/product/f", "/data/f", "/product/sub/f", "/data/made/here/f"};
    return file.name(kPlaces[static_cast<std::size_t>(file.variant) % kPlaces.size()]);
}

std::string installedContentOf(const Item& file) {
    return file.variant % 5 == 0 ? "same" : file.name("installed ");
}

std::string earlierContentOf(const Item& file) {
    return file.variant % 3 == 0 ? "same" : file.name("earlier ");
}

std::string iniPathOf(const Item& ini) {
    return ini.name("/data/settings") + ".ini";
}

std::string textPathOf(const Item& modified) {
    return modified.name("/data/text") + ".txt";
}

std::string linkPathOf(const Item& shortcut) {
    return shortcut.name(shortcut.option ? "/menu/Demo/link" : "/data/link");
}

std::string registryPathOf(const Item& item) {
    return item.name(item.option ? "Software/Demo/Deep/Key" : "Software/Present/Key");
}

std::string environmentValueOf(const Item& item) {
    return item.name("/product/bin");
}
