#include "ui/gui/main_frame.h"

#include <array>
#include <string>
#include <utility>

#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "contracts/installer_ui.h"
#include "description/colour_theme.h"
#include "ui/field_values.h"
#include "ui/gui/font_scale.h"
#include "ui/gui/image_picture.h"

namespace {

constexpr std::uint32_t kRefreshAll = kRefreshElements | kRefreshFields | kRefreshTasks | kRefreshButtons;
constexpr std::size_t kTitleCapacity = 400;
constexpr std::uint64_t kIdleRefreshMilliseconds = 1001;

bool isWorking(std::int32_t state) {
    return state == kUiInstallationRunning || state == kUiBusy;
}

}  // namespace

// Counts the calls of the session that are not over yet.
class MainFrame::EngineCall {
public:
    explicit EngineCall(MainFrame& frame) : frame_(frame) { ++frame_.engineCalls_; }
    ~EngineCall() { --frame_.engineCalls_; }
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;

private:
    MainFrame& frame_;
};

MainFrame::MainFrame(const Surroundings& surroundings, double fontScale)
    : surroundings_(surroundings),
      fontScale_(fontScale),
      isThemed_(surroundings.engine.isThemed()),
      textHeight_(measureSampleText(surroundings.toolkit).height),
      tasks_(*this, surroundings.pictures),
      main_(*this, surroundings.pictures, tasks_),
      sub_(*this, surroundings.pictures, tasks_),
      kept_(*this, surroundings.pictures, tasks_),
      keptNow_(*this, surroundings.pictures, tasks_) {}

bool MainFrame::open() {
    std::array<char, kTitleCapacity> title{};
    engine().getTitle(title.data(), static_cast<int>(title.size()));
    const std::string shown = OUtils::visibleText(title.data());
    const DialogDesc* first = engine().getDialog(engine().getCurrentDialog(), -1);
    FrameSpec spec;
    spec.title = shown;
    spec.isThemed = isThemed_;
    spec.clientSize = first == nullptr ? Extent{} : sizeOf(*first);
    if (isThemed_) {
        spec.background = engine().getThemeColour(static_cast<int>(ThemeSlot::kDialogBackground));
        spec.foreground = engine().getThemeColour(static_cast<int>(ThemeSlot::kActiveText));
    }
    if (!toolkit().makeFrame(spec)) {
        return false;
    }
    setIcon();
    {
        const EngineCall call(*this);
        goesOnByItself_ = engine().goToDialog(engine().getCurrentDialog(), &surroundings_.ui) > 0;
        if (first != nullptr && first->has(kDialogHasSubDialogs)) {
            goesOnByItself_ = engine().goToSubdialog(engine().getCurrentDialog(), 0, &surroundings_.ui) > 0;
        }
    }
    show();
    if (isFirstShown_) {
        goOn();
    }
    return true;
}

void MainFrame::show() {
    if (!isShown_) {
        isShown_ = true;
        toolkit().showFrame();
    }
}

Extent MainFrame::sizeOf(const DialogDesc& dialog) const {
    const PageGeometry scale(fontScale_, {});
    return {scale.scaled(dialog.width), scale.scaled(dialog.height)};
}

PageGeometry MainFrame::geometry() {
    const Extent size = toolkit().clientSize();
    if (size != Extent{}) {
        lastGoodSize_ = size;
    }
    return {fontScale_, lastGoodSize_};
}

void MainFrame::showDialog(int dialog) {
    const DialogDesc* page = engine().getDialog(dialog, -1);
    if (page == nullptr) {
        return;
    }
    lastGoodSize_ = sizeOf(*page);
    toolkit().setClientSize(lastGoodSize_);
    build(main_, dialog, -1);
}

// The buttons of the dialog may depend on which of its pages is shown.
void MainFrame::showSubDialog(int dialog, int sub) {
    main_.buttons().refresh();
    build(sub_, dialog, sub);
}

void MainFrame::build(GuiPage& page, int dialog, int sub) {
    lastFocus_ = 0;
    defaultButton_ = 0;
    toolkit().beginChanges();
    setPageColours(dialog, sub);
    page.build(dialog, sub);
    updateAccessKeys();
    toolkit().endChanges();
    validate();
    updateNavigationState();
}

// A sub-dialog without colours of its own has those of its dialog.
void MainFrame::setPageColours(int dialog, int sub) {
    std::int32_t background = -1;
    std::int32_t foreground = -1;
    engine().getDialogColours(dialog, -1, background, foreground);
    if (sub != -1) {
        std::int32_t ownBackground = -1;
        std::int32_t ownForeground = -1;
        engine().getDialogColours(dialog, sub, ownBackground, ownForeground);
        background = ownBackground == -1 ? background : ownBackground;
        foreground = ownForeground == -1 ? foreground : ownForeground;
    }
    toolkit().setPageColours(foreground, background);
}

