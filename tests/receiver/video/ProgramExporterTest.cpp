// The program that makes videos, whatever becomes of it. Shell scripts play its part.
#include "video/ProgramExporter.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "base/UniqueFd.hpp"

#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver {
namespace {

class ProgramExporterTest : public testing::Test {
  protected:
    // Its arguments are "export SESSION --data DIR --output FILE --force".
    std::unique_ptr<ProgramExporter> exporterOf(const std::string& script) {
        const auto program =
            directory_.write("program" + std::to_string(++programs_), "#!/bin/sh\n" + script);
        ::chmod(program.c_str(), 0700);
        return std::move(ProgramExporter::create(program, directory_.path(), [this] {
                             return "name" + std::to_string(++names_);
                         }).value());
    }
    std::string whyNot(ProgramExporter& exporter) {
        const auto made = exporter.make("s1");
        EXPECT_FALSE(made);
        return made ? "" : made.error().why;
    }
    std::string waitFor(const std::string& name) const {
        while (test::fileText(directory_.file(name)).empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return test::fileText(directory_.file(name));
    }

    const test::TemporaryDirectory directory_;
    std::atomic<int> names_ = 0;
    int programs_ = 0;
};

TEST_F(ProgramExporterTest, HandsOutWhatWasWrittenAndLeavesNothingBehind) {
    const auto exporter = exporterOf("echo \"$1 $2 $3 $7\" >\"$6\"\n");
    const auto made = exporter->make("s1");
    ASSERT_TRUE(made) << made.error().why;
    std::string text((*made)->size(), '\0');
    EXPECT_TRUE((*made)->readAt(0, {reinterpret_cast<unsigned char*>(text.data()), text.size()}));
    EXPECT_EQ(text, "export s1 --data --force\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.file("exports")));
}

TEST_F(ProgramExporterTest, AProgramThatFailsOrCrashesOrIsNotThereIsAnError) {
    const std::string failed = "the video of session s1 could not be made";
    EXPECT_EQ(whyNot(*exporterOf("exit 3\n")), failed);
    EXPECT_EQ(whyNot(*exporterOf("kill -SEGV $$\n")), failed);
    const auto absent =
        ProgramExporter::create(directory_.file("absent"), directory_.path(), [] { return "name"; });
    EXPECT_EQ(whyNot(**absent), failed);
    EXPECT_TRUE(std::filesystem::is_empty(directory_.file("exports")));
}

TEST_F(ProgramExporterTest, ItInheritsNoOpenFile) {
    // Would be inherited, and is numbered beyond what a shell opens for itself.
    const UniqueFd secret(::fcntl(STDERR_FILENO, F_DUPFD, 50));
    const auto exporter = exporterOf("for f in /proc/$$/fd/*; do printf '%s ' \"${f##*/}\"; done >\"$6\"\n");
    const auto made = exporter->make("s1");
    ASSERT_TRUE(made) << made.error().why;
    std::string text((*made)->size(), '\0');
    EXPECT_TRUE((*made)->readAt(0, {reinterpret_cast<unsigned char*>(text.data()), text.size()}));
    EXPECT_EQ(text.find(" " + std::to_string(secret.get()) + " "), std::string::npos) << text;
}

TEST_F(ProgramExporterTest, TheThirdAtATimeIsTurnedAwayAndTheEndStopsAll) {
    const auto exporter = exporterOf("echo begun >\"$4/begun.${6##*/}\"\nexec sleep 600\n");
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] { EXPECT_FALSE(exporter->make("s1")); });
    }
    waitFor("begun.name1.mp4");
    waitFor("begun.name2.mp4");
    const auto third = exporter->make("s1");
    ASSERT_FALSE(third);
    EXPECT_TRUE(third.error().busy);
    exporter->end();
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(std::filesystem::is_empty(directory_.file("exports")));
}

TEST_F(ProgramExporterTest, WhatAnEndedReceiverLeftBehindIsRemoved) {
    std::filesystem::create_directory(directory_.file("exports"));
    directory_.write("exports/left.mp4", "half");
    exporterOf("exit 0\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.file("exports")));
}

}  // namespace
}  // namespace mireth::receiver
