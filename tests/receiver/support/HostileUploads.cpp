// Grouped by what is wrong: the framing, the parts' heads, the information, the timeline, the video's boxes.
#include "support/HostileUploads.hpp"

#include <utility>

#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

using Strings = std::vector<std::string>;

class Corpus {
  public:
    explicit Corpus(std::string sessionId) : id_(std::move(sessionId)) {}

    Upload sound(std::int64_t number = 0) const { return chunkUpload(id_, number); }
    void add(const std::string& name, const Upload& upload) {
        addBody(name, upload.body(), upload.contentType());
    }
    void addBody(const std::string& name, std::string body, std::string type = Upload{}.contentType()) {
        uploads_.push_back({name + " " + std::to_string(uploads_.size()), std::move(type), std::move(body)});
    }
    void addInfo(const std::string& text) {
        auto upload = sound();
        upload.parts[1] = jsonPart("info", text);
        add("info", upload);
    }
    void addTimeline(const std::string& text) {
        auto upload = sound();
        upload.parts[0] = jsonPart("timeline", text);
        add("timeline", upload);
    }
    void addVideo(const std::string& bytes) {
        auto upload = sound();
        upload.parts[2] = videoPart(bytes);
        add("video", upload);
    }
    const std::string& id() const { return id_; }
    std::vector<HostileUpload> take() { return std::move(uploads_); }

  private:
    const std::string id_;
    std::vector<HostileUpload> uploads_;
};

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const auto at = text.find(what);
    return at == std::string::npos ? text + "?" : text.replace(at, what.size(), with);
}

