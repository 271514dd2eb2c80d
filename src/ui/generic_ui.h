#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "contracts/input_provider.h"
#include "contracts/install_exchange_info.h"
#include "contracts/installer_ui.h"
#include "platform/console_device.h"

class AnswersFile;
class WizardWords;

// What the front ends share: the provider of answers, the flags of the run and the link to the engine.
class GenericUI : public InstallerUI {
public:
    // The engine is borrowed; it is set before `run` and outlives the front end's use.
    void setEngine(InstallExchangeInfo* engine) { engine_ = engine; }

    int beginProgress() override { return -1; }
    int endProgress() override { return -1; }
    int getIgnoreErrors() override { return ignoreErrors_ ? 1 : 0; }
    void showHelp() override {}
    // An answers file that can't be used doesn't end the run: its message is printed and the user is asked.
    // `outAutomated` is only ever set to true. -1 when the provider refuses.
    int createInputProvider(const char* mode, bool& outAutomated) override;
    void setFatalMessage(const char*, const char*) override {}
    void showFatalMessage() override {}

protected:
    // `terminal` takes what unattended runs print, `answers` reads the file of such a run; both outlive this
    // object.
    GenericUI(platform::ConsoleDevice& terminal, AnswersFile& answers, bool uninstall, bool ignoreErrors)
        : terminal_(terminal), answers_(answers), uninstall_(uninstall), ignoreErrors_(ignoreErrors) {}

    // The provider that asks a person, in the front end's own way.
    virtual std::unique_ptr<InputProvider> makeUser(bool uninstall) = 0;

    // Both may be null, and may be asked for on any thread.
    InputProvider* input() const { return input_; }
    InstallExchangeInfo* engine() const { return engine_; }
    platform::ConsoleDevice& terminal() const { return terminal_; }
    // Those of the session, once there is one.
    const WizardWords& words() const;
    bool isUninstall() const { return uninstall_; }

private:
    int takeProvider(std::unique_ptr<InputProvider> provider);
    int takeAutomated(std::string_view configPath, bool uninstall, bool& outAutomated);

    platform::ConsoleDevice& terminal_;
    AnswersFile& answers_;
    const bool uninstall_;
    const bool ignoreErrors_;
    std::unique_ptr<InputProvider> ownedInput_;
    // The thread of the console control handler reads these two.
    std::atomic<InputProvider*> input_{nullptr};
    std::atomic<InstallExchangeInfo*> engine_{nullptr};
};
