// Collects hostile uploads, each a sound one with something wrong in it. Used by HostileUploads.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/HostileUploads.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {

class HostileCorpus {
  public:
    explicit HostileCorpus(std::string sessionId) : id_(std::move(sessionId)) {}

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

using Strings = std::vector<std::string>;

/// `text` with the first `what` replaced; never as it was.
inline std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const auto at = text.find(what);
    return at == std::string::npos ? text + "?" : text.replace(at, what.size(), with);
}

/// Timelines, and boxes of a video, that mean harm.
void addTimelines(HostileCorpus& corpus);
void addVideos(HostileCorpus& corpus);

}  // namespace mireth::receiver::test
