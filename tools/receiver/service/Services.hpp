// What the endpoints work with, passed around as one value.
#pragma once

#include "base/Environment.hpp"
#include "service/Metrics.hpp"
#include "settings/Config.hpp"
#include "store/Store.hpp"
#include "video/VideoExporter.hpp"

namespace mireth::receiver {

/// All of them outlive whoever holds this.
struct Services {
    const Config& config;
    Store& store;
    const Environment& environment;
    Metrics& metrics;
    VideoExporter& exporter;
};

}  // namespace mireth::receiver
