#include "platforms/linux/InformationCheck.hpp"

#include <algorithm>
#include <array>
#include <map>

#include "platforms/linux/network/EndpointCheck.hpp"
#include "platforms/linux/network/HttpRules.hpp"

namespace mireth::platform {

namespace {

namespace keys = information_keys;

constexpr std::array<std::string_view, 6> knownKeys{keys::srEndpointUrl, keys::keldaEndpointUrl,
                                                    keys::vexVersion,    keys::allowInsecureHttp,
                                                    keys::deviceIdiom,   keys::appVersion};

std::string line(std::string_view key, const std::string& why) {
    return std::string(key) + " in the information dictionary: " + why;
}

std::string otherwise(const std::string& what, const std::string& value) {
    return "must be " + what + ", not \"" + printable(value) + "\"";
}

}  // namespace

std::optional<UserInterfaceIdiom> idiomNamed(std::string_view name) {
    static const std::map<std::string_view, UserInterfaceIdiom> idioms{
        {"phone", UserInterfaceIdiom::phone},
        {"pad", UserInterfaceIdiom::pad},
        {"desktop", UserInterfaceIdiom::desktop},
        {"television", UserInterfaceIdiom::television}};
    const auto found = idioms.find(name);
    return found == idioms.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> warningsAbout(const JsonFileInformationDictionary& information,
                                       bool allowInsecureHttp) {
    std::vector<std::string> lines;
    for (const std::string_view key : knownKeys) {
        if (std::ranges::find(information.keysOfOtherValues(), key) !=
            information.keysOfOtherValues().end()) {
            lines.push_back(line(key, "is no text and counts as absent"));
        }
    }
    const auto insecure = information.string(keys::allowInsecureHttp);
    for (const std::string_view key : {keys::srEndpointUrl, keys::keldaEndpointUrl}) {
        const auto url = information.string(key);
        const auto why =
            url ? complaintAboutEndpoint(*url, allowInsecureHttp || insecure == "true") : std::string();
        if (!why.empty()) {
            lines.push_back(line(key, why));
        }
    }
    const auto idiom = information.string(keys::deviceIdiom);
    if (idiom && !idiomNamed(*idiom)) {
        lines.push_back(
            line(keys::deviceIdiom, otherwise(R"("phone", "pad", "desktop" or "television")", *idiom)));
    }
    if (insecure && insecure != "true" && insecure != "false") {
        lines.push_back(line(keys::allowInsecureHttp, otherwise(R"("true" or "false")", *insecure)));
    }
    return lines;
}

}  // namespace mireth::platform
