// mireth-phone: a scripted phone in a terminal.
#include <cstdio>
#include <exception>

#include "phone/MirethLibrary.hpp"
#include "phone/Options.hpp"
#include "phone/Phone.hpp"
#include "phone/ScenarioError.hpp"

namespace {

/// Exceptions end here, as one line.
int runGuarded(const mireth::phone::Options& options) {
    using namespace mireth::phone;
    try {
        return runPhone(options, makeMirethLibrary);
    } catch (const ScenarioError& error) {
        std::fprintf(stderr, "mireth-phone: %s: %s\n", options.scenario.c_str(), error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mireth-phone: %s\n", error.what());
    }
    return 1;
}

}  // namespace

int main(int count, char** arguments) {
    using namespace mireth::phone;
    const auto read = readOptions(count, arguments);
    if (const auto* early = std::get_if<EarlyEnd>(&read)) {
        std::fputs(early->text.c_str(), early->status == 0 ? stdout : stderr);
        return early->status;
    }
    return runGuarded(std::get<Options>(read));
}
