// Version, profile, compatibility, level, length size, then the sequence sets and the picture sets.
#include "video/ParameterSets.hpp"

#include <cstdint>

namespace mireth::receiver {
namespace {

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::optional<unsigned> byte() {
        if (bytes_.empty()) {
            return std::nullopt;
        }
        const auto value = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return value;
    }

    // `count` sets, each behind its length in two bytes.
    bool appendSets(unsigned count, std::string& units) {
        for (unsigned i = 0; i < count; ++i) {
            const auto high = byte();
            const auto low = byte();
            const std::size_t size = high && low ? *high * 256 + *low : bytes_.size() + 1;
            if (size > bytes_.size()) {
                return false;
            }
            units += {'\0', '\0', static_cast<char>(*high), static_cast<char>(*low)};
            units += bytes_.substr(0, size);
            bytes_.remove_prefix(size);
        }
        return true;
    }

  private:
    std::string_view bytes_;
};

}  // namespace

std::optional<std::string> parameterSetsAsUnits(std::string_view record) {
    if (record.size() < 6 || record[0] != 1 || (static_cast<unsigned char>(record[4]) & 3U) != 3) {
        return std::nullopt;
    }
    Reader reader(record.substr(5));
    std::string units;
    const auto sequences = reader.byte();
    if (!sequences || !reader.appendSets(*sequences & 31U, units)) {
        return std::nullopt;
    }
    const auto pictures = reader.byte();
    if (!pictures || !reader.appendSets(*pictures, units)) {
        return std::nullopt;
    }
    return units;
}

}  // namespace mireth::receiver
