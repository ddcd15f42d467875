// What the endpoints work with, passed around as one value.
#pragma once

#include "Config.hpp"
#include "Environment.hpp"
#include "Store.hpp"

namespace mireth::receiver {

/// All three outlive whoever holds this.
struct Services {
    const Config& config;
    Store& store;
    const Environment& environment;
};

}  // namespace mireth::receiver
