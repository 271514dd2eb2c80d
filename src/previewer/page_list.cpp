#include "previewer/page_list.h"

#include "contracts/install_exchange_info.h"
#include "description/dialog_model.h"

namespace {

constexpr std::size_t kMostCharacters = 40;
constexpr std::size_t kDigits = 2;

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

}  // namespace

std::string fileNamePart(std::string_view name) {
    std::string part;
    for (const char c : name.substr(0, kMostCharacters)) {
        part += isPlain(c) ? c : '_';
    }
    return part;
}

PageList::PageList(InstallExchangeInfo& engine, std::string_view phase) : phase_(phase) {
    for (int dialog = 0; dialog < engine.getDialogCount(); ++dialog) {
        const DialogDesc* const frame = engine.getDialog(dialog, -1);
        if (frame != nullptr && !frame->has(kDialogHasSubDialogs)) {
            add({dialog, -1}, frame->name.view());
        }
        const int count = engine.getSubDialogCount(dialog);
        for (int sub = 0; sub < count; ++sub) {
            const DialogDesc* const page = engine.getDialog(dialog, sub);
            add({dialog, sub}, page == nullptr ? std::string_view() : page->name.view());
        }
    }
}

void PageList::add(PagePosition position, std::string_view name) {
    std::string number = std::to_string(names_.size() + 1);
    number.insert(0, number.size() < kDigits ? kDigits - number.size() : 0, '0');
    names_[position] = phase_ + "-" + number + "-" + fileNamePart(name);
}

PagePosition PageList::pageAt(PagePosition position) const {
    const PagePosition first{position.dialog, 0};
    return !names_.contains(position) && names_.contains(first) ? first : position;
}

std::string PageList::fileNameOf(PagePosition page) const {
    const auto found = names_.find(page);
    return found == names_.end() ? std::string() : found->second;
}
