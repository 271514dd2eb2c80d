#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "contracts/page_actions.h"
#include "engine/description_tags.h"

class Report;
class SystemOperations;

// Products of other installers that the description wants away: its elements `ExternalLegacyApplication`.
class ExternalProducts {
public:
    // `system` outlives this object.
    ExternalProducts(DescriptionTags tags, SystemOperations& system) : tags_(tags), system_(system) {}

    // How many products an element stands for are installed.
    std::int32_t countInstalled(std::int32_t element);

    // Uninstalls every installed product that the children of a page's element name, one after the other, and
    // waits for each; gives those that it found. `onFirst` is called once before the first of them. A product
    // that stays is no error here, but shown; see isAnyInstalled. `isToEnd` ends the waiting, and no other
    // product is begun then.
    std::vector<ExternalProduct> uninstallAll(std::int32_t page, Report& report,
                                              const std::function<void()>& onFirst,
                                              const std::function<bool()>& isToEnd);

    bool isAnyInstalled(const std::vector<ExternalProduct>& found);

private:
    struct Product;

    Product read(std::int32_t element);
    std::vector<std::string> findInstalled(const Product& product);
    void uninstall(const std::string& name, const Product& product, Report& report,
                   const std::function<bool()>& isToEnd);

    DescriptionTags tags_;
    SystemOperations& system_;
};
