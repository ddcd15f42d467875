// Chunk uploads that mean harm or come from broken clients, each under a name. Used to see that none is taken
// and none does harm.
#pragma once

#include <string>
#include <vector>

namespace mireth::receiver::test {

struct HostileUpload {
    std::string name;
    std::string contentType;
    std::string body;
};

/// Everything but what is wrong with it fits the open session `sessionId` and its chunk 0.
std::vector<HostileUpload> hostileUploads(const std::string& sessionId);

/// Uploads that are sound, with names of files and texts that would do harm if they were taken for more than
/// texts.
std::vector<HostileUpload> harmlessUploads(const std::string& sessionId);

}  // namespace mireth::receiver::test
