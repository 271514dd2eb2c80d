#pragma once

#include <string>
#include <string_view>
#include <vector>

// What someone who reads a long document page by page wants to see after a page.
enum class PageTurn { kNext, kBack, kEnd };

// Answers the questions of the console front end. Texts are UTF-8 and only borrowed.
class InputProvider {
public:
    virtual ~InputProvider() = default;

    // 1 when answers can be given.
    virtual int init() = 0;
    // Asks for a text of at most `size` - 1 bytes and a terminator. An empty answer means `value`, or
    // `fallback` where that is empty. `echo` false hides what is typed. 1 unless interrupted.
    virtual int askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                        bool echo) = 0;
    // As askText with echo, for a directory. A person may type it the way people do: from the current
    // directory, or from the home directory as `~`.
    virtual int askDirectory(const char* question, char* buffer, int size, const char* value,
                             const char* fallback) {
        return askText(question, buffer, size, value, fallback, true);
    }
    // 0 for `first`, 1 for `second`, -1 when interrupted.
    virtual int askChoice(const char* question, int defaultIndex, std::string_view first,
                          std::string_view second, bool caseSensitive, bool prefixMatch) = 0;
    // The 0-based choice, -1 when interrupted. `enabled` has an entry for each item.
    virtual int askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                        const std::vector<bool>& enabled) = 0;
    // Shows a message and waits until the user has read it.
    virtual void tell(const char* text) = 0;
    // Waits until the user wants to continue.
    virtual void pause(std::string_view text) = 0;
    // The same between two pages of a document.
    virtual PageTurn turnPage(std::string_view text) {
        pause(text);
        return PageTurn::kNext;
    }
    // The closing message, once. Always returns 1.
    virtual int finish(bool failed) = 0;
    // Ends a pending question and all later ones. The only operation that another thread may call.
    virtual void abort() = 0;
};
