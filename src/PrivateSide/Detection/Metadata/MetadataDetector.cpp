#include "PrivateSide/Detection/Metadata/MetadataDetector.hpp"

#include <utility>

#include "PrivateSide/Configuration/UnknownValue.hpp"

namespace mireth {

namespace {

namespace keys = platform::information_keys;

/// The service knows one platform.
constexpr const char* platformName = "iOS";

}  // namespace

MetadataDetector::MetadataDetector(MirethLog& log, std::shared_ptr<const ClientDetailsProvider> clientDetails,
                                   std::shared_ptr<platform::InformationDictionary> appBundle,
                                   std::shared_ptr<platform::InformationDictionary> moduleBundle,
                                   std::shared_ptr<platform::Device> device)
    : log_(log),
      clientDetails_(std::move(clientDetails)),
      appBundle_(std::move(appBundle)),
      moduleBundle_(std::move(moduleBundle)),
      device_(std::move(device)),
      memoryUse_(log, "PrivateSide/Detection/Metadata/MetadataDetector") {}

MetadataCapturedDetails MetadataDetector::detectMetadata() const {
    MetadataCapturedDetails details;
    auto& list = details.metadata;
    list.push_back({SrMetadataType::SdkVersion, getSdkVersion()});
    list.push_back({SrMetadataType::AppVersion, getAppVersion()});
    list.push_back({SrMetadataType::DeviceId, getDeviceId()});
    list.push_back({SrMetadataType::Platform, platformName});
    list.push_back(
        {SrMetadataType::OperatingSystem, std::string(platformName) + " " + device_->systemVersion()});
    list.push_back({SrMetadataType::DeviceModel, device_->model()});
    list.push_back({SrMetadataType::DeviceCodename, device_->machine()});
    return details;
}

std::string MetadataDetector::getSdkVersion() const {
    if (clientDetails_->getClientType() == ClientType::VEXMobileIOSReactNative) {
        if (auto version = clientDetails_->getClientVexReactNativeVersion()) {
            return std::move(*version);
        }
        log_.error(LogTag::lifecycle, "VEX React Native SDK version is missing");
        return unknownValue;
    }
    if (moduleBundle_) {
        if (auto version = moduleBundle_->string(keys::vexVersion); version && !version->empty()) {
            return std::move(*version);
        }
    }
    log_.error(LogTag::lifecycle, "VEX iOS SDK version is missing");
    return unknownValue;
}

std::string MetadataDetector::getAppVersion() const {
    return appBundle_->string(keys::appVersion).value_or(unknownValue);
}

std::string MetadataDetector::getDeviceId() const {
    return device_->identifierForVendor().value_or(unknownValue);
}

}  // namespace mireth
