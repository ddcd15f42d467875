// The library on random scenarios: what it records, answers and complains of is what the rules say.
#include <gtest/gtest.h>

#include <filesystem>

#include "model/ModelCheck.hpp"

namespace mireth::model {

namespace {

/// Parts that may run beside each other.
constexpr std::uint64_t parts = 10;

class ModelCheck : public testing::TestWithParam<std::uint64_t> {};

TEST_P(ModelCheck, TheLibraryKeepsToTheRules) {
    constexpr std::uint64_t count = MIRETH_MODEL_SCENARIOS / parts;
    const auto difference = findDifference(GetParam() * count, count);
    EXPECT_FALSE(difference) << report(*difference, std::filesystem::current_path());
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelCheck, testing::Range(std::uint64_t{0}, parts));

}  // namespace

}  // namespace mireth::model
