#include "PrivateSide/Detection/AppLifecycleObserver.hpp"

#include <utility>

namespace mireth {

AppLifecycleObserver::AppLifecycleObserver(MirethLog& log, platform::Application& application,
                                           CurrentTimeProvider currentTimeProvider)
    : appMovedToBackground_(std::make_shared<LatestEvent<std::int64_t>>()),
      subscription_(application.observeDidEnterBackground(
          [published = appMovedToBackground_, now = std::move(currentTimeProvider)] {
              *published = now().toTimestampMillis();
          })),
      memoryUse_(log, "PrivateSide/Detection/AppLifecycleObserver") {}

}  // namespace mireth
