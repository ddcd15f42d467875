// The rules of every Graphics, and what an implementation gives to be held to them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "MirethVex/Platform/Graphics.hpp"
#include "tests/support/Canvas.hpp"

namespace mireth::platform {

/// Makes the graphics under test.
struct GraphicsAnswer {
    /// Of the tests, too: letters and digits.
    std::string name;
    std::function<std::shared_ptr<Graphics>()> make;

    friend std::ostream& operator<<(std::ostream& out, const GraphicsAnswer& answer) {
        return out << answer.name;
    }
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

class GraphicsShapes : public GraphicsContract {};
class GraphicsImages : public GraphicsContract {};
class GraphicsGroups : public GraphicsContract {};
class ImageRendererImages : public GraphicsContract {};

inline constexpr auto nameOfGraphicsAnswer = [](const auto& info) { return info.param.name; };

}  // namespace mireth::platform
