// A video is taken for what it is, or refused with the box that is wrong.
#include <algorithm>
#include <cstring>

#include "Property.hpp"
#include "base/ByteSource.hpp"
#include "video/Mp4Boxes.hpp"
#include "video/ParameterSets.hpp"

namespace {

class Bytes final : public mireth::receiver::ByteSource {
  public:
    explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

    std::uint64_t size() const override { return bytes_.size(); }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override {
        if (offset > bytes_.size() || into.size() > bytes_.size() - offset) {
            return false;
        }
        std::ranges::copy(bytes_.substr(offset, into.size()), into.begin());
        return true;
    }

  private:
    std::string_view bytes_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    constexpr std::int64_t dayMillis = 24LL * 60 * 60 * 1000;
    Bytes file(fuzz::textOf(data, size));
    if (const auto facts = receiver::inspectMp4(file)) {
        fuzz::require(facts->frames >= 0 && facts->frames <= 65'536, "a chunk has a sane number of frames");
        fuzz::require(facts->durationMillis >= 0 && facts->durationMillis <= dayMillis,
                      "a chunk ends within a day");
    } else {
        fuzz::require(!facts.error().empty(), "a refusal says why");
    }
    if (const auto units = receiver::parameterSetsAsUnits(fuzz::textOf(data, size))) {
        fuzz::require(units->size() <= size * 4, "units are not longer than what they are made of");
    }
    return 0;
}
