#include "engine/external_products.h"

#include <algorithm>

#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "engine/report.h"

struct ExternalProducts::Product {
    std::string name;
    std::string publisher;
    std::string arguments;
    bool isPartOfName = false;
    std::uint32_t flags = 0;  // a set of UninstallEntryFlag
};

ExternalProducts::Product ExternalProducts::read(std::int32_t element) {
    Product product;
    product.name = tags_.textOf(element).value_or("");
    product.publisher = tags_.attribute(element, "Publisher").value_or("");
    product.arguments = tags_.expandForSystem(tags_.attribute(element, "Arguments"));
    const std::vector<std::string> details =
        OUtils::splitText(tags_.attribute(element, "Details").value_or(""), ';');
    for (const std::string& word : details) {
        product.isPartOfName |= OUtils::equalsIgnoreCase(word, vocabulary::WordName("substring"));
        product.flags |= OUtils::equalsIgnoreCase(word, vocabulary::WordName("x86")) ? kEntryIn32BitView : 0U;
    }
    return product;
}

std::vector<std::string> ExternalProducts::findInstalled(const Product& product) {
    if (product.isPartOfName) {
        return system_.findEntriesByPublisher(product.name, product.publisher, product.flags);
    }
    if (system_.findUninstallEntry(product.name, product.flags)) {
        return {product.name};
    }
    return {};
}

std::int32_t ExternalProducts::countInstalled(std::int32_t element) {
    if (!tags_.textOf(element) || !tags_.conditionHolds(element)) {
        return 0;
    }
    return static_cast<std::int32_t>(findInstalled(read(element)).size());
}

ExternalProducts::Found ExternalProducts::uninstallAll(std::int32_t page, Report& report,
                                                       const std::function<void()>& onFirst) {
    Found found;
    for (const std::int32_t node : tags_.childrenOf(page)) {
        if (!tags_.isCalled(node, "ExternalLegacyApplication") || !tags_.conditionHolds(node)) {
            continue;
        }
        const Product product = read(node);
        found.in32BitView = (product.flags & kEntryIn32BitView) != 0;
        if (!tags_.textOf(node)) {
            continue;
        }
        for (const std::string& name : findInstalled(product)) {
            if (found.names.empty()) {
                onFirst();
            }
            found.names.push_back(name);
            uninstall(name, product, report);
        }
    }
    return found;
}

void ExternalProducts::uninstall(const std::string& name, const Product& product, Report& report) {
    report.addLine("Uninstalling \"" + name + "\" ...", true);
    system_.uninstallApplication(name, product.arguments, product.flags | kEntryWait, report.ui());
}

bool ExternalProducts::isAnyInstalled(const Found& found) {
    const std::uint32_t flags = found.in32BitView ? kEntryIn32BitView : 0U;
    return std::any_of(found.names.begin(), found.names.end(),
                       [&](const std::string& name) { return system_.findUninstallEntry(name, flags); });
}
