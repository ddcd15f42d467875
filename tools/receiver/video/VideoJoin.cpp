// Packets are copied from libavformat's reader to its writer with their times moved.
#include "video/VideoJoin.hpp"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "video/ParameterSets.hpp"
#include "video/SourceStream.hpp"

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
#include <libavutil/log.h>
#include <libavutil/mathematics.h>
}

namespace mireth::receiver {
namespace {

// Carries what went wrong out of the steps; never leaves this file.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void check(int code, const std::string& doing) {
    if (code < 0) {
        char text[AV_ERROR_MAX_STRING_SIZE] = {};
        av_strerror(code, text, sizeof text);
        throw Failure(doing + ": " + text);
    }
}

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct FreeOutput {
    void operator()(AVFormatContext* context) const {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct Options {
    AVDictionary* entries = nullptr;
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    ~Options() { av_dict_free(&entries); }
};

std::string_view extraOf(const AVCodecParameters& parameters) {
    return {reinterpret_cast<const char*>(parameters.extradata),
            static_cast<std::size_t>(std::max(parameters.extradata_size, 0))};
}

std::unique_ptr<ByteSource> opened(const VideoPart& part) {
    auto bytes = part.open();
    if (!bytes) {
        throw Failure(part.name + ": " + bytes.error());
    }
    return std::move(*bytes);
}

// One part, open for reading. Its stream's parameters come from the file's tables alone: looking for more
// would decode pictures.
class Input {
  public:
    explicit Input(const VideoPart& part) : part_(part), bytes_(opened(part)) {
        AVFormatContext* context = avformat_alloc_context();
        if (bytes_.context() == nullptr || context == nullptr) {
            avformat_free_context(context);
            throw Failure(part.name + ": out of memory");
        }
        context->pb = bytes_.context();
        Options options;
        // A file that points to others gets none of them.
        av_dict_set(&options.entries, "protocol_whitelist", "", 0);
        check(avformat_open_input(&context, nullptr, av_find_input_format("mp4"), &options.entries),
              part.name);
        context_.reset(context);
        for (unsigned i = 0; i < context->nb_streams; ++i) {
            if (context->streams[i]->codecpar->codec_id == AV_CODEC_ID_H264) {
                stream_ = context->streams[i];
                return;
            }
        }
        throw Failure(part.name + ": no H.264 track");
    }

    const AVStream& stream() const { return *stream_; }
    std::int64_t atMillis() const { return part_.atMillis; }

    // The next picture; false at the end of the part's place. What follows that in decoding order is not
    // needed by anything before it.
    bool read(AVPacket& packet) const {
        int code = 0;
        while ((code = av_read_frame(context_.get(), &packet)) >= 0) {
            const bool isPicture = packet.stream_index == stream_->index;
            if (isPicture && packet.dts < end()) {
                if (packet.duration > 0 && packet.dts > end() - packet.duration) {
                    packet.duration = end() - packet.dts;
                }
                return true;
            }
            av_packet_unref(&packet);
            if (isPicture) {
                return false;
            }
        }
        if (code != AVERROR_EOF) {
            check(code, part_.name);
        }
        return false;
    }

  private:
    std::int64_t end() const {
        return av_rescale_q(part_.mostMillis, AVRational{1, 1000}, stream_->time_base);
    }

    const VideoPart& part_;
    const SourceStream bytes_;
    std::unique_ptr<AVFormatContext, CloseInput> context_;
    AVStream* stream_ = nullptr;
};

class Output {
  public:
    Output(const std::string& path, const AVStream& like) : path_(path) {
        AVFormatContext* context = nullptr;
        check(avformat_alloc_output_context2(&context, nullptr, "mp4", path.c_str()), path);
        context_.reset(context);
        context->flags |= AVFMT_FLAG_BITEXACT;
        stream_ = avformat_new_stream(context, nullptr);
        if (stream_ == nullptr) {
            throw Failure(path + ": out of memory");
        }
        check(avcodec_parameters_copy(stream_->codecpar, like.codecpar), path);
        stream_->codecpar->codec_tag = 0;
        stream_->time_base = like.time_base;
        check(avio_open(&context->pb, path.c_str(), AVIO_FLAG_WRITE), path);
        Options options;
        // The index first, so that a player can begin before it has everything.
        av_dict_set(&options.entries, "movflags", "+faststart", 0);
        av_dict_set_int(&options.entries, "video_track_timescale", like.time_base.den, 0);
        check(avformat_write_header(context, &options.entries), path);
        sets_ = extraOf(*stream_->codecpar);
    }

    void add(const Input& input, AVPacket& packet) {
        const auto from = input.stream().time_base;
        if (packet.dts == AV_NOPTS_VALUE || packet.pts == AV_NOPTS_VALUE) {
            throw Failure(path_ + ": a picture of a part has no time");
        }
        av_packet_rescale_ts(&packet, from, stream_->time_base);
        const auto shift = av_rescale_q(input.atMillis(), AVRational{1, 1000}, stream_->time_base);
        packet.pts += shift;
        packet.dts += shift;
        // A part that is longer than its place must not make time run backwards.
        if (last_ && packet.dts <= *last_) {
            const auto late = *last_ + 1 - packet.dts;
            packet.dts += late;
            packet.pts = std::max(packet.pts + late, packet.dts);
        }
        last_ = packet.dts;
        packet.stream_index = stream_->index;
        packet.pos = -1;
        announceSets(input, packet);
        check(av_interleaved_write_frame(context_.get(), &packet), path_);
    }

    void finish() { check(av_write_trailer(context_.get()), path_); }

  private:
    // The file has one set of decoder parameters; a part with others carries them in its own key frames.
    void announceSets(const Input& input, AVPacket& packet) {
        const auto sets = extraOf(*input.stream().codecpar);
        const bool isKey = (packet.flags & AV_PKT_FLAG_KEY) != 0;
        if (!isKey || sets == sets_) {
            return;
        }
        const auto prefix = parameterSetsAsUnits(sets);
        if (!prefix) {
            throw Failure(path_ + ": a part's decoder parameters cannot be read");
        }
        const auto size = static_cast<int>(prefix->size());
        const int before = packet.size;
        check(av_grow_packet(&packet, size), path_);
        std::copy_backward(packet.data, packet.data + before, packet.data + packet.size);
        std::copy(prefix->begin(), prefix->end(), packet.data);
        sets_ = sets;
    }

    const std::string path_;
    std::unique_ptr<AVFormatContext, FreeOutput> context_;
    AVStream* stream_ = nullptr;
    std::optional<std::int64_t> last_;
    std::string sets_;  ///< the decoder parameters that are in force
};

}  // namespace

Stored<void> joinVideos(const std::vector<VideoPart>& parts, const std::string& output) {
    // Its complaints about a stranger's file go to nobody.
    av_log_set_level(AV_LOG_QUIET);
    try {
        const std::unique_ptr<AVPacket, FreePacket> packet(av_packet_alloc());
        std::optional<Output> joined;
        for (const auto& part : parts) {
            const Input input(part);
            if (!joined) {
                joined.emplace(output, input.stream());
            }
            while (input.read(*packet)) {
                joined->add(input, *packet);
            }
        }
        joined->finish();
        return {};
    } catch (const Failure& failure) {
        return std::unexpected(failure.what());
    }
}

}  // namespace mireth::receiver
