#pragma once

#include <array>
#include <string>
#include <vector>

#include "product_case.h"
#include "random_numbers.h"

inline constexpr int kVersionCount = 3;

// One thing that a user does with a product that has versions.
struct ChainStep {
    enum class Kind {
        kInstall,      // a version; the one that is there is removed for it, whatever its number
        kInstallOver,  // over the one that is there
        kFail,         // as kInstall, but the version fails in the end and is taken back
        kFailOver,     // as kInstallOver, likewise
        kUninstall,
        kUse,  // the user changes files of the product, the product fills its cache
    };
    static constexpr int kKindCount = 6;

    Kind kind = Kind::kInstall;
    int version = 1;
    bool hasBackup = true;  // of a removal: it could be taken back
};

// The versions of a product and what happens to them on one machine. What a product can't give back by its
// nature is left out, so that in the end everything is as it was at first.
struct VersionChain {
    std::array<ProductCase, kVersionCount> versions;
    std::vector<ChainStep> steps;
    bool isBare = false;  // there is no list of applications yet
};

VersionChain randomChain(RandomNumbers& random);
// Every item that any version has, each once.
ProductCase allItems(const VersionChain& chain);
// In words, for a report.
std::string summarize(const VersionChain& chain);
