#pragma once

#include <string>

#include "engine/tag_context.h"

class ProductDescription;

// The action `Registry`: values and keys of the registry. A failed change is no failure of the installation.
class RegistryTags {
public:
    RegistryTags(TagContext context, const ProductDescription& product)
        : context_(context), product_(product) {}

    // The changes that the children of the element ask for. Without an open action log the product's own log
    // is continued for as long as that takes. `ui` may be null.
    void applyRegistryTag(InstallerUI* ui, std::int32_t node);

private:
    // A child that names its place and path, with its texts as they are to be used.
    struct Change {
        std::int32_t node = -1;
        bool expand = false;
        std::string place;
        std::string path;
        const char* valueName = nullptr;
        std::string expandedValueName;
    };

    bool openProductLog();
    void applyChild(InstallerUI* ui, std::int32_t node);
    Change readChange(std::int32_t node);
    std::string textOf(const Change& change, const char* text);
    void carryOut(const Change& change);
    void addValue(const Change& change);
    void addKey(const Change& change);
    void removeValue(const Change& change);
    void removeKey(const Change& change);
    bool isRecorded(const Change& change);

    TagContext context_;
    const ProductDescription& product_;
};
