// One chunk upload on its way: the video goes to disk while it arrives, the two JSON parts are held, and
// everything is checked before any of it is kept.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/Exchange.hpp"
#include "ingestion/UploadLimits.hpp"
#include "service/Services.hpp"
#include "store/TimelineSummary.hpp"
#include "wire/ChunkInfo.hpp"
#include "wire/MultipartReader.hpp"

namespace mireth::receiver {

/// The parts may come in any order. Once the upload is refused, the rest of its body is read and thrown away,
/// so that the client gets to see the answer.
class RecordPlayback final : public Exchange, private PartListener {
  public:
    /// `shared` outlives the exchange.
    RecordPlayback(Services services, UploadLimits& shared, std::string_view contentType);

    std::uint64_t bodyLimit() const override { return services_.config.limits.requestBytes; }
    void accept(std::string_view bytes) override;
    Answer finish() override;
    Answer refuse(int status) override;

  private:
    enum class Part { none, timeline, info, playback };

    struct CheckedTimeline {
        std::int64_t events = 0;
        std::string text;
        TimelineSummary summary;
    };

    bool partBegan(const PartHead& head) override;
    bool partBytes(std::string_view bytes) override;
    bool partEnded() override;

    bool beginVideo(const PartHead& head);
    bool collectTimeline(std::string_view bytes);
    bool collect(std::string& into, std::string_view bytes, std::size_t most, const char* what);
    bool admit();
    void keep();
    /// The timeline checked and in the form in which it is kept; none when it was refused.
    std::optional<CheckedTimeline> checkTimeline();
    /// Settles the answer; always false, as what the listener's operations return then.
    bool settle(const char* status, int httpStatus, const std::string& why);
    bool malformed(const std::string& why) { return settle("ERROR", 400, why); }
    bool failed(const std::string& why) { return settle("ERROR", 500, why); }
    bool noRoom() { return settle("ERROR", 507, "there is no room left on the disk"); }

    const Services services_;
    UploadLimits& shared_;
    HeldText held_{shared_.text};
    std::optional<MultipartReader> reader_;
    Part part_ = Part::none;
    std::optional<std::string> timeline_;
    std::optional<std::string> infoText_;
    std::optional<ChunkInfo> info_;
    std::unique_ptr<IncomingVideo> video_;
    std::optional<Answer> answer_;  ///< once it is settled
};

}  // namespace mireth::receiver
