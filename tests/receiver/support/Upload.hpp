// The body of a chunk upload, as a client writes it, with every piece open to change. Used by the upload
// tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/Mp4Builder.hpp"

namespace mireth::receiver::test {

struct UploadPart {
    std::string head;  ///< header lines without the empty line
    std::string content;
};

struct Upload {
    std::string boundary = "6F9619FF-8B86-D011-B42D-00C04FC964FF";
    std::vector<UploadPart> parts;

    std::string body() const;
    std::string contentType() const { return "multipart/form-data; boundary=" + boundary; }
};

UploadPart jsonPart(const std::string& name, const std::string& content);
UploadPart videoPart(const std::string& content);

/// The chunk's information as JSON.
std::string infoJson(const std::string& sessionId, std::int64_t number, const std::string& brandId = "b1",
                     const std::string& projectId = "p1");
/// A timeline of every kind of event.
std::string timelineJson(std::int64_t number);

/// Timeline, information and video, in that order.
Upload chunkUpload(const std::string& sessionId, std::int64_t number, const std::string& video = mp4());

}  // namespace mireth::receiver::test
