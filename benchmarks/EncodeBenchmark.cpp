// What encoding one chunk costs the background, beside libx264 on the same frames.
#include <benchmark/benchmark.h>
#include <time.h>
#include <x264.h>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

extern "C" {
#include <libswscale/swscale.h>
}

#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Recording/ImageConverter.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"
#include "PrivateSide/Recording/VideoAPI/ImageToVideoConverter.hpp"
#include "benchmarks/SampleScreen.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/HeapPixelBufferPool.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "tests/support/AsyncPhone.hpp"
#include "tests/support/MemoryFileManager.hpp"

namespace mireth::benchmarks {
namespace {

constexpr int frameWidth = 250;
constexpr int frameHeight = 500;
constexpr int framesPerChunk = 20;

/// A masked screen that is scrolled by a few points from frame to frame.
std::vector<Frame> makeFrames() {
    platform::CairoGraphics graphics;
    OptimizedImageRenderer renderer(graphics, screenSize);
    LayerReplicator replicator;
    std::vector<Frame> frames;
    for (int number = 0; number < framesPerChunk; ++number) {
        const auto layers = replicator.replicateLayerTree(*makeScreen(100, number * -7.0), true);
        frames.push_back(
            {renderer.image([&layers](platform::GraphicsContext& c) { layers->render(c); }),
             ScalingMetadataCalculator::calculateScalingMetadata(screenSize, PlaybackConfiguration().size)});
    }
    return frames;
}

double processSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Scaling, conversion, encoding and the file's structure, as the library does it; files stay in memory.
std::size_t encodeWithOurWriter(const std::vector<Frame>& frames) {
    const test::AsyncPhone phone;
    const auto files = std::make_shared<tests::MemoryFileManager>();
    const auto factory =
        ImageToVideoConverter::makeFactory(std::make_shared<platform::OpenH264AssetWriterFactory>(files),
                                           std::make_shared<platform::CairoGraphics>(), phone.background);
    const auto converter = factory(frames, "/chunk.mp4", PlaybackConfiguration());
    const auto outcome = phone.start(phone.background, converter->render());
    phone.runUntilIdle();
    if (!outcome->succeeded()) {
        throw std::runtime_error("our writer: " + outcome->message());
    }
    return files->files.at("/chunk.mp4").size();
}

/// libx264 with one of its presets, on the same scaled frames.
class X264 {
  public:
    explicit X264(const char* preset) {
        x264_param_t parameters;
        x264_param_default_preset(&parameters, preset, nullptr);
        parameters.i_width = frameWidth;
        parameters.i_height = frameHeight;
        parameters.i_csp = X264_CSP_I420;
        parameters.i_fps_num = 2;
        parameters.i_fps_den = 1;
        parameters.i_threads = 1;
        parameters.i_log_level = X264_LOG_NONE;
        encoder_ = x264_encoder_open(&parameters);
        x264_picture_alloc(&picture_, X264_CSP_I420, frameWidth, frameHeight);
        scaler_ = sws_getContext(frameWidth, frameHeight, AV_PIX_FMT_BGRA, frameWidth, frameHeight,
                                 AV_PIX_FMT_YUV420P, SWS_BILINEAR, nullptr, nullptr, nullptr);
        if (encoder_ == nullptr || scaler_ == nullptr) {
            throw std::runtime_error("libx264 or libswscale cannot be had");
        }
    }
    ~X264() {
        sws_freeContext(scaler_);
        x264_picture_clean(&picture_);
        x264_encoder_close(encoder_);
    }
    X264(const X264&) = delete;
    X264& operator=(const X264&) = delete;

    std::size_t encode(platform::PixelBuffer& buffer, int number) {
        buffer.lockBaseAddress();
        const std::array<const std::uint8_t*, 1> source{
            reinterpret_cast<const std::uint8_t*>(buffer.baseAddress())};
        const std::array<int, 1> stride{static_cast<int>(buffer.bytesPerRow())};
        sws_scale(scaler_, source.data(), stride.data(), 0, frameHeight, picture_.img.plane,
                  picture_.img.i_stride);
        buffer.unlockBaseAddress();
        picture_.i_pts = number;
        return take(&picture_);
    }
    std::size_t flush() {
        std::size_t bytes = 0;
        while (x264_encoder_delayed_frames(encoder_) > 0) {
            bytes += take(nullptr);
        }
        return bytes;
    }

  private:
    std::size_t take(x264_picture_t* picture) {
        x264_nal_t* units = nullptr;
        int count = 0;
        x264_picture_t coded;
        const int bytes = x264_encoder_encode(encoder_, &units, &count, picture, &coded);
        if (bytes < 0) {
            throw std::runtime_error("libx264 failed");
        }
        return static_cast<std::size_t>(bytes);
    }

    x264_t* encoder_ = nullptr;
    x264_picture_t picture_{};
    SwsContext* scaler_ = nullptr;
};

std::size_t encodeWithX264(const std::vector<Frame>& frames, const char* preset) {
    const auto graphics = std::make_shared<platform::CairoGraphics>();
    const auto pool = std::make_shared<platform::HeapPixelBufferPool>(frameWidth, frameHeight);
    X264 encoder(preset);
    std::size_t bytes = 0;
    int number = 0;
    for (const Frame& frame : frames) {
        ImageConverter converter(frame, pool, graphics);
        bytes += encoder.encode(*converter.convertToPixelBuffer(), number++);
    }
    return bytes + encoder.flush();
}

/// Turn by turn; the time shown is our CPU time for a chunk of 20 frames.
void encodeChunk(benchmark::State& state, const char* preset) {
    const auto frames = makeFrames();
    double ours = 0;
    double theirs = 0;
    std::size_t ourBytes = 0;
    std::size_t theirBytes = 0;
    for (auto _ : state) {
        const double start = processSeconds();
        ourBytes = encodeWithOurWriter(frames);
        const double middle = processSeconds();
        theirBytes = encodeWithX264(frames, preset);
        theirs += processSeconds() - middle;
        ours += middle - start;
        state.SetIterationTime(middle - start);
    }
    state.counters["x264_ms"] = 1e3 * theirs / static_cast<double>(state.iterations());
    state.counters["ratio"] = ours / theirs;
    state.counters["bytes"] = static_cast<double>(ourBytes);
    state.counters["x264_bytes"] = static_cast<double>(theirBytes);
}
BENCHMARK_CAPTURE(encodeChunk, beside_x264_veryfast, "veryfast")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeChunk, beside_x264_default, "medium")->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mireth::benchmarks
