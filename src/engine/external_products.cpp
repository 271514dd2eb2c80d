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

std::vector<ExternalProduct> ExternalProducts::uninstallAll(std::int32_t page, Report& report,
                                                            const std::function<void()>& onFirst,
                                                            const std::function<bool()>& isToEnd) {
    std::vector<ExternalProduct> found;
    for (const std::int32_t node : tags_.childrenOf(page)) {
        if (!tags_.isCalled(node, "ExternalLegacyApplication") || !tags_.conditionHolds(node) ||
            !tags_.textOf(node)) {
            continue;
        }
        const Product product = read(node);
        for (const std::string& name : findInstalled(product)) {
            if (isToEnd()) {
                return found;
            }
            if (found.empty()) {
                onFirst();
            }
            found.push_back({name, (product.flags & kEntryIn32BitView) != 0});
            uninstall(name, product, report, isToEnd);
        }
    }
    return found;
}

void ExternalProducts::uninstall(const std::string& name, const Product& product, Report& report,
                                 const std::function<bool()>& isToEnd) {
    report.addLine("Uninstalling \"" + name + "\" ...", true);
    system_.uninstallApplication(name, product.arguments, product.flags | kEntryWait, report.ui(), isToEnd);
    if (!isToEnd() && system_.findUninstallEntry(name, product.flags)) {
        report.note("\"" + name + "\" is still installed");
    }
}

bool ExternalProducts::isAnyInstalled(const std::vector<ExternalProduct>& found) {
    return std::any_of(found.begin(), found.end(), [&](const ExternalProduct& product) {
        return system_.findUninstallEntry(product.name, product.in32BitView ? kEntryIn32BitView : 0U);
    });
}
