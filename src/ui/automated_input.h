#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "contracts/input_provider.h"
#include "description/wizard_words.h"
#include "platform/console_device.h"

class AnswersFile;

// Answers each question with the value that comes with the question. The values themselves come from the
// variables, into which the session loads an answers file; this class only checks that file.
class Automated : public InputProvider {
public:
    // `configPath` is the path of the answers file, cut to 1,559 bytes; empty when there is none. `terminal`
    // and `answers` outlive this object.
    Automated(platform::ConsoleDevice& terminal, AnswersFile& answers, std::string_view configPath,
              bool uninstall);

    // Those of the session instead of the default ones.
    void takeWordsFrom(WordSource words) { words_ = std::move(words); }

    // 1 without a file, or with one that can be read; otherwise prints why not and gives 0.
    int init() override;
    // Gives `value`, also when it is empty, and never `fallback`; always 1.
    int askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                bool echo) override;
    // Both give `defaultIndex` as it is: -1, for a variable without a usable value, is stored as such.
    int askChoice(const char* question, int defaultIndex, std::string_view first, std::string_view second,
                  bool caseSensitive, bool prefixMatch) override;
    int askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                const std::vector<bool>& enabled) override;
    void tell(const char* text) override;
    void pause(std::string_view text) override;
    // Prints how the run ended, at every call.
    int finish(bool failed) override;
    void abort() override;

private:
    void print(std::string_view text);

    platform::ConsoleDevice& terminal_;
    AnswersFile& answers_;
    const std::string configPath_;
    const bool uninstall_;
    WordSource words_ = defaultWords;
};