// An invalid field never takes the mark off a session that is at work.
void MainFrame::validate() {
    const bool isMainValid = main_.validateFields();
    const bool isSubValid = sub_.validateFields();
    const std::int32_t state = engine().getUiState();
    if (isWorking(state)) {
        return;
    }
    if (!isMainValid || !isSubValid) {
        engine().setUiState(kUiFieldInvalid);
    } else if (state == kUiFieldInvalid) {
        engine().setUiState(kUiReady);
    }
}

void MainFrame::updateNavigationState() {
    const ControlId focused = toolkit().focused();
    const bool isHeld = engine().checkDialogCondition(&surroundings_.ui) == 0;
    const std::int32_t state = engine().getUiState();
    if (isHeld && !isWorking(state)) {
        engine().setUiState(kUiConditionUnmet);
        enableDisableable(false);
    } else if (state == kUiReady) {
        enableDisableable(true);
    } else if (state != kUiNoChange && state != -1) {
        enableDisableable(false);
    }
    leaveUnusable(focused);
}

// Keys that go to a control that can't be used go nowhere, not even those of the frame.
void MainFrame::leaveUnusable(ControlId focused) {
    if (focused != 0 && !(toolkit().isShown(focused) && toolkit().isEnabled(focused))) {
        focusFirst();
    }
}

void MainFrame::enableDisableable(bool enable) {
    main_.buttons().enableDisableable(enable);
    sub_.buttons().enableDisableable(enable);
}

void MainFrame::refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) {
    if (!isWorking(engine().getUiState())) {
        engine().setUiState(kUiReady);
    }
    const ControlId focused = toolkit().focused();
    toolkit().beginChanges();
    {
        const EngineCall call(*this);
        engine().runTriggers(&surroundings_.ui, kTriggerOnDynamic, dialog, sub);
    }
    if ((flags & kRefreshFields) != 0) {
        sub == -1 ? leaveDialog() : leaveSubDialog(sub);
        main_.placeFields();
        sub_.placeFields();
        refreshFields();
    }
    validate();
    if ((flags & kRefreshTasks) != 0) {
        engine().refreshTaskStates(&surroundings_.ui);
    }
    if ((flags & kRefreshElements) != 0) {
        refreshElements();
    }
    if ((flags & kRefreshButtons) != 0) {
        main_.buttons().refresh();
        sub_.buttons().refresh();
    }
    updateNavigationState();
    toolkit().endChanges();
    if (setFocus) {
        focusFirst();
    } else {
        leaveUnusable(focused);
    }
}

void MainFrame::refreshCurrent(std::uint32_t flags, bool setFocus) {
    refreshDialog(engine().getCurrentDialog(), engine().getCurrentSubDialog(), flags, setFocus);
}

void MainFrame::refreshFields() {
    main_.loadFields();
    sub_.loadFields();
}

void MainFrame::refreshElements() {
    main_.elements().refresh();
    sub_.elements().refresh();
}

void MainFrame::showPage(int /*dialog*/, int sub, bool show) {
    GuiPage& page = sub == -1 ? main_ : sub_;
    toolkit().beginChanges();
    page.elements().showAll(show);
    toolkit().endChanges();
    focusFirst();
    toolkit().redraw();
    if (show) {
        toolkit().announce(OUtils::visibleText(page.elements().firstText()));
    }
}

void MainFrame::prepareDialog() {
    main_.clear();
    turnKeptElements();
}

void MainFrame::prepareSubDialog() {
    sub_.clear();
    turnKeptElements();
}

// An element survives one change of the page; a page that names it again keeps it over the next one.
void MainFrame::turnKeptElements() {
    kept_.clear();
    kept_.keepAllOf(keptNow_);
}

void MainFrame::destroySubPage() {
    sub_.clear();
}

void MainFrame::leaveDialog() {
    main_.storeFields();
}

void MainFrame::leaveSubDialog(int sub) {
    sub < 0 ? main_.storeFields() : sub_.storeFields();
}

void MainFrame::keepElement(std::string_view name) {
    for (PageElements* elements : {&sub_.elements(), &kept_}) {
        if (auto element = elements->take(name)) {
            keptNow_.keep(std::move(*element));
            return;
        }
    }
}

void MainFrame::setTaskState(std::string_view name, std::string_view text, std::int32_t state) {
    tasks_.setState(name, text, state);
}

ControlId MainFrame::find(std::string_view name, std::initializer_list<DialogElementKind> kinds) const {
    for (const PageElements* elements : {&main_.elements(), &sub_.elements(), &kept_, &keptNow_}) {
        if (const ControlId control = elements->find(name, kinds)) {
            return control;
        }
    }
    return 0;
}

void MainFrame::setIcon() {
    const Image icon = surroundings_.pictures.applicationIcon();
    if (!icon.isEmpty()) {
        toolkit().setIcon(pictureOf(icon));
    }
}

void MainFrame::updateAccessKeys() {
    if (!isThemed_) {
        return;
    }
    std::vector<AccessKey> keys;
    main_.buttons().addAccessKeys(keys);
    sub_.buttons().addAccessKeys(keys);
    toolkit().setAccessKeys(keys);
}

