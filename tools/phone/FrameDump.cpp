// Renderers that write down what they have rendered.
#include "phone/FrameDump.hpp"

#include <array>
#include <atomic>
#include <cstdio>
#include <system_error>
#include <utility>

#include "phone/OptionError.hpp"
#include "phone/PngFile.hpp"

namespace mireth::phone {

struct FrameDump::Folder {
    explicit Folder(std::filesystem::path where) : path(std::move(where)) {}
    const std::filesystem::path path;
    std::atomic<unsigned> count{0};

    void add(const platform::Image& image) {
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), "frame-%05u.png", ++count);
        const auto file = path / name.data();
        if (const auto error = writePng(image, file)) {
            std::fprintf(stderr, "mireth-phone: %s cannot be written: %s\n", file.c_str(), error->c_str());
        }
    }
};

class FrameDump::Renderer final : public platform::ImageRenderer {
  public:
    Renderer(std::unique_ptr<platform::ImageRenderer> inner, std::shared_ptr<Folder> folder)
        : inner_(std::move(inner)), folder_(std::move(folder)) {}

    platform::Image image(const std::function<void(platform::GraphicsContext&)>& actions) override {
        bool isComplete = false;
        platform::Image image = inner_->image([&](platform::GraphicsContext& context) {
            if (actions) {
                actions(context);
            }
            isComplete = context.isValid();
        });
        if (isComplete && image.hasBitmap()) {
            folder_->add(image);
        }
        return image;
    }

  private:
    const std::unique_ptr<platform::ImageRenderer> inner_;
    const std::shared_ptr<Folder> folder_;
};

FrameDump::FrameDump(std::shared_ptr<platform::Graphics> inner, std::filesystem::path folder)
    : inner_(std::move(inner)), folder_(std::make_shared<Folder>(std::move(folder))) {
    std::error_code error;
    std::filesystem::create_directories(folder_->path, error);
    if (error || !std::filesystem::is_directory(folder_->path, error)) {
        throw OptionError("--dump-frames", "the folder " + folder_->path.string() + " cannot be made" +
                                               (error ? ": " + error.message() : ""));
    }
}

std::unique_ptr<platform::ImageRenderer> FrameDump::makeImageRenderer(Size size,
                                                                      platform::ImageRendererFormat format) {
    return std::make_unique<Renderer>(inner_->makeImageRenderer(size, format), folder_);
}

std::unique_ptr<platform::GraphicsContext> FrameDump::makeBitmapContext(
    const platform::BitmapDescription& description) {
    return inner_->makeBitmapContext(description);
}

}  // namespace mireth::phone
