// Where the logger writes to the system log.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string_view>

#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "PrivateSide/Logger/LoggerType.hpp"

namespace mireth {

/// The system-log sinks, one for each tag.
class OSLoggers {
  public:
    using MakeLogger =
        std::function<std::unique_ptr<LoggerType>(std::string_view subsystem, std::string_view category)>;

    /// Makes a sink for every tag, in the tags' order.
    explicit OSLoggers(const MakeLogger& makeLogger);

    /// The sink of the tag, or null.
    LoggerType* get(LogTag tag) const;
    void info(LogTag tag, std::string_view line) const;
    void error(LogTag tag, std::string_view line) const;

  private:
    std::map<LogTag, std::unique_ptr<LoggerType>> loggers_;  // constant after construction
};

}  // namespace mireth
