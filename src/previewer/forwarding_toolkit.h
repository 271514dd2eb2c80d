#pragma once

#include "ui/gui/toolkit/toolkit.h"

// Hands everything to another toolkit, which is borrowed.
class ForwardingToolkit : public Toolkit {
public:
    explicit ForwardingToolkit(Toolkit& toolkit) : toolkit_(toolkit) {}

    bool open(TextReceiver& outReason) override { return toolkit_.open(outReason); }
    void run(ToolkitEvents& events) override { toolkit_.run(events); }
    void processEvents() override { toolkit_.processEvents(); }
    void wake() override { toolkit_.wake(); }
    Extent measureText(std::string_view text) override { return toolkit_.measureText(text); }
    double pixelDensity() override { return toolkit_.pixelDensity(); }
    std::int32_t pageColour() override { return toolkit_.pageColour(); }
    bool showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                     MessageSign sign) override {
        return toolkit_.showMessage(text, caption, buttons, sign);
    }
    bool chooseDirectory(std::string_view title, std::string_view start, TextReceiver& chosen) override {
        return toolkit_.chooseDirectory(title, start, chosen);
    }
    bool makeFrame(const FrameSpec& spec) override { return toolkit_.makeFrame(spec); }
    void setIcon(const Picture& icon) override { toolkit_.setIcon(icon); }
    void showFrame() override { toolkit_.showFrame(); }
    void closeFrame() override { toolkit_.closeFrame(); }
    void setClientSize(Extent size) override { toolkit_.setClientSize(size); }
    Extent clientSize() override { return toolkit_.clientSize(); }
    void setPageColours(std::int32_t foreground, std::int32_t background) override {
        toolkit_.setPageColours(foreground, background);
    }
    bool isActive() override { return toolkit_.isActive(); }
    void setAccessKeys(std::span<const AccessKey> keys) override { toolkit_.setAccessKeys(keys); }
    void showAccessKeys(bool show) override { toolkit_.showAccessKeys(show); }
    void setDefaultButton(ControlId button) override { toolkit_.setDefaultButton(button); }
    void beginChanges() override { toolkit_.beginChanges(); }
    void endChanges() override { toolkit_.endChanges(); }
    void redraw() override { toolkit_.redraw(); }
    bool drawPage(PictureReceiver& outPicture) override { return toolkit_.drawPage(outPicture); }
    void announce(std::string_view text) override { toolkit_.announce(text); }
    ControlId add(const ControlSpec& spec) override { return toolkit_.add(spec); }
    void remove(ControlId control) override { toolkit_.remove(control); }
    void setPlace(ControlId control, Place place) override { toolkit_.setPlace(control, place); }
    Place place(ControlId control) override { return toolkit_.place(control); }
    Extent wordsSize(ControlId control) override { return toolkit_.wordsSize(control); }
    void show(ControlId control, bool show) override { toolkit_.show(control, show); }
    bool isShown(ControlId control) override { return toolkit_.isShown(control); }
    void enable(ControlId control, bool enable) override { toolkit_.enable(control, enable); }
    bool isEnabled(ControlId control) override { return toolkit_.isEnabled(control); }
    void setFocus(ControlId control) override { toolkit_.setFocus(control); }
    ControlId focused() override { return toolkit_.focused(); }
    void setColours(ControlId control, const ControlColours& colours) override {
        toolkit_.setColours(control, colours);
    }
    void setToolTip(ControlId control, std::string_view text) override { toolkit_.setToolTip(control, text); }
    void setLabel(ControlId control, ControlId label) override { toolkit_.setLabel(control, label); }
    void setText(ControlId control, std::string_view text) override { toolkit_.setText(control, text); }
    void text(ControlId control, TextReceiver& outText) override { toolkit_.text(control, outText); }
    void appendText(ControlId control, std::string_view text) override { toolkit_.appendText(control, text); }
    void setChecked(ControlId control, bool checked) override { toolkit_.setChecked(control, checked); }
    bool isChecked(ControlId control) override { return toolkit_.isChecked(control); }
    void setProgress(ControlId control, int percent) override { toolkit_.setProgress(control, percent); }
    void setPicture(ControlId control, const Picture& picture) override {
        toolkit_.setPicture(control, picture);
    }
    void setHtml(ControlId control, std::string_view page) override { toolkit_.setHtml(control, page); }
    void setRichText(ControlId control, std::span<const RichTextCommand> commands) override {
        toolkit_.setRichText(control, commands);
    }
    void setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) override {
        toolkit_.setTaskIcons(control, size, icons);
    }
    void addTask(ControlId control, const TaskRow& row) override { toolkit_.addTask(control, row); }
    void setTask(ControlId control, int index, const TaskRow& row) override {
        toolkit_.setTask(control, index, row);
    }

protected:
    Toolkit& inner() { return toolkit_; }

private:
    Toolkit& toolkit_;
};
