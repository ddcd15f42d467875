// The text form of numbers in lines and in compared texts.
#pragma once

#include <string>

namespace mireth {

/// The shortest digits that read back as the same number; a whole number keeps ".0". The same in every
/// locale.
std::string decimalText(double value);

}  // namespace mireth
