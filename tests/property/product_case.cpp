#include "product_case.h"

#include <algorithm>
#include <array>
#include <map>

namespace {

constexpr std::array kKindNames = {
    "File",        "Environment",   "Ini",         "ModifyFile",          "Shortcut",          "FirewallPort",
    "FirewallApp", "RegistryValue", "RegistryKey", "RemoveRegistryValue", "RemoveRegistryKey", "CopyFile",
    "CreateFile",  "RemoveFile",    "RemoveDir",   "RunProgram",          "Cleaning"};
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

// The mark of a version in what it makes.
std::string markOf(const Item& item) {
    return item.release == 0 ? "" : " of version " + std::to_string(item.release);
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
                   attribute("FileName", placeOf(item)) + attribute("Section", "main") +
                       attribute("Key", "key") + (item.option ? attribute("BeforeKey", "other") : ""),
                   item.name("value") + markOf(item));
}

std::string typeOf(const Item& shortcut) {
    static const std::array kTypes = {"File", "URL", "Uninstall", "Symlink"};
    return kTypes[static_cast<std::size_t>(shortcut.variant) % kTypes.size()];
}

std::string shortcutElement(const Item& item) {
    const std::string path = linkPathOf(item);
    return element("Add",
                   attribute("Type", typeOf(item)) + attribute("Dest", path.substr(0, path.rfind('/'))) +
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
                           std::to_string(10 + item.release));
    }
}

std::string actionElement(const Item& item) {
    switch (item.kind) {
        case ItemKind::kCopyFile:
            return element("CopyFile", attribute("Dest", placeOf(item)), "/data/keep");
        case ItemKind::kCreateFile:
            return element("CreateFile", attribute("Dest", "/product"), item.name("created"));
        case ItemKind::kRemoveFile:
            return element("RemoveFile", "", placeOf(item));
        case ItemKind::kRemoveDirectory:
            return element("RemoveDir", "", placeOf(item));
        case ItemKind::kRunProgram:
            return element("RunProgram", attribute("Wait", "1"), "/product/run");
        default:
            return element("Registry", "", registryElement(item));
    }
}

// Nothing is recorded of what these actions make.
std::string cleanUpElement(const Item& item) {
    const bool isMade = item.kind == ItemKind::kCopyFile || item.kind == ItemKind::kCreateFile;
    return isMade ? element("RemoveFile", "", placeOf(item)) : "";
}

// The elements of the items, by the group that they belong into.
std::map<std::string, std::string> groupsOf(const ProductCase& product) {
    std::map<std::string, std::string> groups;
    groups["UninstallWildcards"] = "<WC Dest='/product'>install.log</WC><WC Dest='/product'>backup.bin</WC>";
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
                    element("File", attribute("Path", placeOf(item)) + attribute("Command", "AddAfter"),
                            item.name("/product/change"));
                break;
            case ItemKind::kCleaning:
                groups["UninstallWildcards"] += element(
                    "WC", attribute("Dest", placeOf(item)) + (item.option ? " DeleteDirs='1'" : ""), "*.tmp");
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

struct CourseRow {
    const char* name;
    Promise promise;
};
// In the order of Course.
constexpr std::array<CourseRow, kCourseCount> kCourses = {{
    {"plain", Promise::kEnd},
    {"installed again", Promise::kEnd},
    {"repaired", Promise::kEnd},
    {"a damaged archive", Promise::kFailure},
    {"a cut archive", Promise::kFailure},
    {"a lost archive", Promise::kEnd},
    {"a damaged log", Promise::kNoLoss},
    {"a cut log", Promise::kNoLoss},
    {"a lost log", Promise::kNothingDone},
    {"a failing call of the installation", Promise::kNoLoss},
    {"a full disk", Promise::kNoLoss},
    {"a failing call of the uninstallation", Promise::kEndAtLast},
    {"a full disk in the end", Promise::kEndAtLast},
}};

constexpr std::array kTrapNames = {"", "a link", "a hard link", "an odd name", "a linked directory"};
static_assert(kTrapNames.size() == kTrapCount);

std::string nameOf(Trap trap, const char* moment) {
    return trap == Trap::kNone ? "" : std::string(" ") + moment + " " + kTrapNames[static_cast<int>(trap)];
}

Trap randomTrap(RandomNumbers& random) {
    return random.oneIn(8) ? static_cast<Trap>(random.below(kTrapCount)) : Trap::kNone;
}

}  // namespace

