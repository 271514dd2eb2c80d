#include "user_acts.h"

#include <algorithm>
#include <array>

#include "machine_state.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

std::string earlierText(const Item& item) {
    std::string text;
    for (const std::string& line : item.lines) {
        text += line + "\n";
    }
    return text;
}

// Other programs read sections and keys in any case and with blanks; the edits don't.
std::string earlierIni(const Item& item) {
    static constexpr std::array kSpellings = {"key = old\n", "key=old\n", "KEY=old\n", "Key =old\n"};
    const std::size_t spelling = item.lines.size() % kSpellings.size();
    std::string text = "; notes\n[first]\nkey=mine\n";
    if (item.variant % 3 != 0) {
        text += item.variant % 5 == 0 ? "[Main]\nother=1\n" : "[main]\nother=1\n";
        if (item.earlier) {
            text += kSpellings[spelling];
        }
        text += "\nlast=2\n";
    }
    return text + "[tail]\nkey=also mine\n";
}

// Lists, in some of which entries contain the text that will be added, or are that text.
platform::RegistryValue earlierVariable(const Item& item) {
    const std::string added = environmentValueOf(item);
    const int form = item.variant / 3;
    const std::string text =
        form % 2 == 0 ? "/usr/own;/usr/other" : added + "x;/x" + added + ";/usr/own;" + added + ";/x" + added;
    return {form >= 2 ? platform::kRegExpandString : platform::kRegString, text};
}

void writeVariable(MemoryPlatform& machine, const std::string& name, const platform::RegistryValue& value) {
    machine.registry.writeValue(RegistryRoot::kLocalMachine, kEnvironmentKey, RegistryView::kNative, name,
                                value);
}

void prepareItem(MemoryPlatform& machine, const Item& item) {
    switch (item.kind) {
        case ItemKind::kFile:
            if (item.earlier) {
                machine.files.addFile(placeOf(item), earlierContentOf(item));
            }
            break;
        case ItemKind::kEnvironment:
            if (item.earlier) {
                writeVariable(machine, item.name("VAR"), earlierVariable(item));
            }
            break;
        case ItemKind::kIni:
            if (item.variant % 4 != 0) {
                machine.files.addFile(placeOf(item), earlierIni(item));
            }
            break;
        case ItemKind::kModifyFile:
            if (item.earlier) {
                machine.files.addFile(placeOf(item), earlierText(item));
            }
            break;
        case ItemKind::kFirewallPort:
            if (item.earlier) {
                machine.firewall.ports[{1000 + item.number, platform::FirewallProtocol::kTcp}] = "mine";
            }
            break;
        case ItemKind::kRegistryValue:
        case ItemKind::kRemoveRegistryValue:
            if (item.earlier) {
                machine.registry.addText(RegistryRoot::kLocalMachine, registryKeyOf(item), "name", "earlier");
                machine.registry.addText(RegistryRoot::kLocalMachine, registryKeyOf(item), "other", "mine");
            }
            break;
        case ItemKind::kRegistryKey:
        case ItemKind::kRemoveRegistryKey:
            if (item.earlier) {
                machine.registry.addKey(RegistryRoot::kLocalMachine, registryKeyOf(item));
            }
            break;
        case ItemKind::kRemoveFile:
            if (item.earlier) {
                machine.files.addFile(placeOf(item), "going");
            }
            break;
        case ItemKind::kRemoveDirectory:
            if (item.earlier) {
                machine.files.addDirectory(placeOf(item));
            }
            break;
        default:
            break;
    }
}

bool canBePrivate(const Item& item) {
    return item.kind == ItemKind::kFile || item.kind == ItemKind::kIni || item.kind == ItemKind::kModifyFile;
}

// What is in the place becomes one more name of, or a link to, what is somebody else's now.
void setTrap(MemoryFileSystem& files, Trap trap, const std::string& place, const std::string& victim) {
    const bool isPrivate = files.isPrivate(place);
    files.addFile(victim, files.hasFile(place) ? files.content(place) : "theirs");
    if (isPrivate) {
        files.makePrivate(victim);
    }
    if (trap == Trap::kLink) {
        files.addLink(place, victim);
    } else if (trap == Trap::kHardLink) {
        files.addHardLink(place, victim);
    }
}

void setTrapAtFirst(MemoryPlatform& machine, const Item& item) {
    const bool isSet = item.atFirst == Trap::kLink || item.atFirst == Trap::kHardLink;
    const std::string victim = victimOf(item, kAtFirst);
    if (!isSet || placeOf(item).empty() || item.kind == ItemKind::kCleaning) {
        return;
    }
    if (item.kind != ItemKind::kRemoveDirectory) {
        setTrap(machine.files, item.atFirst, placeOf(item), victim);
    } else if (item.atFirst == Trap::kLink) {
        machine.files.addDirectory(victim);
        machine.files.addLink(placeOf(item), victim);
    }
}

