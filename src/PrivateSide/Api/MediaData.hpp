// A file part of a multipart body.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "PrivateSide/Api/Json.hpp"

namespace mireth {

struct MediaData {
    std::filesystem::path fileURL;
    /// The MIME type of the file, such as "video/mp4".
    std::string contentType;
};

/// The parts of a multipart body: names with JSON values or files, in writing order.
using FormData = std::vector<std::pair<std::string, std::variant<std::shared_ptr<const Json>, MediaData>>>;

}  // namespace mireth