Item randomItem(RandomNumbers& random, int number) {
    Item item;
    item.kind = static_cast<ItemKind>(random.below(kItemKindCount));
    item.number = number;
    item.variant = static_cast<int>(random.below(12));
    item.option = random.oneIn(2);
    item.atFirst = randomTrap(random);
    item.later = randomTrap(random);
    item.earlier = random.oneIn(2) || item.atFirst != Trap::kNone;
    item.isPrivate = random.oneIn(4);
    item.touched = random.oneIn(4);
    for (std::size_t lines = random.below(8); lines > 0; --lines) {
        item.lines.push_back(randomLine(random));
    }
    return item;
}

const char* nameOf(Course course) {
    return kCourses[static_cast<std::size_t>(course)].name;
}

Promise promiseOf(Course course) {
    return kCourses[static_cast<std::size_t>(course)].promise;
}

bool isRefused(const Item& item) {
    const bool isLinked = item.atFirst == Trap::kLink;
    return (item.kind == ItemKind::kFile && item.option && isLinked) ||
           (item.kind == ItemKind::kIni && isLinked) ||
           (item.kind == ItemKind::kModifyFile && (isLinked || !item.earlier));
}

bool isReached(const ProductCase& product, const Item& item) {
    return std::ranges::none_of(product.items, [&](const Item& other) {
        return other.kind == item.kind && other.number <= item.number && isRefused(other);
    });
}

ProductCase randomCase(RandomNumbers& random) {
    ProductCase product;
    const std::size_t count = random.below(10);
    for (std::size_t i = 0; i < count; ++i) {
        product.items.push_back(randomItem(random, static_cast<int>(i) + 1));
    }
    product.course = random.oneIn(2) ? Course::kPlain : static_cast<Course>(random.below(kCourseCount));
    product.operation = static_cast<int>(random.below(1000));
    product.point = static_cast<int>(random.oneIn(2) ? random.below(12) : random.below(4000));
    product.reinstalled = random.oneIn(2);
    product.foreignFile = random.oneIn(8);
    product.firewallOff = random.oneIn(8);
    product.registers = random.oneIn(2);
    return product;
}

namespace {

// What differs between descriptions of products with versions and without.
struct DescriptionParts {
    std::string version = "1";
    std::string pages;      // after the work
    std::string variables;  // their default values
    std::string controls;   // variables with a role
};

std::string describeWith(const ProductCase& product, const DescriptionParts& parts) {
    std::map<std::string, std::string> groups = groupsOf(product);
    std::string text =
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname><MajorVersion>" + parts.version +
        "</MajorVersion><MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion><Website>x</Website>"
        "</ProductDesc><Dialogs><Hello/><CopyProgress/>" +
        parts.pages +
        "<End Special='Finish'/></Dialogs>"
        "<UninstallDialogs><Bye/><CopyProgress/>" +
        std::string(product.registers ? "<UnregisterApplication/>" : "") +
        "<End Special='Finish'/></UninstallDialogs><DefValues>" + parts.variables +
        "</DefValues><InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError>"
        "<UninstallError>UNINSTALL_ERROR</UninstallError>" +
        parts.controls +
        "</InstallerControlVariables><Installation><Uninstall><UninstallCmd>/product/installer</UninstallCmd>"
        "<InstallLogFile>/product/install.log</InstallLogFile>"
        "<InstallBackupFile>/product/backup.bin</InstallBackupFile>"
        "<UninstallXmlFile>/product/install.xml</UninstallXmlFile></Uninstall>"
        "<UninstallWildcards>" +
        groups["UninstallWildcards"] +
        "</UninstallWildcards></Installation>"
        "<FileSet Name='Own'><FN Dest='/product'>install.xml</FN><FN "
        "Dest='/product'>installer</FN></FileSet>";
    groups.erase("UninstallWildcards");
    for (const auto& [group, children] : groups) {
        text += "<" + group + ">" + children + "</" + group.substr(0, group.find(' ')) + ">";
    }
    return text + "</TandrelGroupInstallation>";
}

// No record can hold a path of this length.
std::string failingElement() {
    return element(
        "Registry", "",
        element("AddValue",
                attribute("Place", "HKEY_LOCAL_MACHINE") +
                    attribute("Path", "Software/" + std::string(2000, 'x')) + attribute("Value", "name"),
                "1"));
}

}  // namespace

