// Compares the library with the model by hand: any seeds, or one scenario file.
//
//   model-check FIRST COUNT    the scenarios of COUNT seeds from FIRST on
//   model-check FILE           a scenario file
#include <charconv>
#include <cstdio>
#include <string_view>
#include <vector>

#include "model/ModelCheck.hpp"
#include "phone/JsonFile.hpp"

namespace {

using namespace mireth;

constexpr int unusable = 2;

std::optional<std::uint64_t> toNumber(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

int conclude(const std::optional<model::Difference>& difference) {
    if (!difference) {
        std::puts("the library keeps to the rules");
        return 0;
    }
    std::fputs(model::report(*difference, ".").c_str(), stdout);
    return 1;
}

int run(const std::vector<std::string_view>& arguments) {
    if (arguments.size() == 1) {
        const std::filesystem::path file(arguments[0]);
        const auto text = phone::readWholeFile(file, phone::maximumScenarioBytes, true);
        return conclude(model::compare(phone::parseJson(text), file.parent_path()));
    }
    const auto first = arguments.size() == 2 ? toNumber(arguments[0]) : std::nullopt;
    const auto count = arguments.size() == 2 ? toNumber(arguments[1]) : std::nullopt;
    if (!first || !count) {
        std::fputs("usage: model-check FIRST COUNT\n       model-check FILE\n", stderr);
        return unusable;
    }
    return conclude(model::findDifference(*first, *count));
}

}  // namespace

int main(int count, char** arguments) {
    try {
        return run({arguments + 1, arguments + count});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "model-check: %s\n", error.what());
        return unusable;
    }
}
