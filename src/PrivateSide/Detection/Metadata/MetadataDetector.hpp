// Lists what a session was recorded on.
#pragma once

#include <memory>
#include <string>

#include "MirethVex/Platform/Device.hpp"
#include "MirethVex/Platform/InformationDictionary.hpp"
#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"
#include "PrivateSide/Configuration/ClientDetailsProvider.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Any thread. A value that cannot be found is "Unknown"; a missing version is logged as well.
class MetadataDetector {
  public:
    /// `moduleBundle` may be null.
    MetadataDetector(MirethLog& log, std::shared_ptr<const ClientDetailsProvider> clientDetails,
                     std::shared_ptr<platform::InformationDictionary> appBundle,
                     std::shared_ptr<platform::InformationDictionary> moduleBundle,
                     std::shared_ptr<platform::Device> device);

    MetadataCapturedDetails detectMetadata() const;

  private:
    std::string getSdkVersion() const;
    std::string getAppVersion() const;
    std::string getDeviceId() const;

    MirethLog& log_;
    const std::shared_ptr<const ClientDetailsProvider> clientDetails_;
    const std::shared_ptr<platform::InformationDictionary> appBundle_;
    const std::shared_ptr<platform::InformationDictionary> moduleBundle_;
    const std::shared_ptr<platform::Device> device_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
