#pragma once

#include "base/ref_counter.h"

// The shared bytes of a CharString.
class CharStringBuf : public RefCounter<char> {
public:
    using RefCounter<char>::RefCounter;

protected:
    ~CharStringBuf() override = default;
};

// A shared, unchangeable, zero-terminated text. Copies share one buffer. One thread only.
class CharString {
public:
    CharString() = default;
    // Copies `text`; null and "" give the empty state.
    explicit CharString(const char* text);
    CharString(const CharString& other);
    CharString(CharString&& other) noexcept;
    CharString& operator=(const CharString& other);
    CharString& operator=(CharString&& other) noexcept;
    ~CharString();

    // Null in the empty state; otherwise valid as long as any copy lives.
    const char* c_str() const;
    bool isEmpty() const;

private:
    CharStringBuf* buffer_ = nullptr;
};
