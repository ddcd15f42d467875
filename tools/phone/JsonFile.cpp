// Files read block by block, and a parser that is watched while it works.
#include "phone/JsonFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <vector>

#include "phone/ScenarioError.hpp"

namespace mireth::phone {

namespace {

class OpenFile {
  public:
    OpenFile(const std::filesystem::path& file, bool followLinks)
        // Non-blocking, so that a pipe is refused and not waited for.
        : descriptor_(
              ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | (followLinks ? 0 : O_NOFOLLOW))) {
        if (descriptor_ < 0) {
            fail(errno == ELOOP ? "it is a symbolic link" : std::generic_category().message(errno));
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { ::close(descriptor_); }

    std::string read(std::size_t maximumBytes) const {
        struct stat status{};
        if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
            fail("it is not a regular file");
        }
        std::string bytes;
        std::vector<char> block(std::size_t{64} << 10U);
        for (;;) {
            const ssize_t count = ::read(descriptor_, block.data(), block.size());
            if (count < 0) {
                fail(std::generic_category().message(errno));
            }
            if (count == 0) {
                return bytes;
            }
            bytes.append(block.data(), static_cast<std::size_t>(count));
            if (bytes.size() > maximumBytes) {
                fail("it is larger than " + std::to_string(maximumBytes >> 20U) + " MiB");
            }
        }
    }

  private:
    [[noreturn]] static void fail(const std::string& why) {
        throw ScenarioError("", "cannot be read: " + why);
    }
    const int descriptor_;
};

using Json = nlohmann::ordered_json;

/// Sees every value while it is parsed.
class ParseGuard {
  public:
    bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        if (depth > maximumJsonDepth) {
            throw ScenarioError("", "is nested more than " + std::to_string(maximumJsonDepth) + " deep");
        }
        if (event == Json::parse_event_t::object_start) {
            keys_.emplace_back();
        } else if (event == Json::parse_event_t::object_end) {
            keys_.pop_back();
        } else if (event == Json::parse_event_t::key &&
                   !keys_.back().insert(parsed.get<std::string>()).second) {
            throw ScenarioError("", "has the key \"" + parsed.get<std::string>() + "\" twice in one object");
        }
        return true;
    }

  private:
    std::vector<std::set<std::string>> keys_;
};

/// The library puts its own name and number in brackets in front.
std::string withoutPrefix(const std::string& message) {
    const auto end = message.find("] ");
    return end == std::string::npos ? message : message.substr(end + 2);
}

}  // namespace

std::string readWholeFile(const std::filesystem::path& file, std::size_t maximumBytes, bool followLinks) {
    return OpenFile(file, followLinks).read(maximumBytes);
}

Json parseJson(const std::string& text) {
    try {
        ParseGuard guard;
        return Json::parse(text, [&guard](int depth, Json::parse_event_t event, const Json& parsed) {
            return guard(depth, event, parsed);
        });
    } catch (const Json::exception& error) {
        throw ScenarioError("", "is not JSON: " + withoutPrefix(error.what()));
    }
}

}  // namespace mireth::phone
