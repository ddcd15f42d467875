// A media writer that does what a test tells it, and writes down what it was told.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/AssetWriter.hpp"

namespace mireth::test {

/// What the writer, its input and its adaptor share with the test.
struct WriterScript {
    // What they answer
    bool makesWriter = true;
    bool canApply = true;
    bool makesInput = true;
    bool canAdd = true;
    bool makesAdaptor = true;
    bool starts = true;
    bool hasPool = true;
    platform::PixelBufferPool::Status poolStatus = 0;
    bool poolHasBuffers = true;
    bool ready = true;
    /// Not ready again after each frame.
    bool oneFrameAtATime = false;
    std::size_t failingFrame = static_cast<std::size_t>(-1);
    platform::AssetWriterStatus endStatus = platform::AssetWriterStatus::completed;

    // What they saw
    std::vector<std::string> calls;
    std::vector<platform::MediaTime> times;
    std::vector<std::shared_ptr<platform::PixelBuffer>> buffers;
    platform::SourcePixelBufferAttributes attributes;
    platform::VideoOutputSettings settings;
    std::size_t appendedWhileNotReady = 0;
    /// Asks for more, as a readiness callback does.
    std::function<void()> askForMore;
};

class HeapBuffer final : public platform::PixelBuffer {
  public:
    HeapBuffer(std::size_t width, std::size_t height)
        : width_(width), height_(height), bytes_(bytesPerRow() * height, std::byte{0xEE}) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    std::size_t bytesPerRow() const override { return width_ * 4 + 16; }
    void lockBaseAddress() override { ++locks; }
    void unlockBaseAddress() override { --locks; }
    std::byte* baseAddress() override { return locks > 0 ? bytes_.data() : nullptr; }
    int locks = 0;

  private:
    const std::size_t width_;
    const std::size_t height_;
    std::vector<std::byte> bytes_;
};

class ScriptedPool final : public platform::PixelBufferPool {
  public:
    explicit ScriptedPool(std::shared_ptr<WriterScript> script) : script_(std::move(script)) {}
    std::pair<Status, std::shared_ptr<platform::PixelBuffer>> createPixelBuffer() override {
        if (!script_->poolHasBuffers) {
            return {script_->poolStatus, nullptr};
        }
        return {script_->poolStatus, std::make_shared<HeapBuffer>(250, 500)};
    }

  private:
    std::shared_ptr<WriterScript> script_;
};

class ScriptedInput final : public platform::WriterInput {
  public:
    explicit ScriptedInput(std::shared_ptr<WriterScript> script) : script_(std::move(script)) {}
    bool isReadyForMoreMediaData() const override { return script_->ready; }
    void requestMediaDataWhenReady(std::function<void(Work)> post, std::function<void()> callback) override {
        script_->calls.emplace_back("requestMediaDataWhenReady");
        script_->askForMore = [script = std::weak_ptr(script_), post = std::move(post),
                               callback = std::move(callback)] {
            if (const auto known = script.lock()) {
                known->ready = true;
            }
            post(callback);
        };
        if (script_->ready) {
            script_->askForMore();
        }
    }
    void markAsFinished() override { script_->calls.emplace_back("markAsFinished"); }

  private:
    std::shared_ptr<WriterScript> script_;
};

class ScriptedAdaptor final : public platform::PixelBufferAdaptor {
  public:
    explicit ScriptedAdaptor(std::shared_ptr<WriterScript> script) : script_(std::move(script)) {}
    std::shared_ptr<platform::PixelBufferPool> pixelBufferPool() const override {
        return script_->hasPool ? std::make_shared<ScriptedPool>(script_) : nullptr;
    }
    bool append(std::shared_ptr<platform::PixelBuffer> buffer, platform::MediaTime time) override {
        script_->appendedWhileNotReady += script_->ready ? 0U : 1U;
        if (script_->oneFrameAtATime) {
            script_->ready = false;
        }
        if (script_->times.size() == script_->failingFrame) {
            return false;
        }
        script_->buffers.push_back(std::move(buffer));
        script_->times.push_back(time);
        return true;
    }

  private:
    std::shared_ptr<WriterScript> script_;
};

class ScriptedWriter final : public platform::AssetWriter {
  public:
    explicit ScriptedWriter(std::shared_ptr<WriterScript> script) : script_(std::move(script)) {}
    ~ScriptedWriter() override { script_->calls.emplace_back("dropped"); }
    bool canApplyOutputSettings(const platform::VideoOutputSettings& settings,
                                platform::MediaType) const override {
        script_->calls.emplace_back("canApplyOutputSettings");
        script_->settings = settings;
        return script_->canApply;
    }
    std::shared_ptr<platform::WriterInput> makeInput(platform::MediaType,
                                                     const platform::VideoOutputSettings&) override {
        script_->calls.emplace_back("makeInput");
        return script_->makesInput ? std::make_shared<ScriptedInput>(script_) : nullptr;
    }
    std::shared_ptr<platform::PixelBufferAdaptor> makePixelBufferAdaptor(
        std::shared_ptr<platform::WriterInput>,
        const platform::SourcePixelBufferAttributes& attributes) override {
        script_->calls.emplace_back("makePixelBufferAdaptor");
        script_->attributes = attributes;
        return script_->makesAdaptor ? std::make_shared<ScriptedAdaptor>(script_) : nullptr;
    }
    bool canAdd(const platform::WriterInput&) const override {
        script_->calls.emplace_back("canAdd");
        return script_->canAdd;
    }
    void add(std::shared_ptr<platform::WriterInput>) override { script_->calls.emplace_back("add"); }
    bool startWriting() override {
        script_->calls.emplace_back("startWriting");
        return script_->starts;
    }
    void startSession(platform::MediaTime time) override {
        script_->calls.push_back("startSession at " + std::to_string(time.value));
    }
    void finishWriting(std::move_only_function<void()> completion) override {
        script_->calls.emplace_back("finishWriting");
        completion();
    }
    void cancelWriting() override { script_->calls.emplace_back("cancelWriting"); }
    platform::AssetWriterStatus status() const override { return script_->endStatus; }
    std::string errorDescription() const override { return {}; }

  private:
    std::shared_ptr<WriterScript> script_;
};

/// No answer to the contract, on purpose: it writes no file and keeps no state, so that a test can have any
/// step fail, also those that real writers seldom fail at.
class ScriptedWriterFactory final : public platform::AssetWriterFactory {
  public:
    explicit ScriptedWriterFactory(std::shared_ptr<WriterScript> script) : script_(std::move(script)) {}
    std::unique_ptr<platform::AssetWriter> makeWriter(const std::filesystem::path& outputFile,
                                                      platform::FileType, std::int32_t timescale,
                                                      std::int64_t defaultFrameDuration) override {
        script_->calls.push_back("makeWriter " + outputFile.string() + " " + std::to_string(timescale) + " " +
                                 std::to_string(defaultFrameDuration));
        return script_->makesWriter ? std::make_unique<ScriptedWriter>(script_) : nullptr;
    }

  private:
    std::shared_ptr<WriterScript> script_;
};

}  // namespace mireth::test
