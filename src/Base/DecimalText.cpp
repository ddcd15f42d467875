#include "Base/DecimalText.hpp"

#include <charconv>
#include <iterator>

namespace mireth {

std::string decimalText(double value) {
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    std::string text(std::begin(digits), end);
    if (text.find_first_not_of("-0123456789") == std::string::npos) {
        text += ".0";
    }
    return text;
}

}  // namespace mireth
