// Writes every captured image into a folder, as PNG files.
#pragma once

#include <filesystem>
#include <memory>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::phone {

/// Graphics that also writes what its renderers of the window's size make, before it is scaled, as
/// frame-00001.png and so on. Any thread, as the graphics it wraps.
class FrameDump final : public platform::Graphics {
  public:
    /// `folder` is made when it is missing. Throws ScenarioError when it cannot be.
    FrameDump(std::shared_ptr<platform::Graphics> inner, std::filesystem::path folder, Size windowSize);

    std::unique_ptr<platform::ImageRenderer> makeImageRenderer(Size size,
                                                               platform::ImageRendererFormat format) override;
    std::unique_ptr<platform::GraphicsContext> makeBitmapContext(
        const platform::BitmapDescription& description) override;

  private:
    class Renderer;
    struct Folder;
    const std::shared_ptr<platform::Graphics> inner_;
    const std::shared_ptr<Folder> folder_;
    const Size windowSize_;
};

}  // namespace mireth::phone
