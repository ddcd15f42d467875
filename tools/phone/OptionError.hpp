// What makes an option unusable that reads well. Main prints it as one line and ends with status 1.
#pragma once

#include <stdexcept>
#include <string>

namespace mireth::phone {

/// `option` is its name, such as "--caches".
class OptionError : public std::runtime_error {
  public:
    OptionError(const std::string& option, const std::string& why)
        : std::runtime_error(option + ": " + why) {}
};

}  // namespace mireth::phone
