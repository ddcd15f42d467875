#include "model/TimelineModel.hpp"

#include <algorithm>
#include <utility>

namespace mireth::model {

namespace {

/// The size of every video frame.
constexpr double frameWidth = 250;
constexpr double frameHeight = 500;

}  // namespace

Json targetOf(Point point, const phone::Scenario& scenario) {
    const auto x = static_cast<float>(point.x);
    const auto y = static_cast<float>(point.y);
    const auto screenScale = static_cast<float>(scenario.windowScale);
    // The window fits into the video frame, in its middle.
    const Size window = scenario.windowSize;
    const double scale = std::min(frameWidth / window.width, frameHeight / window.height);
    const Size scaled{window.width * scale, window.height * scale};
    const double left = scaled.width < frameWidth ? (frameWidth - scaled.width) / 2 : 0;
    const double top = scaled.height < frameHeight ? (frameHeight - scaled.height) / 2 : 0;
    const double xInFrame = static_cast<double>(x) * scaled.width / window.width + left;
    const double yInFrame = static_cast<double>(y) * scaled.height / window.height + top;
    return {{"xNormalizedTo1", static_cast<float>(xInFrame / frameWidth)},
            {"yNormalizedTo1", static_cast<float>(yInFrame / frameHeight)},
            {"xOriginalPx", x * screenScale},
            {"yOriginalPx", y * screenScale}};
}

Json metadataOf(const phone::Scenario& scenario) {
    const auto bundled = [&scenario](const char* key) {
        const auto found = scenario.bundle.find(key);
        return found == scenario.bundle.end() || found->second.empty() ? "Unknown" : found->second;
    };
    Json list = Json::array();
    const auto add = [&list](const char* id, const std::string& value) {
        list.push_back({{"metadataId", id}, {"metadataValue", value}});
    };
    const auto& device = scenario.device;
    add("SdkVersion", bundled("VEX_VERSION"));
    add("AppVersion", bundled("CFBundleShortVersionString"));
    add("DeviceId", device.identifierForVendor.value_or("Unknown"));
    add("Platform", "iOS");
    add("OperatingSystem", "iOS " + device.systemVersion);
    add("DeviceModel", device.model);
    add("DeviceCodename", device.machine);
    return {{"metadata", std::move(list)}};
}

Json windowDimensionsOf(const phone::Scenario& scenario) {
    return {{"windowWidthPx", scenario.windowSize.width * scenario.windowScale},
            {"windowHeightPx", scenario.windowSize.height * scenario.windowScale},
            {"mode", "Regular"}};
}

Json screenChangeOf(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                    ScreenDetectionType detection) {
    Json elements = Json::array();
    for (const auto& element : hierarchy) {
        elements.push_back({{"depth", elements.size()},
                            {"screenName", element.screenName},
                            {"screenType", element.screenType}});
    }
    return {{"changeType", change == ScreenChangeType::appear ? "appear" : "disappear"},
            {"detectionType", detection == ScreenDetectionType::manual ? "manual" : "auto"},
            {"screenHierarchy", std::move(elements)}};
}

void TimelineModel::add(std::int64_t timestamp, const char* type, Json details) {
    Json event{{"timestamp", timestamp}, {"type", type}};
    if (!details.is_null()) {
        event["eventDetails"] = std::move(details);
    }
    events_.push_back(std::move(event));
}

void TimelineModel::endChunk(std::int64_t timestamp) {
    add(timestamp, "ChunkEndMarker");
    for (auto& event : std::exchange(events_, {})) {
        event["chunkNumber"] = chunkNumber_;
        sent_.push_back(eventLine(sessionId_, event));
    }
    ++chunkNumber_;
}

}  // namespace mireth::model
