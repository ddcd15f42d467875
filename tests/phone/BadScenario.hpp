// Scenarios that are unusable, by name. Used by the tests of what is said of them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>

#include "phone/Scenario.hpp"
#include "phone/ScenarioError.hpp"
#include "phone/ScreenSet.hpp"

namespace mireth::phone {

struct BadScenario {
    const char* name;
    std::string text;
    std::string complaint;
};

inline void PrintTo(const BadScenario& bad, std::ostream* out) {
    *out << bad.name;
}

inline std::string nameOf(const ::testing::TestParamInfo<BadScenario>& test) {
    return test.param.name;
}

/// A scenario with one screen of `views`.
inline std::string withViews(const std::string& views) {
    return R"({"screens":[{"name":"Home","views":[)" + views + R"(]}],"steps":[]})";
}

inline std::string withSteps(const std::string& steps) {
    return R"({"screens":[{"name":"Home","views":[{"id":"box","frame":[0,0,9,9]}]}],"steps":[)" + steps +
           "]}";
}

inline std::string with(const std::string& member) {
    return "{" + member + R"(,"screens":[{"name":"Home"}],"steps":[]})";
}

inline std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t index = 0; index < times; ++index) {
        all += text;
    }
    return all;
}

/// The complaint says where and why, on one line.
inline void expectComplaint(const BadScenario& bad) {
    try {
        const Scenario scenario = parseScenario(bad.text, "/nowhere");
        const ScreenSet screens(scenario);
        FAIL() << "was taken for a good scenario";
    } catch (const ScenarioError& error) {
        const std::string line = error.what();
        EXPECT_THAT(line, ::testing::HasSubstr(bad.complaint));
        EXPECT_EQ(line.find('\n'), std::string::npos);
        EXPECT_LT(line.size(), 600U);
    }
}

}  // namespace mireth::phone
