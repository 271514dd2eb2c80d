#include "description/theme_reader.h"

#include <string>

#include "description/colour_theme.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "support/debug_log.h"

namespace {

constexpr vocabulary::ElementName kCustomGroup = "CustomGroup";

// A tag without a text has no colour.
std::int32_t colourOf(const PXML& description, std::int32_t node) {
    const std::string_view text = description.getText(node).value_or(std::string_view());
    return text.empty() ? -1 : ColourTheme::parseHexColour(text);
}

void readGroup(const PXML& description, std::int32_t node, const DebugLog& debugLog, ColourTheme& theme) {
    const std::optional<std::string_view> name = vocabulary::attributeOf(description, node, "Name");
    if (name && !name->empty()) {
        theme.setGroup(*name, colourOf(description, node));
    } else {
        debugLog.line("WARNING: Theme custom group tag missing a 'Name' attribute!");
    }
}

void readSlot(const PXML& description, std::int32_t node, const DebugLog& debugLog, ColourTheme& theme) {
    const std::string_view name = description.getName(node);
    if (const std::optional<ThemeSlot> slot = ColourTheme::findSlot(name)) {
        theme.setColour(*slot, colourOf(description, node));
    } else {
        debugLog.line("WARNING: Colour theme tag is not supported by installer: \"" + std::string(name) +
                      "\"");
    }
}

void fill(std::int32_t& colour, std::int32_t fallback) {
    if (colour == -1) {
        colour = fallback;
    }
}

std::int32_t orElse(std::int32_t colour, std::int32_t otherwise) {
    return colour != -1 ? colour : otherwise;
}

// Fills what one page leaves open. Sub-dialogs take the theme's colours, not those of their dialog.
class PageTheming {
public:
    explicit PageTheming(const ColourTheme& theme) : theme_(theme) {}

    void apply(DialogDesc& page) const {
        fill(page.backgroundColour, slot(ThemeSlot::kDialogBackground));
        fill(page.foregroundColour, slot(ThemeSlot::kDialogForeground));
        if (page.has(kDialogHasSubDialogs)) {
            for (DialogDesc& sub : page.subDialogs) {
                apply(sub);
            }
        }
        for (DialogElementDesc& element : page.elements) {
            applyToElement(element, page);
        }
        for (DialogFieldDesc& field : page.fields) {
            applyToField(field, page);
        }
        for (DialogButtonDesc& button : page.buttons) {
            applyToButton(button);
        }
    }

private:
    std::int32_t slot(ThemeSlot which) const { return theme_.getColour(which); }

    void applyToElement(DialogElementDesc& element, const DialogDesc& page) const {
        switch (element.kind) {
            case kElementText:
                fill(element.foregroundColour, slot(ThemeSlot::kActiveText));
                [[fallthrough]];
            case kElementImage:
            case kElementSlideShow:
                fill(element.backgroundColour, page.backgroundColour);
                break;
            case kElementHLine:
            case kElementBorder:
                fill(element.foregroundColour, slot(ThemeSlot::kStaticElements));
                break;
            case kElementProgress:
                fill(element.backgroundColour, slot(ThemeSlot::kProgressBarBackground));
                fill(element.foregroundColour, slot(ThemeSlot::kProgressBarForeground));
                break;
            case kElementList:
                fill(element.foregroundColour, slot(ThemeSlot::kActiveText));
                [[fallthrough]];
            case kElementRichEditText:
            case kElementTaskLB:
            case kElementHtmlEditText:
            case kElementPlainEditText:
                fill(element.backgroundColour, slot(ThemeSlot::kListBackground));
                break;
            default:
                break;
        }
    }

    // A label takes the page's foreground where the theme has a foreground for fields, and the colour of
    // active text where it has none.
    void applyToField(DialogFieldDesc& field, const DialogDesc& page) const {
        const bool hasFieldForeground = slot(ThemeSlot::kFieldForeground) != -1;
        fill(field.labelColour, hasFieldForeground ? page.foregroundColour : slot(ThemeSlot::kActiveText));
        fill(field.background, orElse(slot(ThemeSlot::kFieldBackground), page.backgroundColour));
        fill(field.inputBackground, slot(ThemeSlot::kInputBoxBackground));
        fill(field.inputForeground, slot(ThemeSlot::kInputBoxText));
        fill(field.buttonBackground, slot(ThemeSlot::kButtonsBackground));
        fill(field.buttonForeground, slot(ThemeSlot::kButtonsText));
        fill(field.invalidBackground, slot(ThemeSlot::kInvalidFieldBackground));
        fill(field.invalidForeground, slot(ThemeSlot::kInvalidFieldForeground));
    }

    void applyToButton(DialogButtonDesc& button) const {
        const bool isLink = (button.flags & kButtonLinkStyle) != 0;
        fill(button.foregroundColour, slot(isLink ? ThemeSlot::kLinkButtons : ThemeSlot::kButtonsText));
        fill(button.backgroundColour, slot(ThemeSlot::kButtonsBackground));
        fill(button.activeForeground, orElse(slot(ThemeSlot::kActiveButtonsText), button.foregroundColour));
        fill(button.activeBackground,
             orElse(slot(ThemeSlot::kActiveButtonsBackground), button.backgroundColour));
    }

    const ColourTheme& theme_;
};

}  // namespace

void readColourTheme(const PXML& description, Expressions& expressions, DebugLog debugLog,
                     ColourTheme& outTheme) {
    const std::int32_t section = vocabulary::findElement(description, "ColourTheme");
    if (section < 0) {
        return;
    }
    outTheme.setThemed(true);
    for (const std::int32_t node : description.childrenOf(section)) {
        if (!expressions.holds(vocabulary::attributeOf(description, node, "Condition"))) {
            continue;
        }
        if (description.getName(node) == kCustomGroup.view()) {
            readGroup(description, node, debugLog, outTheme);
        } else {
            readSlot(description, node, debugLog, outTheme);
        }
    }
}

void applyColourTheme(ColourTheme& theme, DialogModel& dialogs) {
    if (theme.isThemed()) {
        for (DialogDesc& dialog : dialogs.getDialogs()) {
            PageTheming(theme).apply(dialog);
        }
        return;
    }
    for (const DialogDesc& dialog : dialogs.getDialogs()) {
        if (dialog.backgroundColour != -1 || dialog.foregroundColour != -1) {
            theme.setThemed(true);
            return;
        }
    }
}
