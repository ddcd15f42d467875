#include "MirethVex/Linux/LinuxPlatform.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platforms/linux/InformationCheck.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "platforms/linux/network/NetlinkPathMonitor.hpp"
#include "platforms/linux/system/AsioMainQueue.hpp"
#include "platforms/linux/system/JournalSystemLog.hpp"
#include "platforms/linux/system/JsonFileInformationDictionary.hpp"
#include "platforms/linux/system/JsonFileKeyValueStore.hpp"
#include "platforms/linux/system/LinuxDevice.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"
#include "platforms/linux/system/SystemClock.hpp"
#include "platforms/linux/system/SystemRandomSource.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"

namespace mireth::platform {

namespace {

std::shared_ptr<JsonFileInformationDictionary> makeInformation(LinuxPlatformOptions& options) {
    if (options.informationFile) {
        return std::make_shared<JsonFileInformationDictionary>(
            *options.informationFile, std::move(options.information).value_or(TextMap()));
    }
    return options.information
               ? std::make_shared<JsonFileInformationDictionary>(std::move(*options.information))
               : std::make_shared<JsonFileInformationDictionary>();
}

std::shared_ptr<LinuxDevice> makeDevice(const LinuxPlatformOptions& options,
                                        const InformationDictionary& information) {
    LinuxDeviceOptions device;
    device.vendor = options.vendor;
    device.idiom = options.idiom;
    if (!device.idiom) {
        device.idiom = idiomNamed(information.string(information_keys::deviceIdiom).value_or(""));
    }
    return std::make_shared<LinuxDevice>(device);
}

std::shared_ptr<PosixFileManager> makeFiles(const LinuxPlatformOptions& options) {
    PosixFileManagerOptions files;
    files.cachesDirectory = options.cachesDirectory;
    return std::make_shared<PosixFileManager>(std::move(files));
}

std::shared_ptr<CurlHttpClient> makeHttp(const LinuxPlatformOptions& options,
                                         const InformationDictionary& information) {
    CurlHttpClientOptions http;
    http.allowInsecureHttp =
        options.allowInsecureHttp || information.string(information_keys::allowInsecureHttp) == "true";
    http.extraCaFile = options.extraCaFile;
    return std::make_shared<CurlHttpClient>(std::move(http));
}

}  // namespace

/// The parts that are more than the service they answer for.
struct LinuxPlatform::Parts {
    explicit Parts(LinuxPlatformOptions& options)
        : allowInsecureHttp(options.allowInsecureHttp),
          information(makeInformation(options)),
          services(makeServices(options)) {}

    PlatformServices makeServices(const LinuxPlatformOptions& options) const {
        PlatformServices all;
        all.mainQueue = mainQueue;
        all.background = std::make_shared<ThreadPoolExecutor>();
        all.clock = std::make_shared<SystemClock>();
        all.device = makeDevice(options, *information);
        all.application = application;
        all.information = information;
        all.userDefaults = userDefaults;
        all.http = makeHttp(options, *information);
        all.files = makeFiles(options);
        all.systemLog = std::make_shared<JournalSystemLog>();
        all.assetWriters = std::make_shared<OpenH264AssetWriterFactory>(all.files);
        all.graphics = std::make_shared<CairoGraphics>();
        all.random = std::make_shared<SystemRandomSource>();
        all.makePathMonitor = [] { return std::make_unique<NetlinkPathMonitor>(); };
        return all;
    }

    const bool allowInsecureHttp;
    const std::shared_ptr<AsioMainQueue> mainQueue = std::make_shared<AsioMainQueue>();
    const std::shared_ptr<PlainApplication> application = std::make_shared<PlainApplication>();
    const std::shared_ptr<JsonFileInformationDictionary> information;
    const std::shared_ptr<JsonFileKeyValueStore> userDefaults = std::make_shared<JsonFileKeyValueStore>();
    const PlatformServices services;
};

LinuxPlatform::LinuxPlatform(LinuxPlatformOptions options) : parts_(std::make_unique<Parts>(options)) {}

LinuxPlatform::~LinuxPlatform() = default;

LinuxPlatform& LinuxPlatform::shared() {
    // Never destroyed: work may still run on its threads while the process ends.
    static LinuxPlatform* const platform = new LinuxPlatform();
    return *platform;
}

PlatformServices LinuxPlatform::services() const {
    return parts_->services;
}

PlainApplication& LinuxPlatform::application() const {
    return *parts_->application;
}

std::vector<std::string> LinuxPlatform::warnings() const {
    std::vector<std::string> lines;
    for (const std::string& line : {parts_->information->error(), parts_->userDefaults->error()}) {
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    std::ranges::move(warningsAbout(*parts_->information, parts_->allowInsecureHttp),
                      std::back_inserter(lines));
    return lines;
}

void LinuxPlatform::runMainLoop() {
    parts_->mainQueue->run();
}

void LinuxPlatform::stopMainLoop() {
    parts_->mainQueue->stop();
}

PlatformServices makeDefaultPlatformServices() {
    return LinuxPlatform::shared().services();
}

}  // namespace mireth::platform
