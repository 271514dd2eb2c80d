#pragma once

#include <string_view>

#include "platform/platform.h"

// Shows a page in the program that the system's registry names for web pages, or, where it names none, in the
// one that the desktop has for the URL. Doesn't wait for it. 0 or the system's error. An empty URL is an
// error.
int openInDefaultBrowser(const platform::Platform& platform, std::string_view url);
