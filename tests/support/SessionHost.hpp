// A host application around the whole library: headless phone, virtual time, real drawing and encoding, and
// an ingestion service in memory.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "PublicSide/MirethSRCore.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"
#include "support/FixedRandomSource.hpp"
#include "support/IngestionFake.hpp"
#include "support/LogCapture.hpp"

namespace mireth::test {

/// A directory that is gone with the object.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "mireth-test-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

class SessionHost {
  public:
    using Change = std::function<void(headless::HeadlessOptions&)>;
    using ChangeServices = std::function<void(platform::PlatformServices&)>;

    explicit SessionHost(const Change& change = {}, std::set<LogTag> allowedTags = {},
                         const ChangeServices& changeServices = {})
        : capture(std::move(allowedTags)),
          platform_(options(change)),
          core(capture.log(), services(changeServices)) {
        platform_.service()->setService(
            [this](const platform::HttpRequest& request) { return service(request); });
        platform_.application().setKeyWindow(window);
        core.askServices();
    }
    /// An error line that was not looked at fails the test. Info lines, and the memory-use lines of the end,
    /// count as seen.
    ~SessionHost() {
        for (const LogLine& line : capture.take()) {
            if (line.level == LogLevel::error) {
                ADD_FAILURE() << "A line that nobody expected: " << line;
            }
        }
        capture.log().setAllowedTags({});
    }

    /// Chance that spares no line: each one that may be posted is.
    static void postEveryLine(platform::PlatformServices& services) {
        services.random = std::make_shared<FixedRandomSource>();
    }

    InitializationResult initialize() { return core.initializeProject("b1", "p1", window); }

    SessionStartResult start(VexConfiguration configuration = VexConfiguration(false, false)) {
        return await(core.startRecording(std::move(configuration)));
    }
    SessionCloseResult stop() { return await(core.stopRecording()); }

    /// Initialises and starts; the session is running afterwards.
    void startSession() {
        ASSERT_EQ(initialize(), InitializationResult::success);
        ASSERT_EQ(start().kind, SessionStartResult::Kind::success);
    }

    template <class T>
    T await(const Async<T>& async) {
        std::optional<T> result;
        async.then([&result](const T& value) { result = value; });
        platform_.queue().runUntil([&result] { return result.has_value(); });
        return result.value();
    }

    void advance(double seconds) { platform_.queue().advance(platform::Seconds(seconds)); }
    const headless::HeadlessPlatform& phone() const { return platform_; }
    std::string state() const { return core.orchestrator() ? core.orchestrator()->state().name() : "none"; }
    /// The texts of the error lines since the last look.
    std::vector<std::string> errors() { return texts(LogLevel::error); }
    /// The same without their additional information.
    std::vector<std::string> errorMessages() {
        auto messages = errors();
        for (auto& message : messages) {
            message.resize(std::min(message.size(), message.find(" [\"")));
        }
        return messages;
    }
    std::vector<std::string> texts(LogLevel level) {
        std::vector<std::string> result;
        for (const auto& line : capture.take()) {
            if (line.level == level) {
                result.push_back(line.text);
            }
        }
        return result;
    }
    std::filesystem::path storeDirectory() const { return caches.path() / "mireth" / "playback"; }

    TemporaryDirectory caches;
    IngestionFake service;
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844}, 3.0);
    LogCapture capture;

  private:
    headless::HeadlessOptions options(const Change& change) {
        headless::HeadlessOptions result;
        platform::PosixFileManagerOptions fileOptions;
        fileOptions.cachesDirectory = caches.path();
        result.files = std::make_shared<platform::PosixFileManager>(fileOptions);
        result.graphics = std::make_shared<platform::CairoGraphics>();
        if (change) {
            change(result);
        }
        if (!result.assetWriters) {
            result.assetWriters = std::make_shared<platform::OpenH264AssetWriterFactory>(result.files);
        }
        return result;
    }

    platform::PlatformServices services(const ChangeServices& change) const {
        auto result = platform_.services();
        if (change) {
            change(result);
        }
        return result;
    }

    headless::HeadlessPlatform platform_;

  public:
    MirethSRCore core;
};

}  // namespace mireth::test
