// Request lines, queries, headers and form bodies are read or refused; what is printed of them is harmless.
#include "Property.hpp"
#include "access/HostCheck.hpp"
#include "base/PrintableText.hpp"
#include "exchange/ByteRange.hpp"
#include "exchange/RequestTarget.hpp"
#include "viewing/SessionQueryReader.hpp"
#include "wire/ClientLogForm.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    const std::string_view text = fuzz::textOf(data, size);
    if (const auto target = receiver::parseTarget(text)) {
        (void)receiver::readSessionQuery(*target);
    }
    if (const auto form = receiver::readClientLogForm(text)) {
        fuzz::require(receiver::isUtf8(form->message), "a log line is UTF-8");
    }
    constexpr std::uint64_t fileSize = 1000;
    if (const auto range = receiver::byteRange(text, fileSize); range && *range) {
        fuzz::require(
            (*range)->size > 0 && (*range)->first < fileSize && (*range)->size <= fileSize - (*range)->first,
            "a range lies within the file");
    }
    (void)receiver::isOwnHost(text, {"replay.example"});
    const std::string shown = receiver::printableText(text);
    fuzz::require(receiver::isUtf8(shown), "what is printed is UTF-8");
    fuzz::require(receiver::printableText(shown) == shown, "what is printed stays as it is");
    return 0;
}
