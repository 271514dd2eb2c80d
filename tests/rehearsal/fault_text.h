#pragma once

#include <string>

#include "base/errors.h"

// What an operation that fails says; empty when it doesn't fail.
template <typename Operation>
std::string faultOf(Operation operation) {
    try {
        operation();
    } catch (const GenericError& error) {
        return error.what();
    }
    return "";
}
