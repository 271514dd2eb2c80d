#include "ui/gui/page_elements.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/shared_buffer.h"
#include "base/text_functions.h"
#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "description/colour_theme.h"
#include "ui/field_values.h"
#include "ui/gui/document_content.h"
#include "ui/gui/image_picture.h"
#include "ui/gui/images/image_blending.h"
#include "ui/gui/images/image_placing.h"
#include "ui/gui/page_pictures.h"
#include "ui/gui/task_list.h"

namespace {

// The bytes of a resource; empty when the package hasn't got it.
std::string resourceOf(const DialogElementDesc& element, InstallExchangeInfo& engine) {
    SharedBuffer block;
    if (engine.readAlias(block, element.text.c_str(), nullptr) != 0 || block.size() < 1) {
        return {};
    }
    return {block.text(), static_cast<std::size_t>(block.size())};
}

DocumentColours coloursOf(const DialogElementDesc& element, PageHost& host) {
    if (!host.isThemed()) {
        return {};
    }
    return {element.foregroundColour, host.engine().getThemeColour(static_cast<int>(ThemeSlot::kActiveText))};
}

bool isWanted(const DialogElementDesc& element, InstallExchangeInfo& engine) {
    return conditionHolds(element.condition.view(), engine);
}

}  // namespace

struct PageElements::KindMaker {
    std::int32_t kind;
    Maker make;
};

void PageElements::build(int dialog, int sub) {
    clear();
    dialog_ = dialog;
    sub_ = sub;
    const int count = host_.engine().getElementCount(dialog, sub);
    for (int i = 0; i < count; ++i) {
        if (const DialogElementDesc* element = host_.engine().getElement(dialog, i, sub)) {
            add(*element);
        }
    }
}

void PageElements::add(const DialogElementDesc& description) {
    static constexpr KindMaker kMakers[] = {
        {kElementText, &PageElements::makeText},
        {kElementImage, &PageElements::makeImage},
        {kElementHLine, &PageElements::makePlain<ControlKind::kLine>},
        {kElementRichEditText, &PageElements::makeRichText},
        {kElementProgress, &PageElements::makePlain<ControlKind::kProgressBar>},
        {kElementList, &PageElements::makePlain<ControlKind::kLines>},
        {kElementTaskLB, &PageElements::makeTaskList},
        {kElementBorder, &PageElements::makePlain<ControlKind::kFrame>},
        {kElementSlideShow, &PageElements::makeSlide},
        {kElementHtmlEditText, &PageElements::makeHtml},
        {kElementPlainEditText, &PageElements::makePlainText},
    };
    const auto* known = std::find_if(std::begin(kMakers), std::end(kMakers),
                                     [&](const KindMaker& maker) { return maker.kind == description.kind; });
    PageElement element;
    element.description = &description;
    element.place =
        host_.geometry().placeOf({description.x, description.y, description.width, description.height,
                                  description.horizontalAlign, description.verticalAlign});
    if (known != std::end(kMakers) && (this->*known->make)(element)) {
        elements_.push_back(std::move(element));
        show(elements_.back(), isWanted(description, host_.engine()));
    }
}

bool PageElements::addControl(PageElement& element, ControlKind kind, std::string_view text) {
    const DialogElementDesc& description = *element.description;
    const std::string shown = OUtils::visibleText(text);
    const std::string name = OUtils::visibleText(description.name.view());
    ControlSpec spec;
    spec.kind = kind;
    spec.place = element.place;
    spec.text = shown;
    spec.name = name;
    if (host_.isThemed()) {
        spec.colours = {description.foregroundColour, description.backgroundColour, -1, -1};
    }
    element.control = host_.toolkit().add(spec);
    return element.control != 0;
}

std::string PageElements::shownText(const PageElement& element) const {
    std::string text = host_.engine().getShownText(*element.description);
    std::erase(text, '\r');
    return text;
}

bool PageElements::makeText(PageElement& element) {
    return addControl(element, ControlKind::kText, shownText(element));
}

template <ControlKind kind>
bool PageElements::makePlain(PageElement& element) {
    return addControl(element, kind);
}

bool PageElements::addDocument(PageElement& element, ControlKind kind, std::string& outDocument) {
    outDocument = resourceOf(*element.description, host_.engine());
    return !outDocument.empty() && addControl(element, kind);
}

bool PageElements::makeRichText(PageElement& element) {
    std::string document;
    if (!addDocument(element, ControlKind::kRichText, document)) {
        return false;
    }
    const RichTextCommands content =
        richTextContent(document, element.description->format.view(), coloursOf(*element.description, host_));
    host_.toolkit().setRichText(element.control, content.get());
    return true;
}

