// Every scenario is played or refused with the place of its fault.
#include <string>

#include "Property.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScenarioError.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    try {
        const auto scenario = phone::parseScenario(std::string(fuzz::textOf(data, size)), "/nowhere");
        fuzz::require(!scenario.screens.empty(), "a scenario has a screen");
    } catch (const phone::ScenarioError& error) {
        fuzz::require(*error.what() != '\0', "a refusal says why");
    }
    return 0;
}
