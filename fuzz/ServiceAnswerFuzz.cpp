// Whatever the ingestion service answers is read or refused.
#include <cmath>

#include "PrivateSide/Api/JSONCodec.hpp"
#include "PrivateSide/Api/Models/SrConfigurationResponse.hpp"
#include "PrivateSide/Api/Models/SrSessionModels.hpp"
#include "Property.hpp"

namespace mireth {

template <>
std::expected<SrConfigurationResponse, std::string> decodeModel(std::string_view text);
template <>
std::expected<SrSessionResponse, std::string> decodeModel(std::string_view text);
template <>
std::expected<SrCloseSessionResponse, std::string> decodeModel(std::string_view text);
template <>
std::expected<SrRecordPlaybackResponse, std::string> decodeModel(std::string_view text);

}  // namespace mireth

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    const std::string_view text = fuzz::textOf(data, size);
    if (const auto configuration = decodeModel<SrConfigurationResponse>(text)) {
        fuzz::require(std::isfinite(configuration->samplingRate), "a sampling rate is a number");
        (void)description(*configuration);
    }
    (void)decodeModel<SrSessionResponse>(text);
    (void)decodeModel<SrCloseSessionResponse>(text);
    (void)decodeModel<SrRecordPlaybackResponse>(text);
    return 0;
}
