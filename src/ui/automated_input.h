#pragma once

#include "base/fixed_text.h"
#include "contracts/input_provider.h"
#include "platform/console_device.h"

// Answers each question with the value that the question carries. The values themselves come from the
// variables, into which an answers file was loaded; this class only vets such a file.
class Automated : public InputProvider {
public:
    // `configPath` is the answers file, cut to 1,559 bytes; null or empty when there is none. `terminal`
    // outlives the object.
    Automated(platform::ConsoleDevice& terminal, const char* configPath, bool uninstall);

    // 1 without a file, or with one that can be read; otherwise prints why not and gives 0.
    int init() override;
    // Gives `value`, also when it is empty; always 1.
    int askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                bool echo) override;
    // Both give `defaultIndex` as it is, -1 included.
    int askChoice(const char* question, int defaultIndex, const char* first, const char* second,
                  bool caseSensitive, bool prefixMatch) override;
    int askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                const std::vector<bool>& enabled) override;
    void tell(const char* text) override;
    void pause(const char* text) override;
    // Prints how the run ended, at every call.
    int finish(bool failed) override;
    void abort() override;

private:
    void print(const std::string& text);

    platform::ConsoleDevice& terminal_;
    const PathText configPath_;
    const bool uninstall_;
};
