#include "support/p_multi_console.h"

void PMultiConsole::add(PConsole* console) {
    consoles_.append(console);
}

int PMultiConsole::open(std::string_view path, int mode) {
    for (PConsole* console : consoles_) {
        console->open(path, mode);
    }
    return -1;
}

int PMultiConsole::close() {
    for (PConsole* console : consoles_) {
        console->close();
    }
    return -1;
}

int PMultiConsole::write(const char* text, std::int32_t length) {
    int status = 0;
    for (PConsole* console : consoles_) {
        status = console->write(text, length);
    }
    return status;
}