// The button that Return presses is found even when nothing gets the focus.
void MainFrame::focusFirst() {
    ControlId focus = 0;
    for (const bool defaultOnly : {true, false}) {
        for (const GuiPage* page : {&main_, &sub_}) {
            focus = focus == 0 ? page->buttons().firstToFocus(defaultOnly, defaultButton_) : focus;
        }
    }
    toolkit().setDefaultButton(defaultButton_);
    if (toolkit().isShown(lastFocus_) && toolkit().isEnabled(lastFocus_)) {
        focus = lastFocus_;
    }
    // A page that the user turned counts, even if another window came to the front meanwhile.
    if (isActive_ || isAtWork()) {
        toolkit().setFocus(focus);
    }
}

void MainFrame::onFirstShow() {
    isFirstShown_ = true;
    focusFirst();
    goOn();
}

void MainFrame::goOn() {
    if (std::exchange(goesOnByItself_, false)) {
        shift(1);
    }
}

// The system may be busy for long before it is idle, as with the layout of a long list.
void MainFrame::shift(int count) {
    {
        const EngineCall call(*this);
        engine().shift(&surroundings_.ui, count);
    }
    closeIfOver();
}

bool MainFrame::closeIfOver() {
    const bool isOver = !isAtWork() && (engine().isCancelled() || engine().isFinished());
    if (isOver) {
        toolkit().closeFrame();
    }
    return isOver;
}

void MainFrame::onActivate(bool isActive) {
    isActive_ = isActive;
    if (isActive && toolkit().focused() == 0) {
        focusFirst();
    }
}

void MainFrame::onIdle() {
    if (isAtWork() || closeIfOver()) {
        return;
    }
    const std::uint64_t now = surroundings_.clock();
    if (now - lastIdleRefresh_ >= kIdleRefreshMilliseconds) {
        lastIdleRefresh_ = now;
        refreshCurrent(kRefreshElements, false);
    }
}

// A session that is at work comes back to its loop first, and the idle tick closes the frame there.
bool MainFrame::onClose() {
    engine().cancel(&surroundings_.ui);
    return engine().isCancelled() && !isAtWork();
}

void MainFrame::onPress(ControlId control) {
    if (pressButton(control) || isAtWork()) {
        return;
    }
    for (GuiPage* page : {&main_, &sub_}) {
        if (DialogField* field = page->fieldOf(control)) {
            field->onActivate(control);
            return;
        }
    }
}

bool MainFrame::pressButton(ControlId button) {
    const DialogButtonDesc* description = main_.buttons().find(button);
    description = description == nullptr ? sub_.buttons().find(button) : description;
    if (description == nullptr || !toolkit().isEnabled(button)) {
        return description != nullptr;
    }
    const bool wasAtWork = isAtWork();
    const bool hasShift = (description->flags & kButtonHasShift) != 0;
    if ((description->flags & kButtonHasAction) != 0) {
        {
            const EngineCall call(*this);
            engine().performAction(&surroundings_.ui, description->action.c_str());
        }
        if (!hasShift && !wasAtWork) {
            lastFocus_ = button;
            refreshCurrent(kRefreshAll, true);
        }
    }
    if (hasShift) {
        shift(description->shift);
    }
    return true;
}

bool MainFrame::onEnter(bool boxUsesEnter) {
    if (boxUsesEnter || defaultButton_ == 0) {
        return false;
    }
    pressButton(defaultButton_);
    return true;
}

void MainFrame::onAltKey() {
    showsAccessKeys_ = !showsAccessKeys_;
    toolkit().showAccessKeys(showsAccessKeys_);
}

void MainFrame::onText(ControlId control) {
    for (GuiPage* page : {&main_, &sub_}) {
        DialogField* field = isAtWork() ? nullptr : page->fieldOf(control);
        if (field != nullptr) {
            field->onText();
            return;
        }
    }
}

void MainFrame::choiceChanged(const DialogField& field, ControlId control) {
    if (const std::uint32_t flags = flagsOf(field)) {
        lastFocus_ = control;
        refreshCurrent(flags, true);
    }
}

// The caret stays where it is, so nothing gets the focus, and without anything that depends on the text the
// buttons alone follow its validity.
// The caret stays where it is, so nothing gets the focus. Without anything that depends on the text, only the
// buttons follow its validity.
void MainFrame::textChanged(const DialogField& field) {
    validate();
    if (const std::uint32_t flags = flagsOf(field)) {
        refreshCurrent(flags, false);
    } else {
        updateNavigationState();
    }
}

// What depends on the field's variable, or on the one that says whether the field is valid.
std::uint32_t MainFrame::flagsOf(const DialogField& field) {
    const DialogFieldDesc& description = field.description();
    std::uint32_t flags = 0;
    for (const char* variable : {description.variable.c_str(), description.validationVariable.c_str()}) {
        if (*variable != '\0') {
            flags |= engine().getRefreshFlags(variable, engine().getCurrentDialog(),
                                              engine().getCurrentSubDialog());
        }
    }
    return flags;
}
