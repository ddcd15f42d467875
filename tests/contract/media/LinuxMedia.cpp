// Holds Cairo and OpenH264 to the contracts.
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "tests/contract/media/AssetWriterContract.hpp"
#include "tests/contract/media/GraphicsContract.hpp"

namespace mireth::platform {

namespace {

const AssetWriterAnswer openH264{"OpenH264", [](std::shared_ptr<FileManager> files) {
                                     return std::make_shared<OpenH264AssetWriterFactory>(std::move(files));
                                 }};

const GraphicsAnswer cairo{"Cairo", [] { return std::make_shared<CairoGraphics>(); }};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Linux, AssetWriterFiles, testing::Values(openH264), nameOfAssetWriterAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, AssetWriterStates, testing::Values(openH264), nameOfAssetWriterAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, AssetWriterReadiness, testing::Values(openH264), nameOfAssetWriterAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, GraphicsShapes, testing::Values(cairo), nameOfGraphicsAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, GraphicsImages, testing::Values(cairo), nameOfGraphicsAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, GraphicsGroups, testing::Values(cairo), nameOfGraphicsAnswer);
INSTANTIATE_TEST_SUITE_P(Linux, ImageRendererImages, testing::Values(cairo), nameOfGraphicsAnswer);

}  // namespace mireth::platform
