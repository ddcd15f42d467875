// What the tests of the HTTP client look for in its results.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::test {

/// The error's words; empty, and a failure, when there was an answer.
inline std::string errorOf(const platform::HttpResult& result) {
    EXPECT_FALSE(result.has_value());
    return result ? std::string() : result.error().description;
}

inline bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

}  // namespace mireth::test
