#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "ui/gui/gui_page.h"
#include "ui/gui/page_host.h"
#include "ui/gui/page_pictures.h"
#include "ui/gui/task_list.h"

class InstallerUI;

// The one window of a session: the pages in it, and what the user's actions mean. What the session shows
// comes in through InstallerUI, what the user does through ToolkitEvents; both end here. While the session is
// at work inside one of these calls, the user's further actions reach the buttons alone, and the session
// decides about those.
class MainFrame : private PageHost {
public:
    struct Surroundings {
        Toolkit& toolkit;
        InstallExchangeInfo& engine;
        InstallerUI& ui;
        PagePictures& pictures;
        // Milliseconds since some moment.
        std::function<std::uint64_t()> clock;
    };

    // All surroundings outlive this object. Coordinates of the description are multiplied by `fontScale`.
    MainFrame(const Surroundings& surroundings, double fontScale);

    // Makes the frame and enters the first page. False when there is no frame.
    bool open();
    // The frame is shown at the end of `open`; earlier for work of the first page that takes its time.
    void show();

    // These are the operations of InstallerUI.
    void showDialog(int dialog);
    void showSubDialog(int dialog, int sub);
    void updateNavigationState();
    void refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus);
    void refreshFields();
    void refreshElements();
    void showPage(int dialog, int sub, bool show);
    void prepareDialog();
    void prepareSubDialog();
    void destroySubPage();
    void leaveDialog();
    void leaveSubDialog(int sub);
    void clearTaskList() { tasks_.clear(); }
    void keepElement(std::string_view name);
    void enableDisableable(bool enable);
    void setTaskState(std::string_view name, std::string_view text, std::int32_t state);

    // The control of the element with this name, whichever page it is on; 0 when there is none.
    ControlId find(std::string_view name, std::initializer_list<DialogElementKind> kinds) const;

    // These are the events.
    void onFirstShow();
    void onActivate(bool isActive);
    void onIdle();
    bool onClose();
    void onPress(ControlId control);
    bool onEnter(bool boxUsesEnter);
    void onAltKey();
    void onText(ControlId control);

private:
    class EngineCall;

    Toolkit& toolkit() override { return surroundings_.toolkit; }
    InstallExchangeInfo& engine() override { return surroundings_.engine; }
    PageGeometry geometry() override;
    bool isThemed() override { return isThemed_; }
    int textHeight() override { return textHeight_; }
    void choiceChanged(const DialogField& field, ControlId control) override;
    void textChanged(const DialogField& field) override;

    Extent sizeOf(const DialogDesc& dialog) const;
    void turnKeptElements();
    void setIcon();
    void setPageColours(int dialog, int sub);
    void build(GuiPage& page, int dialog, int sub);
    void validate();
    std::uint32_t flagsOf(const DialogField& field);
    void refreshCurrent(std::uint32_t flags, bool setFocus);
    void focusFirst();
    void leaveUnusable(ControlId focused);
    void goOn();
    void shift(int count);
    // True: the frame is closed, because the session has come to its end.
    bool closeIfOver();
    void updateAccessKeys();
    bool pressButton(ControlId button);
    bool isAtWork() const { return engineCalls_ > 0; }

    Surroundings surroundings_;
    const double fontScale_;
    const bool isThemed_;
    const int textHeight_;
    TaskList tasks_;
    GuiPage main_;
    GuiPage sub_;
    PageElements kept_;     // over the last change of the page
    PageElements keptNow_;  // over the change that has begun
    Extent lastGoodSize_;
    ControlId defaultButton_ = 0;  // that Return presses
    ControlId lastFocus_ = 0;      // what gets the focus back after a refresh
    bool showsAccessKeys_ = false;
    bool isActive_ = false;
    bool isShown_ = false;
    bool isFirstShown_ = false;
    bool goesOnByItself_ = false;
    int engineCalls_ = 0;
    std::uint64_t lastIdleRefresh_ = 0;
};
