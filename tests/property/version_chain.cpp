#include "version_chain.h"

#include <algorithm>

namespace {

using Kind = ChainStep::Kind;

constexpr std::array kStepNames = {"install",   "install over", "install and fail", "install over and fail",
                                   "uninstall", "use"};
static_assert(kStepNames.size() == ChainStep::kKindCount);

// Nothing is recorded of what these make, or what they clean: each version has to clean up after the others.
bool isCommon(const Item& item) {
    return item.kind == ItemKind::kCopyFile || item.kind == ItemKind::kCreateFile ||
           item.kind == ItemKind::kCleaning;
}

constexpr std::array kChainKinds = {
    ItemKind::kFile,          ItemKind::kFile,         ItemKind::kFile,
    ItemKind::kEnvironment,   ItemKind::kIni,          ItemKind::kModifyFile,
    ItemKind::kShortcut,      ItemKind::kFirewallPort, ItemKind::kFirewallApplication,
    ItemKind::kRegistryValue, ItemKind::kRegistryKey,  ItemKind::kCopyFile,
    ItemKind::kCreateFile,    ItemKind::kCleaning};

// An item that an uninstallation gives back whole.
Item restorableItem(RandomNumbers& random, int number) {
    Item item = randomItem(random, number);
    item.kind = kChainKinds[random.below(kChainKinds.size())];
    item.atFirst = item.later = Trap::kNone;
    switch (item.kind) {
        case ItemKind::kFile:
            item.option = item.earlier;  // with a backup a file stays that was not there before
            break;
        case ItemKind::kModifyFile:
            item.earlier = true;  // there is something to edit
            break;
        case ItemKind::kShortcut:
            item.variant -= item.variant % 4 == 3 ? 1 : 0;  // a type that exists
            break;
        case ItemKind::kFirewallPort:
        case ItemKind::kRegistryValue:
        case ItemKind::kCopyFile:
        case ItemKind::kCreateFile:
            item.earlier = false;
            break;
        case ItemKind::kCleaning:
            item.option = true;  // directories as well
            break;
        default:
            break;
    }
    return item;
}

ChainStep randomStep(RandomNumbers& random) {
    ChainStep step;
    step.kind = static_cast<Kind>(random.below(ChainStep::kKindCount));
    step.version = static_cast<int>(random.below(kVersionCount)) + 1;
    // A failing version without a backup takes the earlier one along.
    step.hasBackup = step.kind != Kind::kInstall || !random.oneIn(8);
    return step;
}

}  // namespace

VersionChain randomChain(RandomNumbers& random) {
    VersionChain chain;
    const bool registers = !random.oneIn(4);
    const std::size_t count = random.below(10);
    for (std::size_t i = 0; i < count; ++i) {
        Item item = restorableItem(random, static_cast<int>(i) + 1);
        for (int version = 0; version < kVersionCount; ++version) {
            item.release = version + 1;
            if (isCommon(item) || !random.oneIn(3)) {
                chain.versions[static_cast<std::size_t>(version)].items.push_back(item);
            }
        }
    }
    for (ProductCase& version : chain.versions) {
        version.registers = registers;
    }
    for (std::size_t steps = random.below(6) + 2; steps > 0; --steps) {
        chain.steps.push_back(randomStep(random));
    }
    chain.isBare = random.oneIn(4);
    return chain;
}

ProductCase allItems(const VersionChain& chain) {
    ProductCase all;
    for (const ProductCase& version : chain.versions) {
        for (const Item& item : version.items) {
            const bool isKnown = std::ranges::any_of(
                all.items, [&](const Item& known) { return known.number == item.number; });
            if (!isKnown) {
                all.items.push_back(item);
            }
        }
    }
    return all;
}

std::string summarize(const VersionChain& chain) {
    std::string text;
    for (int version = 1; version <= kVersionCount; ++version) {
        text += "  version " + std::to_string(version) + "\n" +
                summarize(chain.versions[static_cast<std::size_t>(version) - 1].items);
    }
    for (const ChainStep& step : chain.steps) {
        text += std::string("  ") + kStepNames[static_cast<std::size_t>(step.kind)] + " " +
                std::to_string(step.version) + (step.hasBackup ? "" : " without a backup") + "\n";
    }
    return text + (chain.versions[0].registers ? "  registers itself\n" : "") +
           (chain.isBare ? "  no list of applications\n" : "");
}
