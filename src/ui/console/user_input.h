#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>

#include "contracts/input_provider.h"
#include "description/wizard_words.h"
#include "platform/console_device.h"
#include "platform/environment.h"

// Why a question to the user can't be answered any more.
enum class DialogueLoss {
    kInputEnded,    // the input is closed or at its end
    kOutputFailed,  // nobody sees the question
};

// Answers from the keyboard, or from whatever standard input is connected to. What is longer than a question
// reads is cut off the answer, and never answers the next question.
class User : public InputProvider {
public:
    using LossHandler = std::function<void(DialogueLoss)>;

    // `onLoss` is called, on the thread of the question, at each question that finds the dialogue lost; the
    // question then counts as interrupted. `terminal` outlives the object.
    User(platform::ConsoleDevice& terminal, bool uninstall, LossHandler onLoss);

    // A directory that is typed at a terminal may be a relative one, or begin with `~`. `environment`
    // outlives the object.
    void understandDirectories(platform::Environment& environment) { environment_ = &environment; }
    // Those of the session instead of the default ones.
    void takeWordsFrom(WordSource words) { words_ = std::move(words); }

    int init() override { return 1; }
    int askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                bool echo) override;
    int askDirectory(const char* question, char* buffer, int size, const char* value,
                     const char* fallback) override;
    int askChoice(const char* question, int defaultIndex, std::string_view first, std::string_view second,
                  bool caseSensitive, bool prefixMatch) override;
    // A list in which nothing is enabled has no answer: -1.
    int askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                const std::vector<bool>& enabled) override;
    void tell(const char* text) override;
    void pause(std::string_view text) override;
    // At a terminal one key turns the page.
    PageTurn turnPage(std::string_view text) override;
    int finish(bool failed) override;
    void abort() override;

private:
    using Completion = platform::LineCompletion;

    bool ask(std::string_view prompt, std::string& outLine, std::size_t maxBytes,
             Completion completion = Completion::kNone);
    bool takeRead(platform::ReadStatus status);
    bool readLine(std::string& outLine, std::size_t maxBytes);
    bool isAtTerminal();
    std::string keysBehind(std::string_view text);
    bool askHidden(const std::string& prompt, std::string& outText, std::size_t maxKeys);
    bool readHidden(std::string& outText, std::size_t maxKeys);
    bool canAsk();
    void dropRestOfLine(const std::string& line, std::size_t maxBytes);

    platform::ConsoleDevice& terminal_;
    const bool uninstall_;
    const LossHandler onLoss_;
    WordSource words_ = defaultWords;
    platform::Environment* environment_ = nullptr;
    bool finished_ = false;
    std::atomic<bool> interrupted_{false};
};
