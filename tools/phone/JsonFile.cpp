// Files read block by block, and a parser that is watched while it works.
#include "phone/JsonFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "phone/JsonPath.hpp"
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

/// Sees every value while it is parsed, and knows where it stands.
class ParseGuard {
  public:
    bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        if (depth > maximumJsonDepth) {
            throw ScenarioError("", "is nested more than " + std::to_string(maximumJsonDepth) + " deep");
        }
        switch (event) {
            case Json::parse_event_t::key:
                enterMember(parsed.get<std::string>());
                break;
            case Json::parse_event_t::value:
                enterElement();
                break;
            case Json::parse_event_t::object_start:
            case Json::parse_event_t::array_start:
                enterElement();
                open_.emplace_back().isList = event == Json::parse_event_t::array_start;
                break;
            case Json::parse_event_t::object_end:
            case Json::parse_event_t::array_end:
                open_.pop_back();
                break;
        }
        return true;
    }

  private:
    /// An object or a list that has begun and not ended.
    struct Open {
        bool isList = false;
        std::set<std::string> keys;
        /// Of what is being parsed in it.
        std::string key;
        std::size_t index = 0;
        bool isFresh = true;
    };

    void enterMember(const std::string& key) {
        auto& object = open_.back();
        if (!object.keys.insert(key).second) {
            throw ScenarioError(placeOfInnermost(), "has the key " + quotedText(key) + " twice");
        }
        object.key = key;
    }

    void enterElement() {
        if (!open_.empty() && open_.back().isList && !std::exchange(open_.back().isFresh, false)) {
            ++open_.back().index;
        }
    }

    std::string placeOfInnermost() const {
        std::string place = "$";
        for (std::size_t level = 0; level + 1 < open_.size(); ++level) {
            const auto& outer = open_[level];
            place = outer.isList ? elementPath(place, outer.index) : memberPath(place, outer.key);
        }
        return place;
    }

    std::vector<Open> open_;
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
