#pragma once

#include <string>
#include <vector>

// Where the console front end's questions are answered. Texts are UTF-8 and only borrowed.
class InputProvider {
public:
    virtual ~InputProvider() = default;

    // 1 when answers can be given.
    virtual int init() = 0;
    // Asks for a text of at most `size` - 1 bytes, terminated. An empty answer means `value`, or `fallback`
    // where that is empty. `echo` false hides what is typed. 1 unless interrupted.
    virtual int askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                        bool echo) = 0;
    // 0 for `first`, 1 for `second`, -1 when interrupted.
    virtual int askChoice(const char* question, int defaultIndex, const char* first, const char* second,
                          bool caseSensitive, bool prefixMatch) = 0;
    // The 0-based choice, -1 when interrupted. `enabled` has an entry for each item.
    virtual int askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                        const std::vector<bool>& enabled) = 0;
    // Shows a message and waits until it is read.
    virtual void tell(const char* text) = 0;
    // Waits for the user to go on.
    virtual void pause(const char* text) = 0;
    // The closing word, once. Result 1.
    virtual int finish(bool failed) = 0;
    // Ends a pending question and all later ones. The only operation that another thread may call.
    virtual void abort() = 0;
};
