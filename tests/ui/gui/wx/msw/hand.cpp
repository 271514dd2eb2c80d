#include "ui/gui/wx/hand.h"

#include <cstdlib>

#include "platform/windows/user_input.h"

namespace {

// Gives its input to the system, so that nothing depends on the time that a display and its window manager
// take.
class InputHand : public Hand {
public:
    void pressKey(const std::string& name) override { isRefused_ = !user_input::pressKey(name); }
    void type(const std::string& text) override { isRefused_ = !user_input::typeText(text); }
    void movePointer(const std::string& title, int x, int y) override {
        isRefused_ = !user_input::movePointerInto(title, 1, 1) || !user_input::movePointerInto(title, x, y);
    }
    void click() override { isRefused_ = !user_input::click(); }
    bool isDone() override { return user_input::isTaken(); }
    std::string problem() override { return isRefused_ ? "the system refused the input" : std::string(); }

private:
    bool isRefused_ = false;
};

}  // namespace

// Without a display there are no windows to act in.
std::unique_ptr<Hand> Hand::find() {
    return std::getenv("TANDREL_HAND") == nullptr ? nullptr : std::make_unique<InputHand>();
}
