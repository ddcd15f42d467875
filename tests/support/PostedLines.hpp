// The log lines that reached the service, as it reads them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace mireth::test {

inline std::string percentDecoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

/// The text of a posted line, out of the body of its form. Its own "&" and "=" are not escaped, so it ends
/// where the next field begins.
inline std::string postedText(const std::string& body) {
    const std::string field = "Message=";
    return percentDecoded(body.substr(field.size(), body.rfind("&LevelName=") - field.size()));
}

/// Each as its tag and its message, such as "SIGNAL went wrong".
inline std::vector<std::string> postedLines(const std::vector<std::string>& bodies) {
    std::vector<std::string> lines;
    for (const auto& body : bodies) {
        const auto line = nlohmann::ordered_json::parse(postedText(body));
        lines.push_back(line["logTag"].get<std::string>() + " " + line["logMessage"].get<std::string>());
    }
    return lines;
}

}  // namespace mireth::test
