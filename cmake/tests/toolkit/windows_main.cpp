#include <cstdio>

#include "window.h"

int wmain() {
    const int failures = showWindow();
    std::puts(failures == 0 ? "the window works" : "the window does not work");
    return failures;
}
