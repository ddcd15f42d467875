// Everything the library asks of a phone, in one value.
#pragma once

#include <functional>
#include <memory>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/Application.hpp"
#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/Device.hpp"
#include "MirethVex/Platform/FileManager.hpp"
#include "MirethVex/Platform/Graphics.hpp"
#include "MirethVex/Platform/HttpClient.hpp"
#include "MirethVex/Platform/InformationDictionary.hpp"
#include "MirethVex/Platform/KeyValueStore.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "MirethVex/Platform/RandomSource.hpp"
#include "MirethVex/Platform/SystemLog.hpp"

namespace mireth::platform {

/// No member may be null when the value is installed. `MirethSR::shared()` owns all of them with the host and
/// is never destroyed: they outlive the toolkit, and once that is gone they neither touch it nor wait for it.
struct PlatformServices {
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<BackgroundExecutor> background;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<Device> device;
    std::shared_ptr<Application> application;
    std::shared_ptr<InformationDictionary> information;
    std::shared_ptr<KeyValueStore> userDefaults;
    std::shared_ptr<HttpClient> http;
    std::shared_ptr<FileManager> files;
    std::shared_ptr<SystemLog> systemLog;
    std::shared_ptr<AssetWriterFactory> assetWriters;
    std::shared_ptr<Graphics> graphics;
    std::shared_ptr<RandomSource> random;
    /// A new monitor for each initialised project; called on the main thread. Until the monitor has reported
    /// a satisfied path, and for good when this gives null, nothing is uploaded.
    std::function<std::unique_ptr<PathMonitor>()> makePathMonitor;
};

/// The services of the platform the library was built for; on Linux those of
/// <MirethVex/Linux/LinuxPlatform.hpp>, the same at every call. Any thread. Throws std::system_error when
/// there are no threads to be had.
MIRETH_EXPORT PlatformServices makeDefaultPlatformServices();

}  // namespace mireth::platform
