// The words for a writer's states.
#include "MirethVex/Platform/AssetWriter.hpp"

#include <gtest/gtest.h>

namespace mireth::platform {
namespace {

TEST(AssetWriterStatus, IsCalledByItsCasesName) {
    EXPECT_EQ(toString(AssetWriterStatus::unknown), "unknown");
    EXPECT_EQ(toString(AssetWriterStatus::writing), "writing");
    EXPECT_EQ(toString(AssetWriterStatus::completed), "completed");
    EXPECT_EQ(toString(AssetWriterStatus::failed), "failed");
    EXPECT_EQ(toString(AssetWriterStatus::cancelled), "cancelled");
}

}  // namespace
}  // namespace mireth::platform
