// Files of the machine's owner, and texts on their way to the log.
#include <algorithm>

#include "Property.hpp"
#include "platforms/linux/network/HttpRules.hpp"
#include "platforms/linux/system/KeyValueFile.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    const std::string_view text = fuzz::textOf(data, size);
    for (const auto& [key, value] : platform::parseKeyValueFile(text)) {
        fuzz::require(key.find('=') == std::string::npos, "a key ends at the first equals sign");
    }
    const std::string line = platform::printable(text);
    fuzz::require(std::ranges::none_of(line, [](unsigned char c) { return c < ' ' || c == 0x7F; }),
                  "a line of the log has no control characters");
    return 0;
}
