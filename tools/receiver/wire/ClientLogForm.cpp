// The two orders in which a log form can stand.
#include "wire/ClientLogForm.hpp"

#include <algorithm>

#include "base/PercentDecoding.hpp"
#include "base/PrintableText.hpp"

namespace mireth::receiver {
namespace {

struct RawForm {
    std::string_view message;
    std::string_view levelName;
};

std::expected<RawForm, std::string> split(std::string_view body) {
    constexpr std::string_view message = "Message=";
    constexpr std::string_view level = "LevelName=";
    constexpr std::string_view thenMessage = "&Message=";
    constexpr std::string_view thenLevel = "&LevelName=";
    if (body.starts_with(message)) {
        const auto cut = body.rfind(thenLevel);
        if (cut == std::string_view::npos) {
            return std::unexpected("the form lacks \"LevelName\"");
        }
        return RawForm{.message = body.substr(message.size(), cut - message.size()),
                       .levelName = body.substr(cut + thenLevel.size())};
    }
    if (body.starts_with(level)) {
        const auto cut = body.find(thenMessage);
        if (cut == std::string_view::npos) {
            return std::unexpected("the form lacks \"Message\"");
        }
        return RawForm{.message = body.substr(cut + thenMessage.size()),
                       .levelName = body.substr(level.size(), cut - level.size())};
    }
    return std::unexpected("the form begins with neither \"Message=\" nor \"LevelName=\"");
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::expected<ClientLogForm, std::string> readClientLogForm(std::string_view body) {
    const auto raw = split(body);
    if (!raw) {
        return std::unexpected(raw.error());
    }
    const auto message = percentDecoded(raw->message);
    if (!message) {
        return std::unexpected("\"Message\" has " + message.error());
    }
    if (!isUtf8(*message)) {
        return std::unexpected("\"Message\" is not UTF-8");
    }
    const bool plainLevel = !raw->levelName.empty() && raw->levelName.size() <= 32 &&
                            std::ranges::all_of(raw->levelName, isLetter);
    if (!plainLevel) {
        return std::unexpected("\"LevelName\" is not a plain word");
    }
    return ClientLogForm{.message = *message, .levelName = std::string(raw->levelName)};
}

}  // namespace mireth::receiver
