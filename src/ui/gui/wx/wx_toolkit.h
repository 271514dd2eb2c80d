#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/wx/installer_app.h"

// The border itself: what fails on this side of it ends here, and each answer is one that it names.
class WxToolkit : public Toolkit {
public:
    bool open(TextReceiver& outReason) override;
    void run(ToolkitEvents& events) override;
    void processEvents() override;
    void wake() override;

    Extent measureText(std::string_view text) override;
    double pixelDensity() override;
    std::int32_t pageColour() override;

    bool showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                     MessageSign sign) override;
    bool chooseDirectory(std::string_view title, std::string_view start, TextReceiver& chosen) override;

    bool makeFrame(const FrameSpec& spec) override;
    void setIcon(const Picture& icon) override;
    void showFrame() override;
    void closeFrame() override;
    void setClientSize(Extent size) override;
    Extent clientSize() override;
    void setPageColours(std::int32_t foreground, std::int32_t background) override;
    bool isActive() override;
    void setAccessKeys(std::span<const AccessKey> keys) override;
    void showAccessKeys(bool show) override;
    void setDefaultButton(ControlId button) override;
    void beginChanges() override;
    void endChanges() override;
    void redraw() override;
    bool drawPage(PictureReceiver& outPicture) override;
    void announce(std::string_view text) override;

    ControlId add(const ControlSpec& spec) override;
    void remove(ControlId control) override;
    void setPlace(ControlId control, Place place) override;
    Place place(ControlId control) override;
    Extent wordsSize(ControlId control) override;
    void show(ControlId control, bool show) override;
    bool isShown(ControlId control) override;
    void enable(ControlId control, bool enable) override;
    bool isEnabled(ControlId control) override;
    void setFocus(ControlId control) override;
    ControlId focused() override;
    void setColours(ControlId control, const ControlColours& colours) override;
    void setToolTip(ControlId control, std::string_view text) override;
    void setLabel(ControlId control, ControlId label) override;

    void setText(ControlId control, std::string_view text) override;
    void text(ControlId control, TextReceiver& outText) override;
    void appendText(ControlId control, std::string_view text) override;
    void setChecked(ControlId control, bool checked) override;
    bool isChecked(ControlId control) override;
    void setProgress(ControlId control, int percent) override;
    void setPicture(ControlId control, const Picture& picture) override;
    void setHtml(ControlId control, std::string_view page) override;
    void setRichText(ControlId control, std::span<const RichTextCommand> commands) override;
    void setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) override;
    void addTask(ControlId control, const TaskRow& row) override;
    void setTask(ControlId control, int index, const TaskRow& row) override;

private:
    bool start(std::string& outReason);
    bool works() const;
    // What `work` throws ends here.
    template <typename Work>
    void use(Work work);
    // These three do nothing and give a value of `Result` where the display has gone or the call fails. The
    // latter two also where there is no frame, or no control of that id.
    template <typename Action>
    auto guarded(Action action) -> decltype(action());
    template <typename Action>
    auto withFrame(Action action);
    template <typename Action>
    auto withControl(ControlId id, Action action);

    // Lives as long as the process: wxWidgets can't be started a second time.
    InstallerApp* app_ = nullptr;
    std::optional<bool> opened_;
    std::string reason_;
};