void addFramings(Corpus& corpus) {
    const auto sound = corpus.sound();
    const auto body = sound.body();
    const std::string delimiter = "--" + sound.boundary;
    for (const auto& type :
         Strings{"", "multipart/form-data", "multipart/form-data; boundary=", "text/html",
                 "multipart/mixed; boundary=" + sound.boundary,
                 "multipart/form-data; boundary=\"" + sound.boundary,
                 "multipart/form-data; boundary=" + std::string(71, 'b'),
                 "multipart/form-data; boundary=a\tb", "multipart/form-data; boundary=\"a \"",
                 "multipart/form-data; boundary=a; boundary=" + sound.boundary,
                 "multipart/form-data, boundary=" + sound.boundary,
                 "application/x-www-form-urlencoded; boundary=" + sound.boundary,
                 "multipart/form-data; boundary={" + sound.boundary + "}"}) {
        corpus.addBody("type", body, type);
    }
    for (const auto& text :
         Strings{"", "\r\n", delimiter, delimiter + "--", delimiter + "\r\n", delimiter + "--" + body,
                 "preamble\r\n" + body, "\r\n" + body, body + "epilogue", body + body,
                 body + std::string(3, '\0'), replaced(body, "\r\n\r\n", "\n\n"),
                 replaced(body, "\r\n\r\n", "\r\n"), replaced(body, delimiter + "\r\n", delimiter + "\n"),
                 replaced(body, delimiter + "\r\n", delimiter + " \r\n"),
                 replaced(body, delimiter + "\r\n", delimiter + "x\r\n"), std::string(100'000, '-'),
                 std::string(1000, '\0'), delimiter + "\r\n" + std::string(100'000, 'h')}) {
        corpus.addBody("framing", text);
    }
    for (std::size_t cut = 1; cut < 20; ++cut) {
        corpus.addBody("cut", body.substr(0, body.size() * cut / 20));
    }
    std::string many;
    for (int i = 0; i < 20'000; ++i) {
        many += delimiter + "\r\nContent-Disposition: form-data; name=\"chunk[extra]\"\r\n\r\n\r\n";
    }
    corpus.addBody("many parts", many + delimiter + "--");
    for (std::size_t part = 0; part < sound.parts.size(); ++part) {
        auto twice = sound;
        twice.parts.push_back(sound.parts[part]);
        corpus.add("twice", twice);
        auto without = sound;
        without.parts.erase(without.parts.begin() + static_cast<std::ptrdiff_t>(part));
        corpus.add("without", without);
    }
}

void addHeads(Corpus& corpus) {
    const Strings names{"timeline", "info", "playback"};
    for (std::size_t part = 0; part < names.size(); ++part) {
        const auto name = "name=\"chunk[" + names[part] + "]\"";
        const std::string disposition = "Content-Disposition: form-data; ";
        for (const auto& head :
             Strings{"", "X", ":", disposition, disposition + "name=", disposition + "name=\"\"",
                     disposition + "name=\"chunk[" + names[part], disposition + name + "; " + name,
                     "Content-Disposition: attachment; " + name,
                     disposition + name + "\r\n" + disposition + name, disposition + name + "\r\n folded",
                     disposition + name + "\rX: y", disposition + "name=\"chunk[../../" + names[part] + "]\"",
                     disposition + "name=\"CHUNK[" + names[part] + "]\"",
                     disposition + "name=\"chunk[" + names[part] + std::string(1, '\0') + "]\"",
                     disposition + "name*=UTF-8''chunk%5B" + names[part] + "%5D",
                     disposition + name + "\r\nX: " + std::string(5000, 'x')}) {
            auto upload = corpus.sound();
            upload.parts[part].head = head;
            corpus.add("head of " + names[part], upload);
        }
    }
    for (const auto& type : Strings{"text/html", "video/mp4; x", "image/svg+xml", ""}) {
        auto upload = corpus.sound();
        upload.parts[2].head = replaced(upload.parts[2].head, "video/mp4", type);
        corpus.add("type of the video", upload);
    }
}

void addInfos(Corpus& corpus) {
    const auto info = infoJson(corpus.id(), 0);
    const auto with = [&](const std::string& key, const std::string& value) {
        const auto at = info.find("\"" + key + "\":") + key.size() + 3;
        const auto end = info.find_first_of(",}", at);
        corpus.addInfo(std::string(info).replace(at, end - at, value));
    };
    for (const auto& text :
         Strings{"", "null", "[]", "{}", "\"\"", "0", "{", info + info, info + ",", std::string(16'000, '['),
                 std::string(8000, ' ') + "{", "[" + info + "]"}) {
        corpus.addInfo(text);
    }
    for (const auto* const key : {"brandId", "projectId", "sessionId", "brandDc"}) {
        for (const auto& value : Strings{"null", "7", "[]", "\"\"", "\"\xFF\"", R"("\ud800")",
                                         R"({"$ne":""})", "\"" + std::string(2000, 'x') + "\""}) {
            with(key, value);
        }
    }
    for (const auto& value :
         Strings{"\"../../etc/passwd\"", R"("' OR 1=1 --")", R"("a\u0000b")", "\"unknown\""}) {
        with("sessionId", value);
    }
    for (const auto* const key : {"chunkNumber", "chunkTimestamp", "playbackDataVersion"}) {
        for (const auto& value :
             Strings{"null", "\"0\"", "0.5", "1e400", "9223372036854775808", "[0]", "true"}) {
            with(key, value);
        }
    }
    for (const auto* const value : {"-1", "1000000", "9223372036854775807", "1e3"}) {
        with("chunkNumber", value);
    }
    with("playbackDataVersion", "2");
    corpus.addInfo(replaced(info, "{", R"({"brandId":"b2",)"));
    corpus.addInfo(replaced(info, "{", R"({"__proto__":{},)"));
}

void addTimelines(Corpus& corpus) {
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

// A file whose only track has these boxes in its media box.
std::string movieOf(const std::string& media) {
    return box("ftyp", "isom") + box("moov", box("trak", box("mdia", media)));
}

void addVideos(Corpus& corpus) {
    const auto sound = mp4();
    const std::string ftyp = box("ftyp", "isom");
    const auto movie = box("moov", track({}));
    for (const auto& bytes : Strings{"",
                                     "x",
                                     "<svg onload=alert(1)>",
                                     std::string(100'000, '\0'),
                                     std::string(100'000, '\xFF'),
                                     ftyp,
                                     movie,
                                     ftyp + ftyp,
                                     ftyp + movie + movie,
                                     ftyp + box("moov", ""),
                                     ftyp + box("moov", track({.handler = "soun"})),
                                     sound + box("moof", ""),
                                     sound + "x",
                                     sound + bigEndian(8, 4),
                                     sound + bigEndian(7, 4) + "free",
                                     sound + bigEndian(0xFFFFFFFF, 4) + "free",
                                     sound + bigEndian(1, 4) + "free" + bigEndian(~0ULL, 8),
                                     sound + bigEndian(1, 4) + "free" + bigEndian(15, 8),
                                     sound + bigEndian(1, 4) + "free",
                                     box("free", "") + sound,
                                     ftyp + box("moov", std::string(4'200'000, '\0')),
                                     ftyp + bigEndian(0x7FFFFFFF, 4) + "moov" + track({}),
                                     "\x1A\x45\xDF\xA3" + sound,
                                     "RIFF" + sound}) {
        corpus.addVideo(bytes);
    }
    for (std::size_t cut = 1; cut < 12; ++cut) {
        corpus.addVideo(sound.substr(0, sound.size() * cut / 12));
    }
    std::string boxes = ftyp;
    for (int i = 0; i < 5000; ++i) {
        boxes += box("free", "");
    }
    corpus.addVideo(boxes);
    std::string nested = "x";
    for (int i = 0; i < 1000; ++i) {
        nested = box("moov", nested);
    }
    corpus.addVideo(ftyp + nested);
    const auto header = mediaHeader({});
    const auto handler = box("hdlr", bigEndian(0, 8) + "vide" + bigEndian(0, 13));
    const auto tables = [&](const std::string& sizes) {
        return header + handler + box("minf", box("stbl", box("stsz", sizes)));
    };
    for (const auto& sizes : Strings{"", bigEndian(0, 8), bigEndian(0, 8) + bigEndian(1, 4),
                                     bigEndian(0, 8) + bigEndian(~0ULL, 8),
                                     bigEndian(0, 4) + bigEndian(1, 4) + bigEndian(0xFFFFFFFF, 4),
                                     bigEndian(0, 4) + bigEndian(0xFFFFFFFF, 4) + bigEndian(2, 4),
                                     bigEndian(0, 8) + bigEndian(1, 4) + bigEndian(0x7FFFFFFF, 4)}) {
        corpus.addVideo(movieOf(tables(sizes)));
    }
    for (const auto& media : Strings{
             "", header, handler, header + handler, header + header + handler, handler + box("minf", ""),
             header + box("hdlr", "vide"), header + handler + box("minf", box("stbl", "")),
             header + handler +
                 box("minf", box("stbl", box("stsz", bigEndian(0, 12)) + box("stsz", bigEndian(0, 12))))}) {
        corpus.addVideo(movieOf(media));
    }
    for (const auto& shape : {Mp4Shape{.timeScale = 0}, Mp4Shape{.duration = ~0ULL, .wideHeader = true},
                              Mp4Shape{.timeScale = 1, .duration = 0xFFFFFFFF}}) {
        corpus.addVideo(mp4(shape));
    }
}

}  // namespace

std::vector<HostileUpload> hostileUploads(const std::string& sessionId) {
    Corpus corpus(sessionId);
    addFramings(corpus);
    addHeads(corpus);
    addInfos(corpus);
    addTimelines(corpus);
    addVideos(corpus);
    return corpus.take();
}

std::vector<HostileUpload> harmlessUploads(const std::string& sessionId) {
    Corpus corpus(sessionId);
    std::int64_t number = 0;
    for (const auto& name :
         Strings{"../../../../tmp/escaped.mp4", "/etc/passwd", "..", ".", "", "a/b\\c", "CON", "receiver.db",
                 "lock", "x.mp4;rm -rf", "$(id)", "`id`", "%2e%2e%2f", std::string(3000, 'n'), "\xFF\xFE",
                 "<script>", "\x7F\x01"}) {
        auto upload = corpus.sound(number++);
        upload.parts[2].head = replaced(upload.parts[2].head, "S1_0.mp4", name);
        corpus.add("file name", upload);
    }
    return corpus.take();
}

}  // namespace mireth::receiver::test
