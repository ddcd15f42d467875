#include "attach/InformationWarnings.hpp"

#include <utility>

#include "platforms/linux/InformationCheck.hpp"
#include "platforms/linux/network/EndpointCheck.hpp"

namespace mireth::attach {

namespace {

platform::JsonFileInformationDictionary read(const std::filesystem::path& file) {
    using platform::JsonFileInformationDictionary;
    return file.empty() ? JsonFileInformationDictionary(platform::TextMap())
                        : JsonFileInformationDictionary(file);
}

}  // namespace

std::vector<std::string> informationWarnings(const Options& options) {
    const auto information = read(options.information);
    auto lines = platform::warningsAbout(information, false);
    if (!information.error().empty()) {
        lines.push_back(information.error());
    }
    const bool insecure = information.string(platform::information_keys::allowInsecureHttp) == "true";
    const std::pair<const char*, std::string> endpoints[] = {{"--sr-endpoint", options.srEndpoint},
                                                             {"--kelda-endpoint", options.keldaEndpoint}};
    for (const auto& [option, url] : endpoints) {
        const auto why = url.empty() ? std::string() : platform::complaintAboutEndpoint(url, insecure);
        if (!why.empty()) {
            lines.push_back(option + (": " + why));
        }
    }
    return lines;
}

}  // namespace mireth::attach
