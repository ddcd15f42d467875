// Multipart by hand: the receiver is judged by bytes, not by another library's habits.
#include "support/Upload.hpp"

namespace mireth::receiver::test {

std::string Upload::body() const {
    std::string text;
    for (const auto& part : parts) {
        text += "--" + boundary + "\r\n" + part.head + "\r\n\r\n" + part.content + "\r\n";
    }
    return text + "--" + boundary + "--\r\n";
}

UploadPart jsonPart(const std::string& name, const std::string& content) {
    return {.head = "Content-Disposition: form-data; name=\"chunk[" + name + "]\"", .content = content};
}

UploadPart videoPart(const std::string& content) {
    return {.head =
                "Content-Disposition: form-data; name=\"chunk[playback]\"; filename=\"S1_0.mp4\"\r\n"
                "Content-Type: video/mp4",
            .content = content};
}

std::string infoJson(const std::string& sessionId, std::int64_t number, const std::string& brandId,
                     const std::string& projectId) {
    return R"({"brandId":")" + brandId + R"(","brandDc":"US_WEST","projectId":")" + projectId +
           R"(","sessionId":")" + sessionId + R"(","chunkNumber":)" + std::to_string(number) +
           R"(,"playbackDataVersion":1,"chunkTimestamp":1700000010000})";
}

std::string timelineJson(std::int64_t number) {
    const std::string chunk = R"("chunkNumber":)" + std::to_string(number) + "}";
    const std::string target =
        R"("target":{"xNormalizedTo1":0.42,"yNormalizedTo1":-0.31,"xOriginalPx":450,"yOriginalPx":780})";
    return R"([{"timestamp":1700000000000,"type":"SessionStartMarker",)" + chunk +
           R"(,{"timestamp":1700000000001,"type":"MetadataCaptured","eventDetails":{"metadata":[)"
           R"({"metadataId":"DeviceModel","metadataValue":"Phone"}]},)" +
           chunk +
           R"(,{"timestamp":1700000000500,"type":"WindowDimensions","eventDetails":)"
           R"({"windowWidthPx":1170,"windowHeightPx":2532.5,"mode":"Regular"},)" +
           chunk +
           R"(,{"timestamp":1001500,"type":"UserInteraction","eventDetails":{"interactionId":"Tap",)" +
           target + "}," + chunk +
           R"(,{"timestamp":1001500,"type":"SignalCaptured","eventDetails":{"signalId":"RageTap",)" + target +
           "}," + chunk +
           R"(,{"timestamp":1700000002000,"type":"SignalCaptured","eventDetails":{"signalId":"ErrorTap",)" +
           target + R"(,"error":{"message":"no stock"}},)" + chunk +
           R"(,{"timestamp":1700000003000,"type":"ScreenChange","eventDetails":{"changeType":"appear",)"
           R"("detectionType":"auto","screenHierarchy":[{"depth":0,"screenName":"Cart","screenType":"Screen"}]},)" +
           chunk + R"(,{"timestamp":1700000010000,"type":"ChunkEndMarker",)" + chunk + "]";
}

Upload chunkUpload(const std::string& sessionId, std::int64_t number, const std::string& video) {
    return {.parts = {jsonPart("timeline", timelineJson(number)),
                      jsonPart("info", infoJson(sessionId, number)), videoPart(video)}};
}

}  // namespace mireth::receiver::test
