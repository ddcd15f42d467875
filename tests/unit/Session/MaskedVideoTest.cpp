// Plays screens with private views to the service, and looks for them in the videos that arrive there.
#include <algorithm>

#include "support/SessionHost.hpp"
#include "tests/contract/media/DecodedVideo.hpp"
#include "unit/Recording/PrivateScreens.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::View;
using test::PrivateKind;
using test::privateKinds;
using test::Situation;
using test::situations;

/// More magenta than the encoder makes of the greys and greens around.
std::ptrdiff_t glowingPixels(const Image& frame) {
    return std::ranges::count_if(frame.pixels(), [](std::uint32_t pixel) {
        const auto red = static_cast<int>(pixel >> 16U & 0xFFU);
        const auto green = static_cast<int>(pixel >> 8U & 0xFFU);
        const auto blue = static_cast<int>(pixel & 0xFFU);
        return std::min(red, blue) > green + 40;
    });
}

struct Screen {
    PrivateKind kind;
    Situation situation;
};

std::vector<Screen> screens() {
    std::vector<Screen> all;
    for (const PrivateKind& kind : privateKinds()) {
        for (const Situation& situation : situations()) {
            all.push_back({kind, situation});
        }
    }
    return all;
}

/// The frames that reach the service, one of each screen.
std::vector<Image> framesOf(const std::vector<Screen>& shown, bool disableMasking) {
    test::SessionHost host;
    host.window->mutableLayer().appearance.backgroundColor = Color::gray(0.9);
    VexConfiguration configuration(disableMasking, false);
    for (const Screen& screen : shown) {
        std::ranges::copy(screen.kind.additional,
                          std::back_inserter(configuration.additionalViewTypesToMask));
    }
    EXPECT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_EQ(host.start(configuration).kind, SessionStartResult::Kind::success);
    for (const Screen& screen : shown) {
        const auto root = std::make_shared<View>();
        root->setFrame({0, 0, 390, 844});
        addPrivateView(root, screen.kind, screen.situation, 1);
        host.window->addSubview(root);
        host.advance(0.5);
        root->removeFromSuperview();
    }
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    std::vector<Image> frames;
    for (const auto& chunk : host.service.chunks) {
        const auto video = tests::decodeVideo(chunk.video);
        EXPECT_EQ(video.errors, 0);
        std::ranges::copy(video.frames, std::back_inserter(frames));
    }
    return frames;
}

TEST(MaskedVideo, ShowsNoPrivatePixelInAnySituation) {
    const auto shown = screens();
    const auto frames = framesOf(shown, false);
    ASSERT_EQ(frames.size(), shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(glowingPixels(frames[i]), 0) << shown[i].kind.name << ", " << shown[i].situation.name;
    }
}

TEST(MaskedVideo, OfTheSameScreensGlowsWithoutMasking) {
    // Else the test above would find nothing because there is nothing.
    const auto shown = screens();
    const auto frames = framesOf(shown, true);
    ASSERT_EQ(frames.size(), shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_GT(glowingPixels(frames[i]), 50) << shown[i].kind.name << ", " << shown[i].situation.name;
    }
}

}  // namespace
}  // namespace mireth
