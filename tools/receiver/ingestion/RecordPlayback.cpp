// The order of checks: shape of the body, who it is for, how often, what it holds.
#include "ingestion/RecordPlayback.hpp"

#include <algorithm>
#include <utility>

#include "base/HeaderParameters.hpp"
#include "exchange/Answers.hpp"
#include "store/TimelineText.hpp"
#include "video/Mp4Boxes.hpp"
#include "wire/TimelineValidator.hpp"

namespace mireth::receiver {
namespace {

// The word under which a refused chunk is counted.
const char* outcomeOf(std::string_view status, int httpStatus) {
    if (status == "THROTTLED") {
        return "throttled";
    }
    return httpStatus == 400 ? "malformed" : httpStatus >= 500 ? "failed" : "refused";
}

}  // namespace

RecordPlayback::RecordPlayback(Services services, UploadLimits& shared, std::string_view contentType)
    : services_(services), shared_(shared) {
    if (const auto boundary = MultipartReader::boundaryOf(contentType)) {
        reader_.emplace(*boundary, static_cast<PartListener&>(*this));
    } else {
        malformed("it is not multipart/form-data with a boundary");
    }
}

bool RecordPlayback::settle(const char* status, int httpStatus, const std::string& why) {
    if (!answer_) {
        services_.environment.report(
            "a chunk was answered " + std::string(status) + ": " + why +
            (info_ ? " (session " + info_->sessionId + ", chunk " + std::to_string(info_->chunkNumber) + ")"
                   : ""));
        answer_ = statusAnswer(status, httpStatus);
        services_.metrics.countChunk(outcomeOf(status, httpStatus));
        video_.reset();
        timeline_.reset();
        held_.release();
    }
    return false;
}

void RecordPlayback::accept(std::string_view bytes) {
    if (!answer_ && !reader_->consume(bytes)) {
        malformed(reader_->complaint());
    }
}

bool RecordPlayback::partBegan(const PartHead& head) {
    if (head.name == "chunk[timeline]" && !timeline_) {
        part_ = Part::timeline;
        timeline_.emplace();
        return true;
    }
    if (head.name == "chunk[info]" && !infoText_) {
        part_ = Part::info;
        infoText_.emplace();
        return true;
    }
    if (head.name == "chunk[playback]" && !video_) {
        part_ = Part::playback;
        return beginVideo(head);
    }
    return malformed("the part \"" + head.name + "\" is unknown or comes twice");
}

bool RecordPlayback::beginVideo(const PartHead& head) {
    if (!head.filename || !head.contentType || !equalsIgnoringCase(*head.contentType, "video/mp4")) {
        return malformed("the part \"chunk[playback]\" is not a file of type video/mp4");
    }
    auto video = services_.store.beginVideo();
    if (!video) {
        return failed(video.error());
    }
    video_ = std::move(*video);
    return video_ != nullptr || noRoom();
}

bool RecordPlayback::collect(std::string& into, std::string_view bytes, std::size_t most, const char* what) {
    if (into.size() + bytes.size() > most) {
        return settle("ERROR", 413, std::string(what) + " is longer than " + std::to_string(most) + " bytes");
    }
    into += bytes;
    return true;
}

bool RecordPlayback::collectTimeline(std::string_view bytes) {
    if (!held_.hold(std::min(timeline_->size() + bytes.size(), longestTimeline))) {
        return settle("ERROR", 503, "too many long timelines come in at once");
    }
    return collect(*timeline_, bytes, longestTimeline, "the timeline");
}

bool RecordPlayback::partBytes(std::string_view bytes) {
    if (part_ == Part::timeline) {
        return collectTimeline(bytes);
    }
    if (part_ == Part::info) {
        return collect(*infoText_, bytes, longestChunkInfo, "the chunk information");
    }
    const auto written = video_->append(bytes);
    if (!written) {
        return failed(written.error());
    }
    return *written || noRoom();
}

bool RecordPlayback::partEnded() {
    const Part ended = std::exchange(part_, Part::none);
    return ended != Part::info || admit();
}

// As soon as it is known whom the chunk is for: what will be refused anyway need not be written.
bool RecordPlayback::admit() {
    auto info = readChunkInfo(*infoText_);
    if (!info) {
        return malformed(info.error());
    }
    info_ = std::move(*info);
    const auto session = services_.store.session(info_->sessionId);
    if (!session) {
        return failed(session.error());
    }
    if (!*session || (*session)->closedMillis) {
        return settle("ERROR", 200, "the session is unknown or closed");
    }
    if ((*session)->brandId != info_->brandId || (*session)->projectId != info_->projectId) {
        return settle("ERROR", 200, "the session is of another project");
    }
    const auto* const project = services_.config.find(info_->brandId, info_->projectId);
    if (project == nullptr) {
        return settle("ERROR", 200, "the project is no longer known");
    }
    if (!shared_.rate.take(info_->brandId, info_->projectId, project->uploadRate,
                           services_.environment.steadyNow())) {
        return settle("THROTTLED", 200, "the project uploads too fast");
    }
    return true;
}

Answer RecordPlayback::finish() {
    if (!answer_ && !reader_->complete()) {
        malformed("the body ends before its closing boundary");
    }
    if (!answer_ && (!timeline_ || !info_ || !video_)) {
        malformed("a part is missing");
    }
    if (!answer_) {
        keep();
    }
    return *answer_;
}

std::optional<RecordPlayback::CheckedTimeline> RecordPlayback::checkTimeline() {
    const Turn turn(shared_.checking);
    const auto events = validateTimeline(*timeline_, info_->chunkNumber);
    if (!events) {
        malformed(events.error());
        return std::nullopt;
    }
    timeline_->clear();
    timeline_->shrink_to_fit();
    return CheckedTimeline{.events = static_cast<std::int64_t>(events->size()),
                           .text = timelineText(*events, info_->chunkNumber),
                           .summary = summarise(*events)};
}

void RecordPlayback::keep() {
    auto timeline = checkTimeline();
    if (!timeline) {
        return;
    }
    const auto facts = inspectMp4(*video_);
    if (!facts) {
        malformed("the video: " + facts.error());
        return;
    }
    const Chunk chunk{.number = info_->chunkNumber,
                      .endMillis = info_->chunkTimestamp,
                      .receivedMillis = services_.environment.wallMillis(),
                      .bytes = 0,
                      .frames = facts->frames,
                      .durationMillis = facts->durationMillis,
                      .events = timeline->events,
                      .timeline = std::move(timeline->text)};
    const auto outcome = services_.store.putChunk(info_->sessionId, chunk, timeline->summary, *video_,
                                                  services_.config.limits);
    if (!outcome) {
        failed(outcome.error());
        return;
    }
    switch (*outcome) {
        case PutOutcome::kept:
        case PutOutcome::repeated:
            services_.metrics.countChunk(*outcome == PutOutcome::kept ? "kept" : "repeated");
            answer_ = statusAnswer("SUCCESS");
            return;
        case PutOutcome::conflicting:
            settle("ERROR", 200, "another video has that chunk number");
            return;
        case PutOutcome::notOpen:
            settle("ERROR", 200, "the session was closed meanwhile");
            return;
        case PutOutcome::noRoom:
            noRoom();
            return;
        case PutOutcome::tooLarge:
            settle("ERROR", 413, "the session has too many bytes");
            return;
        case PutOutcome::full:
            settle("ERROR", 413, "the session has too many chunks");
            return;
    }
}

Answer RecordPlayback::refuse(int status) {
    settle("ERROR", status, status == 413 ? "its body is too long" : "its body broke off");
    answer_->status = status;
    return *answer_;
}

}  // namespace mireth::receiver
