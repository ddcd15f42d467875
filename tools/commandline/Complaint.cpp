// The parser's words, but where they need knowledge of the parser.
#include "commandline/Complaint.hpp"

#include <algorithm>

namespace mireth::commandline {

namespace {

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

std::string onOneLine(std::string text) {
    std::ranges::replace_if(text, isControl, '?');
    return text;
}

/// The parser says "--speed: 1 required N missing".
std::string complaintOfNoValue(const std::string& text, std::size_t end) {
    constexpr std::string_view missing = " missing";
    constexpr std::string_view required = ": 1 required ";
    std::string type = text.substr(end + required.size());
    type.resize(type.size() - std::min(type.size(), missing.size()));
    return text.substr(0, end) + ": needs a value, " + type;
}

}  // namespace

std::string complaintOfStrangers(const CLI::App& app) {
    const auto strangers = app.remaining(true);
    std::string text = strangers.size() > 1 ? "The following arguments were not expected:"
                                            : "The following argument was not expected:";
    for (const auto& stranger : strangers) {
        text += " " + stranger;
    }
    return strangers.empty() ? "" : onOneLine(text);
}

std::string complaintOf(const CLI::App& app, const CLI::ParseError& error) {
    // Who misspelt an option lacks what stood after it, too.
    if (error.get_name() == "RequiredError" || error.get_name() == "ExtrasError") {
        if (auto complaint = complaintOfStrangers(app); !complaint.empty()) {
            return complaint;
        }
    }
    const std::string text = error.what();
    if (error.get_name() == "ArgumentMismatch") {
        if (const auto end = text.find(": 1 required "); end != std::string::npos) {
            return onOneLine(complaintOfNoValue(text, end));
        }
        if (const auto end = text.find(" was given a disallowed"); end != std::string::npos) {
            return "--" + onOneLine(text.substr(0, end)) + ": takes no value";
        }
    }
    return onOneLine(text);
}

CLI::Validator notEmpty() {
    return {[](const std::string& text) { return text.empty() ? std::string("must not be empty") : ""; }, ""};
}

std::string inQuotes(std::string_view value) {
    constexpr std::size_t longest = 200;
    return "\"" + onOneLine(std::string(value.substr(0, longest))) + "\"";
}

}  // namespace mireth::commandline
