#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"

#include <limits>
#include <utility>

#include "platforms/linux/media/OpenH264AssetWriter.hpp"

namespace mireth::platform {

OpenH264AssetWriterFactory::OpenH264AssetWriterFactory(std::shared_ptr<FileManager> files)
    : files_(std::move(files)) {}

std::unique_ptr<AssetWriter> OpenH264AssetWriterFactory::makeWriter(const std::filesystem::path& outputFile,
                                                                    FileType type, std::int32_t timescale,
                                                                    std::int64_t defaultFrameDuration) {
    constexpr std::int64_t longest = std::numeric_limits<std::int32_t>::max();
    if (outputFile.empty() || type != FileType::mpeg4 || timescale < 1 || defaultFrameDuration < 1 ||
        defaultFrameDuration > longest) {
        return nullptr;
    }
    return std::make_unique<OpenH264AssetWriter>(files_, outputFile, timescale, defaultFrameDuration);
}

}  // namespace mireth::platform
