// What must not be seen is not in the videos that arrive. The screens are grey but for the views to be
// masked, each of which bears a saturated colour: one coloured pixel is a leak.
#include <array>

#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"

namespace mireth::endtoend {

namespace {

using platform::Image;

constexpr std::array<Rgb, 12> canaries{{{255, 0, 0},
                                        {255, 128, 0},
                                        {255, 255, 0},
                                        {128, 255, 0},
                                        {0, 255, 0},
                                        {0, 255, 128},
                                        {0, 255, 255},
                                        {0, 128, 255},
                                        {0, 0, 255},
                                        {128, 0, 255},
                                        {255, 0, 255},
                                        {255, 0, 128}}};

/// What a grey's channels may differ by after encoding and decoding.
constexpr int greyTolerance = 10;
constexpr Rgb maskColor{188, 188, 188};

bool isColored(Rgb color) {
    return saturation(color) > greyTolerance;
}

/// The pixel of a 250 × 500 frame that shows this point of a 390 × 844 window.
Rgb atPoint(const Image& frame, double x, double y) {
    constexpr double scale = 500.0 / 844;
    constexpr double left = (250 - 390 * scale) / 2;
    return pixelAt(frame, static_cast<std::size_t>(left + x * scale), static_cast<std::size_t>(y * scale));
}

class EndToEndMasking : public EndToEnd {
  protected:
    /// All frames of a session, two a second.
    std::vector<Image> record(const Json& scenario) {
        const auto receiver = startReceiver();
        const auto run = play(scenario, receiver->origin());
        EXPECT_EQ(run.ended.status, 0) << run.ended.errors;
        const Json session = receiver->show(run.sessionIds().at(0));
        std::vector<Image> frames;
        for (const Json& chunk : session.at("chunks")) {
            for (auto& frame : decodeFrames(chunk.at("path"))) {
                frames.push_back(std::move(frame));
            }
        }
        return frames;
    }

    /// The frame that was taken at this time.
    static const Image& at(const std::vector<Image>& frames, double seconds) {
        return frames.at(static_cast<std::size_t>(seconds * 2) - 1);
    }

    const Json scenario_ = testScenario("canaries");
};

TEST_F(EndToEndMasking, NotOnePixelOfACanaryArrives) {
    const auto frames = record(scenario_);
    ASSERT_EQ(frames.size(), 24U);
    for (std::size_t index = 0; index < frames.size(); ++index) {
        const auto leak = findPixel(frames[index], isColored);
        EXPECT_FALSE(leak.has_value()) << "frame " << index << ": " << *leak;
    }
}

TEST_F(EndToEndMasking, WithoutItEveryCanaryIsSeen) {
    auto unmasked = scenario_;
    unmasked["configuration"] = {{"disableMasking", true}};
    const auto frames = record(unmasked);
    ASSERT_EQ(frames.size(), 24U);
    for (const Rgb canary : canaries) {
        EXPECT_TRUE(findPixel(frames[0], [canary](Rgb color) { return distance(color, canary) < 40; }))
            << canary;
    }
    for (std::size_t index = 0; index < frames.size(); ++index) {
        EXPECT_TRUE(findPixel(frames[index], isColored)) << "frame " << index;
    }
    // Where things move, fade, and are nested.
    EXPECT_TRUE(isColored(atPoint(at(frames, 1.5), 20 + 70, 425 + 60))) << "moving";
    EXPECT_TRUE(isColored(atPoint(at(frames, 2.0), 20 + 140, 425 + 90))) << "moving on";
    EXPECT_TRUE(isColored(atPoint(at(frames, 3.5), 20 + 270, 425 + 30))) << "fading";
    EXPECT_TRUE(isColored(atPoint(at(frames, 5.0), 20 + 20, 425 + 100))) << "growing";
    EXPECT_TRUE(isColored(atPoint(at(frames, 6.0), 20 + 10 - 10 + 20 + 105, 560 + 10 - 10 + 20 + 50)))
        << "late";
    EXPECT_TRUE(isColored(atPoint(at(frames, 1.0), 215, 350))) << "out of its masked parent";
}

TEST_F(EndToEndMasking, BlocksStandWhereTheViewsAre) {
    const auto frames = record(scenario_);
    const Image& first = at(frames, 0.5);
    EXPECT_LE(distance(atPoint(first, 100, 60), maskColor), 6) << "the label";
    EXPECT_LE(distance(atPoint(first, 24, 60), maskColor), 6) << "its left edge";
    EXPECT_LE(distance(atPoint(first, 176, 60), maskColor), 6) << "its right edge";
    EXPECT_LE(distance(atPoint(first, 195, 60), {255, 255, 255}), 6) << "beside it";
    EXPECT_LE(distance(atPoint(first, 24, 240), maskColor), 6) << "the round picture's corner is square";
    EXPECT_LE(distance(atPoint(first, 215, 350), {255, 255, 255}), 6) << "a masked view's subviews are gone";
}

TEST_F(EndToEndMasking, BlocksMoveWithTheViewsOnTheScreen) {
    constexpr Rgb panel{221, 221, 221};
    const auto frames = record(scenario_);
    const auto moving = [&frames](double seconds, double x, double y) {
        return atPoint(at(frames, seconds), 20 + x, 425 + y);
    };
    EXPECT_LE(distance(moving(1.0, 30, 20), maskColor), 6);
    EXPECT_LE(distance(moving(1.5, 140, 60), maskColor), 6) << "on its way, where it is shown";
    EXPECT_LE(distance(moving(1.5, 30, 20), panel), 6) << "and no longer where it will not stay";
    EXPECT_LE(distance(moving(2.0, 220, 90), maskColor), 6);
    EXPECT_LE(distance(moving(2.5, 270, 90), maskColor), 6) << "arrived";
    EXPECT_LE(distance(moving(2.5, 140, 90), panel), 6);
    EXPECT_LE(distance(moving(4.0, 280, 20), maskColor), 6) << "a block does not fade with its view";
}

TEST_F(EndToEndMasking, ShadowViewsAreDrawn) {
    const auto frames = record(scenario_);
    EXPECT_LE(distance(atPoint(at(frames, 0.5), 195, 710), {48, 48, 48}), 8);
}

TEST_F(EndToEndMasking, ClassesOfTheHostAreMaskedOnlyWhenItNamesThem) {
    auto unnamed = scenario_;
    unnamed["configuration"].erase("additionalViewTypesToMask");
    const auto frames = record(unnamed);
    EXPECT_LE(distance(atPoint(at(frames, 0.5), 240, 300), {255, 0, 255}), 20) << "the named class";
    EXPECT_LE(distance(atPoint(at(frames, 0.5), 340, 310), {255, 0, 128}), 20) << "a subclass of it";
    EXPECT_LE(distance(atPoint(at(frames, 0.5), 100, 60), maskColor), 6) << "labels all the same";
}

TEST_F(EndToEndMasking, TheExampleScenarioLeaksNothing) {
    const auto frames = record(readJson(exampleScenario("masking")));
    ASSERT_FALSE(frames.empty());
    for (std::size_t index = 0; index < frames.size(); ++index) {
        const auto leak = findPixel(frames[index], [](Rgb color) {
            return color.red > color.green + 40 && color.blue > color.green + 40;
        });
        EXPECT_FALSE(leak.has_value()) << "frame " << index << ": " << *leak;
    }
}

}  // namespace

}  // namespace mireth::endtoend
