// Grouped by what is wrong: here the framing, the parts' heads and the information; the timelines and the
// videos have files of their own.
#include "support/HostileUploads.hpp"

#include "support/HostileCorpus.hpp"

namespace mireth::receiver::test {
namespace {

void addFramings(HostileCorpus& corpus) {
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

void addHeads(HostileCorpus& corpus) {
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

void addInfos(HostileCorpus& corpus) {
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

}  // namespace

std::vector<HostileUpload> hostileUploads(const std::string& sessionId) {
    HostileCorpus corpus(sessionId);
    addFramings(corpus);
    addHeads(corpus);
    addInfos(corpus);
    addTimelines(corpus);
    addVideos(corpus);
    return corpus.take();
}

std::vector<HostileUpload> harmlessUploads(const std::string& sessionId) {
    HostileCorpus corpus(sessionId);
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
