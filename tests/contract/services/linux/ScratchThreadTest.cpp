#include "platforms/linux/system/ScratchThread.hpp"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace mireth::platform {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool heapIsTheCLibrarys = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool heapIsTheCLibrarys = false;
#else
constexpr bool heapIsTheCLibrarys = true;
#endif
#else
constexpr bool heapIsTheCLibrarys = true;
#endif

constexpr std::size_t kibibyte = 1024;
constexpr std::size_t mebibyte = 1024 * kibibyte;

/// Resident memory that is in no file, in bytes.
std::size_t residentHeap() {
    std::ifstream status("/proc/self/status");
    std::string word;
    std::size_t kibibytes = 0;
    while (status >> word) {
        if (word == "RssAnon:") {
            status >> kibibytes;
        }
    }
    return kibibytes * kibibyte;
}

using Block = std::unique_ptr<std::byte[]>;

Block touchedBlock(std::size_t size) {
    Block block(new std::byte[size]);
    std::memset(block.get(), 1, size);
    return block;
}

/// As an encoder does: many blocks of many sizes, with small ones between them.
std::vector<Block> manyBlocks(std::size_t total) {
    std::vector<Block> blocks;
    for (std::size_t sum = 0; sum < total;) {
        const std::size_t size = blocks.size() % 2 == 0 ? 40 : 100 * kibibyte;
        blocks.push_back(touchedBlock(size));
        sum += size;
    }
    return blocks;
}

TEST(ScratchThread, StepsRunInOrderOnOneThreadOfItsOwn) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    ScratchThread scratch;
    for (int i = 0; i < 3; ++i) {
        scratch.run([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
        EXPECT_EQ(order.size(), static_cast<std::size_t>(i + 1));
    }
    EXPECT_EQ(order, (std::vector{0, 1, 2}));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    EXPECT_EQ(threads.front(), threads.back());
}

TEST(ScratchThread, WhatAStepThrowsIsThrownToWhoeverRunsIt) {
    ScratchThread scratch;
    EXPECT_THROW(scratch.run([] { throw std::runtime_error("no"); }), std::runtime_error);
    bool hasRun = false;
    scratch.run([&] { hasRun = true; });
    EXPECT_TRUE(hasRun);
}

TEST(ScratchThread, AStepIsGoneBeforeItsRunReturns) {
    ScratchThread scratch;
    const auto held = std::make_shared<int>(1);
    scratch.run([held] {});
    EXPECT_EQ(held.use_count(), 1);
}

TEST(ScratchThread, WhatStepsHaveFreedGoesBackToTheSystem) {
    if (!heapIsTheCLibrarys) {
        GTEST_SKIP() << "sanitizers keep freed memory";
    }
    // From here on the C library keeps four megabytes for the next who asks.
    mallopt(M_TRIM_THRESHOLD, static_cast<int>(4 * mebibyte));
    const std::size_t before = residentHeap();
    {
        ScratchThread scratch;
        std::vector<Block> blocks;
        scratch.run([&] { blocks = manyBlocks(3 * mebibyte); });
        EXPECT_GT(residentHeap(), before + 3 * mebibyte - 256 * kibibyte);
        scratch.run([&] { blocks = std::vector<Block>(); });
        EXPECT_GT(residentHeap(), before + 2 * mebibyte) << "there was nothing to give back";
    }
    EXPECT_LT(residentHeap(), before + mebibyte);
}

TEST(ScratchThread, WhatStepsLeaveBehindStaysGood) {
    Block left;
    {
        ScratchThread scratch;
        scratch.run([&] { left = touchedBlock(mebibyte); });
    }
    EXPECT_EQ(left[0], std::byte{1});
    EXPECT_EQ(left[mebibyte - 1], std::byte{1});
}

}  // namespace
}  // namespace mireth::platform
