// Runs the suites of the graphics contract against every answer to it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "MirethVex/Platform/Graphics.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/Canvas.hpp"

namespace mireth::platform {

/// Makes the graphics under test.
struct GraphicsAnswer {
    const char* name;
    std::shared_ptr<Graphics> (*make)();
};

class GraphicsContract : public testing::TestWithParam<GraphicsAnswer> {
  protected:
    /// A transparent image of 20 x 20 pixels, drawn on by `actions`, which leave the context valid.
    Image draw(const std::function<void(GraphicsContext&)>& actions, Size size = {20, 20}) {
        return graphics->makeImageRenderer(size, {})->image([&](GraphicsContext& context) {
            actions(context);
            EXPECT_TRUE(context.isValid());
        });
    }

    const std::shared_ptr<Graphics> graphics = GetParam().make();
};

inline const GraphicsAnswer cairoAnswer{
    "Cairo", []() -> std::shared_ptr<Graphics> { return std::make_shared<CairoGraphics>(); }};

/// Registers a suite once for each answer.
#define MIRETH_RUN_GRAPHICS_SUITE(suite)                                \
    INSTANTIATE_TEST_SUITE_P(Real, suite, testing::Values(cairoAnswer), \
                             [](const auto& answer) { return std::string(answer.param.name); })

}  // namespace mireth::platform
