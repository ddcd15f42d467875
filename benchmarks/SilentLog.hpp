// A logger that writes nowhere.
#pragma once

#include <memory>
#include <string_view>

#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth::benchmarks {

struct SilentLog {
    struct Sink final : LoggerType {
        void info(std::string_view) override {}
        void error(std::string_view) override {}
    };
    MirethLog log{[](std::string_view, std::string_view) { return std::make_unique<Sink>(); }};
};

}  // namespace mireth::benchmarks
