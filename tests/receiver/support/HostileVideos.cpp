// Files that are no MP4, that are cut off, and whose boxes lie.
#include "support/HostileCorpus.hpp"

namespace mireth::receiver::test {
namespace {

// A file whose only track has these boxes in its media box.
std::string movieOf(const std::string& media) {
    return box("ftyp", "isom") + box("moov", box("trak", box("mdia", media)));
}

}  // namespace

void addVideos(HostileCorpus& corpus) {
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

}  // namespace mireth::receiver::test
