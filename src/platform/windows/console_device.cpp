#include "platform/console_device.h"

#include "platform/clock.h"
#include "platform/windows/console_input.h"
#include "platform/windows/console_output.h"

namespace platform {

namespace {

class WindowsConsole : public ConsoleDevice {
public:
    WindowsConsole()
        : input_(GetStdHandle(STD_INPUT_HANDLE)),
          output_(GetStdHandle(STD_OUTPUT_HANDLE)),
          error_(GetStdHandle(STD_ERROR_HANDLE)) {}
    ~WindowsConsole() override { output_.flush(); }

    bool flush() override { return output_.flush(); }

    ReadStatus readLine(std::string& outLine, std::size_t maxBytes) override {
        output_.flush();
        return input_.readLine(outLine, maxBytes);
    }
    ReadStatus readKey(int& outKey) override {
        output_.flush();
        return input_.readKey(outKey);
    }
    void beginKeys() override { input_.beginKeys(); }
    void endKeys() override { input_.endKeys(); }
    void interruptInput() override { input_.interrupt(); }

    bool windowSize(int& outColumns, int& outRows) override {
        outColumns = 0;
        outRows = 0;
        return output_.windowSize(outColumns, outRows);
    }
    bool isInputTerminal() override { return input_.isTerminal(); }
    bool isOutputTerminal() override { return output_.isTerminal(); }
    bool ownsWindow() override {
        STARTUPINFOW start{};
        GetStartupInfoW(&start);
        DWORD programs[2];
        // Whoever starts programs by a click says how their window is shown; a console of a service or a test
        // has just one program as well.
        return isOutputTerminal() && (start.dwFlags & STARTF_USESHOWWINDOW) != 0 &&
               GetConsoleProcessList(programs, 2) == 1;
    }
    void sleepMilliseconds(std::uint32_t milliseconds) override { platform::sleepMilliseconds(milliseconds); }

protected:
    bool put(std::string_view bytes) override { return output_.write(bytes); }
    bool putError(std::string_view bytes) override { return error_.write(bytes) && error_.flush(); }

private:
    ConsoleInput input_;
    ConsoleOutput output_;
    ConsoleOutput error_;
};

}  // namespace

ConsoleDevice& systemConsole() {
    static WindowsConsole console;
    return console;
}

}  // namespace platform
