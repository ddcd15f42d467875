// However an upload's bytes are cut on their way, the same parts come out of it. The first byte of the input
// says how long the cuts are.
#include <algorithm>
#include <string>
#include <string_view>

#include "Property.hpp"
#include "wire/MultipartReader.hpp"

namespace {

using namespace mireth::receiver;

/// Writes down what it is told, the bytes of a part without their cuts.
class Protocol final : public PartListener {
  public:
    bool partBegan(const PartHead& head) override {
        text += "began " + head.name + '/' + head.filename.value_or("-") + '/' +
                head.contentType.value_or("-") + '\n';
        return true;
    }
    bool partBytes(std::string_view bytes) override {
        text += bytes;
        return true;
    }
    bool partEnded() override {
        text += "\nended\n";
        return true;
    }

    std::string text;
};

struct Outcome {
    std::string parts;
    std::string complaint;
    bool complete = false;
    bool operator==(const Outcome&) const = default;
};

Outcome read(std::string_view body, std::size_t cut) {
    Protocol protocol;
    MultipartReader reader("b", protocol);
    bool goesOn = true;
    for (; goesOn && !body.empty(); body.remove_prefix(std::min(cut, body.size()))) {
        goesOn = reader.consume(body.substr(0, cut));
    }
    return {reader.complaint().empty() ? protocol.text : "", reader.complaint(), reader.complete()};
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    if (size == 0) {
        return 0;
    }
    const std::string_view body = fuzz::textOf(data, size).substr(1);
    const Outcome whole = read(body, std::max<std::size_t>(body.size(), 1));
    fuzz::require(read(body, std::size_t{data[0]} + 1) == whole, "cuts change nothing");
    (void)MultipartReader::boundaryOf(body);
    return 0;
}
