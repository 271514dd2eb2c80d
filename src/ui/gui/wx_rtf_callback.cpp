#include "ui/gui/wx_rtf_callback.h"

#include <algorithm>
#include <cstddef>

namespace {

using Kind = RichTextCommand::Kind;

Kind kindOf(RichTextStyle style) {
    switch (style) {
        case RichTextStyle::kBold:
            return Kind::kBeginBold;
        case RichTextStyle::kItalic:
            return Kind::kBeginItalic;
        case RichTextStyle::kUnderline:
            break;
    }
    return Kind::kBeginUnderline;
}

}  // namespace

wxRTFCallback::wxRTFCallback(RichTextCommands& commands, std::int32_t defaultColour)
    : commands_(commands), defaultColour_(defaultColour) {
    beginDefaultColour();
}

void wxRTFCallback::beginDefaultColour() {
    if (defaultColour_ != -1) {
        commands_.begin(Kind::kBeginTextColour, defaultColour_);
    }
}

void wxRTFCallback::flush() {
    commands_.write(buffer_);
    buffer_.clear();
}

// The reader writes a line feed for its plain text where it calls paragraph as well; a control that got both
// would show an empty line after each paragraph.
void wxRTFCallback::addChar(std::string_view text) {
    if (text != "\n") {
        buffer_ += text;
    }
}

void wxRTFCallback::begin(OpenStyle style) {
    commands_.begin(style.kind, style.value);
    open_.push_back(style);
}

// A control ends its styles in the reverse order only, so those above are ended as well and opened again.
void wxRTFCallback::end(Kind kind) {
    const auto found = std::find_if(open_.rbegin(), open_.rend(),
                                    [kind](const OpenStyle& style) { return style.kind == kind; });
    if (found == open_.rend()) {
        return;
    }
    const std::vector<OpenStyle> above(found.base(), open_.end());
    open_.erase(std::prev(found.base()), open_.end());
    for (std::size_t ended = 0; ended <= above.size(); ++ended) {
        commands_.endStyle();
    }
    for (const OpenStyle& style : above) {
        begin(style);
    }
}

void wxRTFCallback::endAll() {
    for (; !open_.empty(); open_.pop_back()) {
        commands_.endStyle();
    }
}

void wxRTFCallback::paragraph() {
    flush();
    endAll();
    commands_.addParagraph();
}

void wxRTFCallback::setStyle(RichTextStyle kind, bool on) {
    flush();
    // A style that is set twice is ended once.
    end(kindOf(kind));
    if (on) {
        begin({kindOf(kind), 0});
    }
}

void wxRTFCallback::setFontSize(int size) {
    flush();
    commands_.setPointSize(std::max(size, 0));
}

void wxRTFCallback::setAlignment(RichTextAlignment alignment) {
    flush();
    end(Kind::kBeginAlignment);
    if (alignment != RichTextAlignment::kLeft) {
        begin({Kind::kBeginAlignment, static_cast<int>(alignment)});
    }
}

void wxRTFCallback::resetStyles() {
    flush();
    endAll();
    if (defaultColour_ != -1) {
        commands_.endStyle();
    }
    beginDefaultColour();
}

void wxRTFCallback::setLeftIndent(int tenthsOfMillimetre) {
    flush();
    end(Kind::kBeginLeftIndent);
    begin({Kind::kBeginLeftIndent, std::clamp(tenthsOfMillimetre, 0, kWidestIndent)});
}

void wxRTFCallback::endDocument() {
    flush();
}
