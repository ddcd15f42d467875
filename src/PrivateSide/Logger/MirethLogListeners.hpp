// Those of the host who hear every line that is written.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"

namespace mireth {

/// The host's listeners, called in the order in which they were added.
class MirethLogListeners {
  public:
    using Listener = std::function<void(LogTag, LogLevel, const std::string&)>;

    /// Null is ignored.
    void add(Listener listener);
    /// Calls every listener on the calling thread, with no lock held. What a listener throws goes to
    /// standard error and no further; the others are still called.
    void logToAll(LogTag tag, LogLevel level, const std::string& line) const;

  private:
    using List = std::vector<Listener>;
    mutable std::mutex mutex_;
    std::shared_ptr<const List> listeners_ =
        std::make_shared<List>();  // guarded by mutex_, replaced wholesale
};

}  // namespace mireth
