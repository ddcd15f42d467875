// Draws layers for tests, as pixels and as calls.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/Canvas.hpp"
#include "tests/support/RecordingContext.hpp"

namespace mireth::tests {

/// A transparent image of `side` x `side` pixels with the layer drawn into it.
inline platform::Image draw(const platform::Layer& layer, double side = 20) {
    return platform::CairoGraphics()
        .makeImageRenderer({side, side}, {})
        ->image([&](platform::GraphicsContext& context) { layer.render(context); });
}

/// What the layer asks of a context, in order.
inline std::vector<std::string> callsOf(const platform::Layer& layer) {
    RecordingContext context;
    layer.render(context);
    EXPECT_EQ(context.openStates, 0);
    return context.calls;
}

/// A layer of 20 x 20 points without anything of its own.
inline std::shared_ptr<platform::Layer> makeRoot() {
    return makeBox({0, 0, 20, 20}, 0);
}

}  // namespace mireth::tests
