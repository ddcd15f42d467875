// What the logger asks of the remote log, which stands above it.
#pragma once

#include <string>

#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "PrivateSide/Logger/AdditionalInfo.hpp"

namespace mireth {

/// Where error lines go that ask to be posted. The remote log fills it in; the logger stands below it.
class RemoteLogPoster {
  public:
    virtual ~RemoteLogPoster() = default;
    /// Returns at once. Any thread.
    virtual void post(LogLevel level, LogTag tag, const std::string& message,
                      const AdditionalInfo& additionalInfo, bool ignoreSampling) = 0;
};

}  // namespace mireth
