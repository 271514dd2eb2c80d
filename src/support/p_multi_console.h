#pragma once

#include "base/p_list.h"
#include "support/p_console.h"

// Passes everything on to several consoles in the order in which they were added. It doesn't own them; they
// must outlive their use here. An empty list does nothing.
class PMultiConsole : public PConsole {
public:
    void add(PConsole* console);

    int open(std::string_view path, int mode) override;         // -1 whatever the members say
    int close() override;                                       // -1 whatever the members say
    int write(const char* text, std::int32_t length) override;  // the last member's result; 0 without one

private:
    PList<PConsole*> consoles_;
};
