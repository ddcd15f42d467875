// A graphics context that writes down what it is asked to draw.
#pragma once

#include <string>
#include <vector>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::tests {

/// One word for each call, in order; saving and restoring are left out. No answer to the contract, on
/// purpose: drawing nothing, it shows whether there was anything to draw.
class RecordingContext final : public platform::GraphicsContext {
  public:
    std::vector<std::string> calls;
    int openStates = 0;

    bool isValid() const override { return true; }
    void saveState() override { ++openStates; }
    void restoreState() override { --openStates; }
    void concatenate(const AffineTransform&) override {}
    void clipToRoundedRect(const Rect&, const platform::CornerRadii&) override { calls.emplace_back("clip"); }
    void fillRoundedRect(const Rect&, const platform::CornerRadii&, const Color&) override {
        calls.emplace_back("fill");
    }
    void strokeInsideRoundedRect(const Rect&, const platform::CornerRadii&, double, const Color&) override {
        calls.emplace_back("border");
    }
    void strokeLine(Point, Point, double, const Color&) override { calls.emplace_back("line"); }
    void fillRectWithPattern(const Rect&, const platform::Image&) override { calls.emplace_back("pattern"); }
    void drawImage(const platform::Image&, const Rect&, const Rect&, platform::Interpolation) override {
        calls.emplace_back("image");
    }
    void drawShadow(const Rect&, const platform::CornerRadii&, const Color&, double) override {
        calls.emplace_back("shadow");
    }
    void clearRect(const Rect&) override { calls.emplace_back("clear"); }
    void beginGroup() override { calls.emplace_back("group"); }
    void endGroup(double) override { calls.emplace_back("end"); }
    void endGroupMasked(double, const std::function<void(platform::GraphicsContext&)>& drawMask) override {
        calls.emplace_back("mask");
        drawMask(*this);
        calls.emplace_back("end");
    }
};

}  // namespace mireth::tests
