// From texts that are no JSON to events that are nearly right.
#include "support/HostileCorpus.hpp"

namespace mireth::receiver::test {

void addTimelines(HostileCorpus& corpus) {
    const std::string tail = R"(,"chunkNumber":0})";
    const auto event = [&](const std::string& type, const std::string& details) {
        return R"([{"timestamp":1,"type":")" + type + R"(","eventDetails":)" + details + tail + "]";
    };
    std::string keys = "{";
    for (int i = 0; i < 100'000; ++i) {
        keys += "\"" + std::to_string(i) + "\":0,";
    }
    std::string many = "[";
    for (int i = 0; i < 60'000; ++i) {
        many += R"({"timestamp":1,"type":"ChunkEndMarker","chunkNumber":0},)";
    }
    std::string empty = "[";
    for (int i = 0; i < 1'000'000; ++i) {
        empty += "{},";
    }
    for (const auto& text : Strings{"",
                                    "null",
                                    "{}",
                                    "0",
                                    "[0]",
                                    "[null]",
                                    "[[]]",
                                    "[{}]",
                                    "[",
                                    "[1,]",
                                    "NaN",
                                    "[]]",
                                    "[\"\xC3\x28\"]",
                                    std::string(1'000'000, '['),
                                    std::string(3'000'000, '{'),
                                    "[" + std::string(4'190'000, ' '),
                                    "[\"" + std::string(4'000'000, 'x') + "\"]",
                                    "[" + std::string(4'000'000, '9') + "]",
                                    keys + "\"x\":0}",
                                    "[" + keys + "\"x\":0}]",
                                    many.substr(0, many.size() - 1) + "]",
                                    empty.substr(0, empty.size() - 1) + "]"}) {
        corpus.addTimeline(text);
    }
    for (const auto& text :
         Strings{R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":1}])",
                 R"([{"timestamp":1.5,"type":"ChunkEndMarker","chunkNumber":0}])",
                 R"([{"timestamp":"1","type":"ChunkEndMarker","chunkNumber":0}])",
                 R"([{"timestamp":9223372036854775808,"type":"ChunkEndMarker","chunkNumber":0}])",
                 R"([{"timestamp":1,"type":"<script>","chunkNumber":0}])",
                 R"([{"timestamp":1,"type":["ChunkEndMarker"],"chunkNumber":0}])",
                 R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":0,"chunkNumber":0}])",
                 R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":0,"x":1}])",
                 R"([{"timestamp":1,"type":"ChunkEndMarker","eventDetails":{},"chunkNumber":0}])",
                 R"([{"timestamp":1,"type":"UserInteraction","chunkNumber":0}])"}) {
        corpus.addTimeline(text);
    }
    const std::string target = R"({"xNormalizedTo1":0,"yNormalizedTo1":0,"xOriginalPx":0,"yOriginalPx":0})";
    for (const auto& details :
         Strings{"{}", "[]", "null", R"({"interactionId":"Tap"})", R"({"interactionId":"Tap","target":[]})",
                 R"({"interactionId":"Swipe","target":)" + target + "}",
                 R"({"interactionId":"Tap","target":)" + replaced(target, "0", "\"0\"") + "}",
                 R"({"interactionId":"Tap","target":)" + replaced(target, "0", "1e999") + "}",
                 R"({"interactionId":"Tap","target":)" + replaced(target, "{", R"({"z":0,)") + "}"}) {
        corpus.addTimeline(event("UserInteraction", details));
    }
    for (const auto& details :
         Strings{R"({"signalId":"DeadTap"})", R"({"signalId":"X","target":)" + target + "}",
                 R"({"signalId":"ErrorTap","error":"text","target":)" + target + "}",
                 R"({"signalId":"ErrorTap","error":{"message":7},"target":)" + target + "}",
                 R"({"signalId":"ErrorTap","error":{},"target":)" + target + "}"}) {
        corpus.addTimeline(event("SignalCaptured", details));
    }
    for (const auto& details : Strings{R"({"metadata":{}})", R"({"metadata":[7]})",
                                       R"({"metadata":[{"metadataId":"X","metadataValue":""}]})",
                                       R"({"metadata":[{"metadataId":"Platform","metadataValue":{"a":1}}]})",
                                       R"({"metadata":[{"metadataId":"Platform"}]})"}) {
        corpus.addTimeline(event("MetadataCaptured", details));
    }
    const auto screens = [](const std::string& list) {
        return R"({"changeType":"appear","detectionType":"auto","screenHierarchy":)" + list + "}";
    };
    for (const auto& list : Strings{"{}", "[7]", R"([{"depth":0,"screenName":"a"}])",
                                    R"([{"depth":0.5,"screenName":"a","screenType":"b"}])",
                                    R"([{"depth":0,"screenName":["a"],"screenType":"b"}])",
                                    R"([{"depth":0,"screenName":"\ud800","screenType":"b"}])"}) {
        corpus.addTimeline(event("ScreenChange", screens(list)));
    }
    for (const auto& details : Strings{R"({"windowWidthPx":"1","windowHeightPx":1,"mode":"Regular"})",
                                       R"({"windowWidthPx":1,"windowHeightPx":1,"mode":"Other"})",
                                       R"({"windowWidthPx":1,"windowHeightPx":1})",
                                       R"({"windowWidthPx":null,"windowHeightPx":1,"mode":"Regular"})"}) {
        corpus.addTimeline(event("WindowDimensions", details));
    }
}

}  // namespace mireth::receiver::test
