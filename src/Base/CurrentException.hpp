// What was thrown, in words.
#pragma once

#include <exception>
#include <string>

namespace mireth {

/// What the exception that is being handled says of itself. Called from a catch block only.
inline std::string describeCurrentException() {
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "An error of an unknown kind.";
    }
}

}  // namespace mireth
