// Writes every captured image into a folder, as PNG files.
#pragma once

#include <filesystem>
#include <memory>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::phone {

/// Graphics that also writes what its renderers make, before it is scaled, as frame-00001.png and so on. The
/// library has them render nothing but the window; a picture that an error cut short is none to it, and is
/// left out here too. Any thread, as the graphics it wraps.
class FrameDump final : public platform::Graphics {
  public:
    /// `folder` is made when it is missing. Throws OptionError when it cannot be.
    FrameDump(std::shared_ptr<platform::Graphics> inner, std::filesystem::path folder);

    std::unique_ptr<platform::ImageRenderer> makeImageRenderer(Size size,
                                                               platform::ImageRendererFormat format) override;
    std::unique_ptr<platform::GraphicsContext> makeBitmapContext(
        const platform::BitmapDescription& description) override;

  private:
    class Renderer;
    struct Folder;
    const std::shared_ptr<platform::Graphics> inner_;
    const std::shared_ptr<Folder> folder_;
};

}  // namespace mireth::phone
