// A line of the remote log and its acknowledgement.
#pragma once

#include <string>

namespace mireth {

struct PostLogRequestBody {
    /// The JSON text of the line; "Message" on the wire.
    std::string message;
    /// The level's raw value; "LevelName" on the wire.
    std::string levelName;
};

enum class PostLogResponseStatus { Success, Failure };

struct PostLogResponse {
    PostLogResponseStatus status = PostLogResponseStatus::Failure;
};

}  // namespace mireth
