// What the endpoints work with, passed around as one value.
#pragma once

#include "Config.hpp"
#include "Environment.hpp"
#include "Metrics.hpp"
#include "Store.hpp"
#include "VideoExporter.hpp"

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
