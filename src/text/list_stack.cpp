#include "text/list_stack.h"

namespace {

std::string numberAfter(std::uint32_t counter) {
    return std::to_string(std::uint64_t{counter} + 1);
}

}  // namespace

void ListStack::close() {
    if (!lists_.empty()) {
        lists_.pop_back();
    }
}

void ListStack::appendNextMarker(std::string& out, char bullet) {
    if (lists_.empty()) {
        return;
    }
    OpenList& list = lists_.back();
    switch (list.kind) {
        case kTgmBulletList:
            out += bullet;
            break;
        case kTgmNumberList:
            out += numberAfter(list.counter) + ".";
            break;
        case kTgmLetterList:
            out += static_cast<char>(static_cast<unsigned char>('a' + list.counter));
            out += '.';
            break;
    }
    out += ' ';
    ++list.counter;
}

std::size_t ListStack::markerWidth() const {
    if (lists_.empty()) {
        return 0;
    }
    switch (lists_.back().kind) {
        case kTgmBulletList:
            return 2;
        case kTgmNumberList:
            return numberAfter(lists_.back().counter).size() + 2;
        case kTgmLetterList:
            return 3;
    }
    return 0;
}
