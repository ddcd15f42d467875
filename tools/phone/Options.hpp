// The command line of mireth-phone.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"

namespace mireth::phone {

struct Options {
    std::filesystem::path scenario;

    // Whom to talk to.
    std::optional<std::string> srEndpoint;
    std::optional<std::string> keldaEndpoint;
    std::optional<std::filesystem::path> caFile;

    // Where files go.
    std::optional<std::filesystem::path> caches;
    std::optional<std::filesystem::path> frames;

    // How it runs.
    /// Seconds of the script in a real second; nothing: virtual time.
    std::optional<double> pace = 1.0;
    std::uint64_t seed = 0;

    // What it prints.
    std::set<LogTag> allowedTags;
    bool plain = false;
};

/// What to print instead of running, and the status to end with: help, or a complaint of one line.
struct EarlyEnd {
    std::string text;
    int status = 0;
};

std::variant<Options, EarlyEnd> readOptions(int count, const char* const* arguments);

}  // namespace mireth::phone