bool PageElements::makeHtml(PageElement& element) {
    std::string document;
    if (!addDocument(element, ControlKind::kHtml, document)) {
        return false;
    }
    host_.toolkit().setHtml(element.control, htmlContent(document, element.description->format.view(),
                                                         coloursOf(*element.description, host_)));
    return true;
}

bool PageElements::makePlainText(PageElement& element) {
    std::string document;
    if (!addDocument(element, ControlKind::kPlainText, document)) {
        return false;
    }
    host_.toolkit().setText(element.control, plainTextContent(document, element.description->format.view()));
    return true;
}

bool PageElements::makeTaskList(PageElement& element) {
    if (!addControl(element, ControlKind::kTaskList)) {
        return false;
    }
    tasks_.fill(element.control, *element.description, dialog_);
    return true;
}

bool PageElements::makeImage(PageElement& element) {
    return takePicture(element, element.description->text);
}

bool PageElements::makeSlide(PageElement& element) {
    const auto resource = pictures_.nextSlide(element.description->name.view(),
                                              OUtils::textToInteger(element.description->text));
    return resource && takePicture(element, *resource);
}

bool PageElements::takePicture(PageElement& element, std::string_view resource) {
    const Image picture = pictures_.picture(resource, {element.place.width, element.place.height});
    std::int32_t background = -1;
    std::int32_t foreground = -1;
    host_.engine().getDialogColours(dialog_, sub_, background, foreground);
    if (background == -1) {
        background = host_.toolkit().pageColour();
    }
    const std::uint32_t below =
        colourBelow(element.description->backgroundColour, static_cast<std::uint32_t>(background));
    element.picture = blendOver(picture, below);
    return !element.picture.isEmpty();
}

void PageElements::keep(PageElement element) {
    elements_.push_back(std::move(element));
}

void PageElements::keepAllOf(PageElements& other) {
    for (PageElement& element : other.elements_) {
        keep(std::move(element));
    }
    other.elements_.clear();
}

void PageElements::clear() {
    for (const PageElement& element : elements_) {
        host_.toolkit().remove(element.control);
    }
    elements_.clear();
}

void PageElements::refresh() {
    for (PageElement& element : elements_) {
        if (element.description->expandsVariables) {
            host_.toolkit().setText(element.control, OUtils::visibleText(shownText(element)));
        }
        if (!element.description->condition.isEmpty()) {
            show(element, isWanted(*element.description, host_.engine()));
        }
    }
}

void PageElements::showAll(bool showThem) {
    for (PageElement& element : elements_) {
        show(element, showThem && isWanted(*element.description, host_.engine()));
    }
}

void PageElements::show(PageElement& element, bool show) {
    if (element.control == 0 && show) {
        showPicture(element);
    }
    if (host_.toolkit().isShown(element.control) != show) {
        host_.toolkit().show(element.control, show);
    }
}

// A picture takes memory of the window system, so it gets its control when it is needed.
void PageElements::showPicture(PageElement& element) {
    const double density = pictures_.pixelDensity();
    const ImageSize size = {static_cast<int>(element.picture.width() / density),
                            static_cast<int>(element.picture.height() / density)};
    const Place& place = element.place;
    const ImagePosition position =
        placeImage({place.x, place.y, place.width, place.height}, size, element.description->horizontalAlign,
                   element.description->verticalAlign);
    element.place = {position.x, position.y, size.width, size.height};
    if (addControl(element, ControlKind::kPicture)) {
        host_.toolkit().setPicture(element.control, pictureOf(element.picture));
        element.picture = Image();
    }
}

ControlId PageElements::find(std::string_view name, std::initializer_list<DialogElementKind> kinds) const {
    for (const PageElement& element : elements_) {
        const bool isOfKind = std::find(kinds.begin(), kinds.end(), element.description->kind) != kinds.end();
        if (isOfKind && element.description->name.view() == name) {
            return element.control;
        }
    }
    return 0;
}

std::optional<PageElement> PageElements::take(std::string_view name) {
    const auto found = std::find_if(elements_.begin(), elements_.end(), [&](const PageElement& element) {
        return element.description->name.view() == name;
    });
    if (found == elements_.end()) {
        return std::nullopt;
    }
    PageElement taken = std::exchange(*found, std::move(elements_.back()));
    elements_.pop_back();
    return taken;
}

std::string_view PageElements::firstText() const {
    for (const PageElement& element : elements_) {
        if (element.description->kind == kElementText) {
            return element.description->text;
        }
    }
    return {};
}