std::string describe(const ProductCase& product) {
    DescriptionParts parts;
    parts.pages = product.registers ? "<RegisterApplication/>" : "";
    return describeWith(product, parts);
}

std::string describe(const ProductCase& product, const Release& release) {
    DescriptionParts parts;
    parts.version = std::to_string(release.number);
    parts.pages = "<RevertInstallation Condition='[INSTALL_ERROR]==1'/>";
    if (product.registers) {
        parts.pages += "<RegisterApplication Condition='[INSTALL_ERROR]==0'/>";
    }
    parts.variables = "<Value Name='INSTALL_ERROR' DataType='value'>0</Value>";
    if (release.removesEarlier) {
        parts.variables += "<Value Name='REMOVE' DataType='value'>0</Value>";
        parts.controls = "<ShouldUninstall>REMOVE</ShouldUninstall>";
    }
    std::string text = describeWith(product, parts);
    if (release.fails) {
        text.insert(text.rfind("</TandrelGroupInstallation>"),
                    "<AdditionalInstall>" + failingElement() + "</AdditionalInstall>");
    }
    return text;
}

std::string summarize(const std::vector<Item>& items) {
    std::string text;
    for (const Item& item : items) {
        text += std::string("  ") + kKindNames[static_cast<std::size_t>(item.kind)] + " number " +
                std::to_string(item.number) + " variant " + std::to_string(item.variant) +
                (item.option ? " option" : "") + (item.earlier ? " earlier" : "") +
                (item.isPrivate ? " private" : "") + (item.touched ? " touched" : "") +
                nameOf(item.atFirst, "at first") + nameOf(item.later, "later") + " lines";
        for (const std::string& line : item.lines) {
            text += " \"" + line + "\"";
        }
        text += "\n";
    }
    return text;
}

std::string summarize(const ProductCase& product) {
    std::string text = summarize(product.items);
    text += std::string("  course: ") + nameOf(product.course) + " at " + std::to_string(product.point) +
            " (operation " + std::to_string(product.operation) + ")" +
            (product.reinstalled ? ", installed again" : "") + "\n";
    return text + (product.foreignFile ? "  a foreign file\n" : "") +
           (product.firewallOff ? "  the firewall is off\n" : "") +
           (product.registers ? "  registers itself\n" : "");
}

std::string placeOf(const Item& item) {
    switch (item.kind) {
        case ItemKind::kFile:
            return filePathOf(item);
        case ItemKind::kIni:
            return item.name("/data/settings") + ".ini";
        case ItemKind::kModifyFile:
            return item.name("/data/text") + ".txt";
        case ItemKind::kCopyFile:
            return item.name("/product/copy");
        case ItemKind::kCreateFile:
            return item.name("/product/created");
        case ItemKind::kRemoveFile:
            return item.name("/data/gone");
        case ItemKind::kRemoveDirectory:
            return item.name("/data/empty");
        case ItemKind::kCleaning:
            return item.name("/data/cache");
        default:
            return {};
    }
}

std::string filePathOf(const Item& file) {
    static const std::array kPlaces = {"/product/f", "/data/f", "/product/sub/f", "/data/made/here/f"};
    return file.name(kPlaces[static_cast<std::size_t>(file.variant) % kPlaces.size()]);
}

std::string installedContentOf(const Item& file) {
    return file.variant % 5 == 0 ? "same" : file.name("installed ") + markOf(file);
}

std::string createdContentOf(const Item& createFile) {
    return "created" + markOf(createFile);
}

std::string editScriptOf(const Item& modifyFile) {
    const std::string searched = modifyFile.variant % 2 == 0 ? "alpha" : "beta";
    return "1\n" + searched + "\n2\nadded" + markOf(modifyFile) + "\n" + searched + "\n";
}

std::string earlierContentOf(const Item& file) {
    return file.variant % 3 == 0 ? "same" : file.name("earlier ");
}

std::string linkPathOf(const Item& shortcut) {
    return shortcut.name(shortcut.option ? "/menu/Demo/link" : "/data/link");
}

std::string registryPathOf(const Item& item) {
    return item.name(item.option ? "Software/Demo/Deep/Key" : "Software/Present/Key");
}

std::string registryKeyOf(const Item& item) {
    std::string path = registryPathOf(item);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string environmentValueOf(const Item& item) {
    return item.name("/product/bin");
}