void touchItem(MemoryPlatform& machine, const Item& item) {
    if (item.kind == ItemKind::kFile && machine.files.hasFile(placeOf(item))) {
        machine.files.addFile(placeOf(item), kUsersContent);
    } else if (item.kind == ItemKind::kEnvironment) {
        const platform::RegistryValue* value =
            machine.registry.value(RegistryRoot::kLocalMachine, kEnvironmentKey, item.name("VAR"));
        if (value != nullptr) {
            writeVariable(machine, item.name("VAR"),
                          {value->type, entryInFrontOf(item) + ";" + value->data + ";" + entryAfter(item)});
        }
    }
}

// What the product leaves while it runs, and what others put among it.
void fillDirectory(MemoryFileSystem& files, const Item& item) {
    const std::string place = placeOf(item);
    const std::string victim = victimOf(item, kLater);
    files.addFile(victim, "theirs");
    files.addFile(victim + ".dir/theirs.tmp", "theirs");
    if (item.later == Trap::kLinkedPlace) {
        files.addLink(place, victim + ".dir");
        return;
    }
    files.addFile(place + "/a.tmp", "");
    files.addFile(place + "/sub/b.tmp", "");
    if (item.variant % 2 != 0) {
        files.addFile(place + "/keep.dat", kKeptContent);
    }
    if (item.later == Trap::kLink) {
        files.addLink(place + "/link.tmp", victim);
        files.addLink(place + "/sub/dir.tmp", victim + ".dir");
    } else if (item.later == Trap::kHardLink) {
        files.addHardLink(place + "/sub/hard.tmp", victim);
    } else if (item.later == Trap::kOddName) {
        files.addUnnameable(place + "/sub", "..\\..\\.." + victim + ".dir\\theirs.tmp");
    }
}

void setTrapLater(MemoryFileSystem& files, const ProductCase& product, const Item& item) {
    const bool isSet = (item.later == Trap::kLink || item.later == Trap::kHardLink) &&
                       (item.kind == ItemKind::kFile || isReached(product, item));
    if (item.kind == ItemKind::kCleaning) {
        fillDirectory(files, item);
    } else if (isSet && files.hasFile(placeOf(item))) {
        setTrap(files, item.later, placeOf(item), victimOf(item, kLater));
    }
}

}  // namespace

std::string victimOf(const Item& item, const std::string& moment) {
    return item.name("/others/" + moment);
}

std::string entryInFrontOf(const Item& variable) {
    return "/user" + environmentValueOf(variable);
}

std::string entryAfter(const Item& variable) {
    return environmentValueOf(variable) + "/user";
}

bool holdsEqualEntry(const Item& item) {
    return (";" + earlierVariable(item).data + ";").find(";" + environmentValueOf(item) + ";") !=
           std::string::npos;
}

void prepareMachine(MemoryPlatform& machine, const ProductCase& product) {
    machine.files.addFile("/data/keep", kKeptContent);
    machine.registry.addKey(RegistryRoot::kLocalMachine, "Software\\Present");
    machine.registry.addKey(RegistryRoot::kLocalMachine, kEnvironmentKey);
    machine.registry.addKey(RegistryRoot::kLocalMachine,
                            "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall");
    if (product.firewallOff) {
        machine.firewall.unreachable = true;
        machine.firewall.failing[platform::FirewallCall::kNoService] = 1;
    }
    for (const Item& item : product.items) {
        prepareItem(machine, item);
        if (item.isPrivate && canBePrivate(item) && machine.files.hasFile(placeOf(item))) {
            machine.files.makePrivate(placeOf(item));
        }
        setTrapAtFirst(machine, item);
    }
}

void useMachine(MemoryPlatform& machine, const ProductCase& product) {
    for (const Item& item : product.items) {
        if (item.touched) {
            touchItem(machine, item);
        }
        setTrapLater(machine.files, product, item);
    }
    if (product.foreignFile) {
        machine.files.addFile(kForeignFile, kForeignContent);
    }
}

void clearTheWay(MemoryPlatform& machine, const ProductCase& product) {
    MemoryFileSystem& files = machine.files;
    for (const Item& item : product.items) {
        const bool isEdited = item.kind == ItemKind::kIni || item.kind == ItemKind::kModifyFile;
        const std::string victim = victimOf(item, kLater);
        if (isEdited && files.linkTarget(placeOf(item)) == victim) {
            files.removeFile(placeOf(item));
            files.addFile(placeOf(item), files.content(victim));
            if (files.isPrivate(victim)) {
                files.makePrivate(placeOf(item));
            }
        }
    }
}

bool isBrokenInRepair(const Item& file) {
    return file.variant % 2 != 0;
}

bool isSafeFromDamage(const Item& file) {
    return file.earlier && earlierContentOf(file) == installedContentOf(file);
}

void damageProduct(MemoryPlatform& machine, const ProductCase& product) {
    for (const Item& item : product.items) {
        const std::string path = placeOf(item);
        if (item.kind != ItemKind::kFile || !machine.files.hasFile(path) || isSafeFromDamage(item)) {
            continue;
        }
        if (isBrokenInRepair(item)) {
            machine.files.addFile(path, kBrokenContent);
        } else {
            machine.files.removeFile(path);
        }
    }
}
