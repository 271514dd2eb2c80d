#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/windows/wide_text.h"

// An anonymous pipe with room for a megabyte, so that one thread can fill and empty it.
class Pipe {
public:
    Pipe() {
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        EXPECT_NE(CreatePipe(&readEnd, &writeEnd, nullptr, 1 << 20), 0);
        reader_ = std::make_unique<platform::Handle>(readEnd);
        writer_ = std::make_unique<platform::Handle>(writeEnd);
    }

    HANDLE reader() const { return reader_->get(); }
    HANDLE writer() const { return writer_->get(); }
    void closeReader() { reader_.reset(); }
    void closeWriter() { writer_.reset(); }

    void put(std::string_view bytes) const {
        DWORD done = 0;
        ASSERT_NE(WriteFile(writer(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr), 0);
        ASSERT_EQ(done, bytes.size());
    }

    std::size_t available() const {
        DWORD bytes = 0;
        EXPECT_NE(PeekNamedPipe(reader(), nullptr, 0, nullptr, &bytes, nullptr), 0);
        return bytes;
    }

    // All that was written; ends the writing.
    std::string take() {
        closeWriter();
        std::string all;
        char buffer[4096];
        DWORD done = 0;
        while (ReadFile(reader(), buffer, sizeof(buffer), &done, nullptr) != 0 && done > 0) {
            all.append(buffer, done);
        }
        return all;
    }

private:
    std::unique_ptr<platform::Handle> reader_;
    std::unique_ptr<platform::Handle> writer_;
};
