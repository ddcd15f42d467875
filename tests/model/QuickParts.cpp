#include "model/QuickParts.hpp"

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <utility>
#include <vector>

namespace mireth::model {

namespace {

using namespace platform;

class BlankContext final : public GraphicsContext {
  public:
    bool isValid() const override { return true; }
    void saveState() override {}
    void restoreState() override {}
    void concatenate(const AffineTransform&) override {}
    void clipToRoundedRect(const Rect&, const CornerRadii&) override {}
    void fillRoundedRect(const Rect&, const CornerRadii&, const Color&) override {}
    void strokeInsideRoundedRect(const Rect&, const CornerRadii&, double, const Color&) override {}
    void strokeLine(Point, Point, double, const Color&) override {}
    void fillRectWithPattern(const Rect&, const Image&) override {}
    void drawImage(const Image&, const Rect&, const Rect&, Interpolation) override {}
    void drawShadow(const Rect&, const CornerRadii&, const Color&, double) override {}
    void clearRect(const Rect&) override {}
    void beginGroup() override {}
    void endGroup(double) override {}
    void endGroupMasked(double, const std::function<void(GraphicsContext&)>&) override {}
};

class BlankRenderer final : public ImageRenderer {
  public:
    explicit BlankRenderer(Size size)
        : image_(Image::filled(static_cast<std::size_t>(std::ceil(size.width)),
                               static_cast<std::size_t>(std::ceil(size.height)), 0xFF000000U)) {}
    Image image(const std::function<void(GraphicsContext&)>& actions) override {
        BlankContext context;
        actions(context);
        return image_;
    }

  private:
    const Image image_;
};

class BlankGraphics final : public Graphics {
  public:
    std::unique_ptr<ImageRenderer> makeImageRenderer(Size size, ImageRendererFormat) override {
        return std::make_unique<BlankRenderer>(size);
    }
    std::unique_ptr<GraphicsContext> makeBitmapContext(const BitmapDescription&) override {
        return std::make_unique<BlankContext>();
    }
};

/// Of the size of a frame; every frame of a video is drawn into the same one.
class SharedBuffer final : public PixelBuffer {
  public:
    explicit SharedBuffer(Size size)
        : width_(static_cast<std::size_t>(size.width)),
          height_(static_cast<std::size_t>(size.height)),
          bytes_(width_ * height_ * 4) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    std::size_t bytesPerRow() const override { return width_ * 4; }
    void lockBaseAddress() override {}
    void unlockBaseAddress() override {}
    std::byte* baseAddress() override { return bytes_.data(); }

  private:
    const std::size_t width_;
    const std::size_t height_;
    std::vector<std::byte> bytes_;
};

class SharedBufferPool final : public PixelBufferPool {
  public:
    explicit SharedBufferPool(Size size) : buffer_(std::make_shared<SharedBuffer>(size)) {}
    std::pair<Status, std::shared_ptr<PixelBuffer>> createPixelBuffer() override { return {0, buffer_}; }

  private:
    const std::shared_ptr<SharedBuffer> buffer_;
};

class EmptyInput final : public WriterInput {
  public:
    bool isReadyForMoreMediaData() const override { return true; }
    void requestMediaDataWhenReady(std::function<void(Work)> post, std::function<void()> callback) override {
        post(std::move(callback));
    }
    void markAsFinished() override {}
};

class EmptyAdaptor final : public PixelBufferAdaptor {
  public:
    explicit EmptyAdaptor(Size size) : pool_(std::make_shared<SharedBufferPool>(size)) {}
    std::shared_ptr<PixelBufferPool> pixelBufferPool() const override { return pool_; }
    bool append(std::shared_ptr<PixelBuffer>, MediaTime) override { return true; }

  private:
    const std::shared_ptr<PixelBufferPool> pool_;
};

class EmptyVideo final : public AssetWriter {
  public:
    EmptyVideo(FileManager& files, std::filesystem::path path) : files_(files), path_(std::move(path)) {}

    bool canApplyOutputSettings(const VideoOutputSettings&, MediaType) const override { return true; }
    std::shared_ptr<WriterInput> makeInput(MediaType, const VideoOutputSettings&) override {
        return std::make_shared<EmptyInput>();
    }
    std::shared_ptr<PixelBufferAdaptor> makePixelBufferAdaptor(
        std::shared_ptr<WriterInput>, const SourcePixelBufferAttributes& attributes) override {
        return std::make_shared<EmptyAdaptor>(Size{attributes.width, attributes.height});
    }
    bool canAdd(const WriterInput&) const override { return true; }
    void add(std::shared_ptr<WriterInput>) override {}
    bool startWriting() override { return true; }
    void startSession(MediaTime) override {}
    void finishWriting(std::move_only_function<void()> completion) override {
        auto file = files_.createFile(path_);
        status_ = file && (*file)->commit() ? AssetWriterStatus::completed : AssetWriterStatus::failed;
        completion();
    }
    void cancelWriting() override { status_ = AssetWriterStatus::cancelled; }
    AssetWriterStatus status() const override { return status_; }
    std::string errorDescription() const override { return {}; }

  private:
    FileManager& files_;
    const std::filesystem::path path_;
    AssetWriterStatus status_ = AssetWriterStatus::unknown;
};

class EmptyVideos final : public AssetWriterFactory {
  public:
    explicit EmptyVideos(FileManager& files) : files_(files) {}
    std::unique_ptr<AssetWriter> makeWriter(const std::filesystem::path& outputFile, FileType, std::int32_t,
                                            std::int64_t) override {
        return std::make_unique<EmptyVideo>(files_, outputFile);
    }

  private:
    FileManager& files_;
};

}  // namespace

std::shared_ptr<platform::Graphics> makeBlankGraphics() {
    return std::make_shared<BlankGraphics>();
}

std::shared_ptr<platform::AssetWriterFactory> makeEmptyVideos(platform::FileManager& files) {
    return std::make_shared<EmptyVideos>(files);
}

}  // namespace mireth::model
