#include "platforms/linux/media/Mp4Muxer.hpp"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mem.h>
}

#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace mireth::platform {

namespace {

/// More than the boxes of the index take up: what every file has, and what each picture adds (a size, a
/// duration, a place in the list of key frames, an offset).
std::size_t indexSize(const Mp4VideoTrack& track, std::size_t samples) {
    return 2048 + track.parameterSets.size() + 32 * samples;
}

std::unexpected<std::string> failure(std::string_view what, int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "unknown error";
    av_strerror(code, text, sizeof text);
    return std::unexpected(std::string(what) + ": " + text);
}

struct FormatDeleter {
    void operator()(AVFormatContext* format) const noexcept {
        if (format->pb != nullptr) {
            std::uint8_t* bytes = nullptr;
            avio_close_dyn_buf(format->pb, &bytes);
            av_free(bytes);
        }
        avformat_free_context(format);
    }
};

struct PacketDeleter {
    void operator()(AVPacket* packet) const noexcept { av_packet_free(&packet); }
};

struct DictionaryDeleter {
    void operator()(AVDictionary* dictionary) const noexcept { av_dict_free(&dictionary); }
};

class Mp4Muxer {
  public:
    std::expected<void, std::string> open(const Mp4VideoTrack& track, std::size_t samples);
    std::expected<void, std::string> write(const Mp4Sample& sample);
    std::expected<std::vector<std::byte>, std::string> finish();

  private:
    bool describe(AVStream& stream, const Mp4VideoTrack& track) const;

    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    std::unique_ptr<AVPacket, PacketDeleter> packet_;
};

bool Mp4Muxer::describe(AVStream& stream, const Mp4VideoTrack& track) const {
    AVCodecParameters& codec = *stream.codecpar;
    const std::size_t size = track.parameterSets.size();
    codec.extradata = static_cast<std::uint8_t*>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
    if (codec.extradata == nullptr) {
        return false;
    }
    std::memcpy(codec.extradata, track.parameterSets.data(), size);
    codec.extradata_size = static_cast<int>(size);
    codec.codec_type = AVMEDIA_TYPE_VIDEO;
    codec.codec_id = AV_CODEC_ID_H264;
    codec.format = AV_PIX_FMT_YUV420P;
    codec.width = track.width;
    codec.height = track.height;
    codec.sample_aspect_ratio = {1, 1};
    codec.color_range = AVCOL_RANGE_MPEG;
    codec.color_primaries = AVCOL_PRI_BT709;
    codec.color_trc = AVCOL_TRC_IEC61966_2_1;
    codec.color_space = AVCOL_SPC_SMPTE170M;
    stream.time_base = {1, track.timescale};
    return true;
}

std::expected<void, std::string> Mp4Muxer::open(const Mp4VideoTrack& track, std::size_t samples) {
    AVFormatContext* created = nullptr;
    if (const int code = avformat_alloc_output_context2(&created, nullptr, "mp4", nullptr); code < 0) {
        return failure("No MP4 muxer", code);
    }
    format_.reset(created);
    packet_.reset(av_packet_alloc());
    AVStream* const stream = avformat_new_stream(created, nullptr);
    if (packet_ == nullptr || stream == nullptr || !describe(*stream, track)) {
        return failure("The MP4 muxer could not begin", AVERROR(ENOMEM));
    }
    if (const int code = avio_open_dyn_buf(&created->pb); code < 0) {
        return failure("The MP4 muxer could not begin", code);
    }
    // No names of programs and no time of day: the same frames make the same file.
    created->flags |= AVFMT_FLAG_BITEXACT;
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "video_track_timescale", track.timescale, 0);
    av_dict_set_int(&options, "movie_timescale", track.timescale, 0);
    av_dict_set_int(&options, "moov_size", static_cast<std::int64_t>(indexSize(track, samples)), 0);
    const int code = avformat_write_header(created, &options);
    const std::unique_ptr<AVDictionary, DictionaryDeleter> unused(options);
    if (code < 0) {
        return failure("The MP4 muxer refused the track", code);
    }
    return {};
}

std::expected<void, std::string> Mp4Muxer::write(const Mp4Sample& sample) {
    AVPacket& packet = *packet_;
    if (const int code = av_new_packet(&packet, static_cast<int>(sample.bytes.size())); code < 0) {
        return failure("No memory for a packet", code);
    }
    std::memcpy(packet.data, sample.bytes.data(), sample.bytes.size());
    packet.pts = sample.time;
    packet.dts = sample.time;
    packet.duration = sample.duration;
    packet.flags = sample.isKeyFrame ? AV_PKT_FLAG_KEY : 0;
    const int code = av_write_frame(format_.get(), &packet);
    av_packet_unref(&packet);
    if (code < 0) {
        return failure("The MP4 muxer refused a frame", code);
    }
    return {};
}

std::expected<std::vector<std::byte>, std::string> Mp4Muxer::finish() {
    if (const int code = av_write_trailer(format_.get()); code < 0) {
        return failure("The MP4 muxer could not finish", code);
    }
    std::uint8_t* bytes = nullptr;
    const int size = avio_close_dyn_buf(std::exchange(format_->pb, nullptr), &bytes);
    const std::unique_ptr<std::uint8_t, decltype(&av_free)> owner(bytes, &av_free);
    if (bytes == nullptr || size <= 0) {
        return failure("The MP4 muxer could not finish", AVERROR(ENOMEM));
    }
    const auto* const first = reinterpret_cast<const std::byte*>(bytes);
    return std::vector<std::byte>(first, first + size);
}

}  // namespace

std::expected<std::vector<std::byte>, std::string> muxMp4(const Mp4VideoTrack& track,
                                                          std::span<const Mp4Sample> samples) {
    Mp4Muxer muxer;
    if (auto opened = muxer.open(track, samples.size()); !opened) {
        return std::unexpected(opened.error());
    }
    for (const Mp4Sample& sample : samples) {
        if (auto written = muxer.write(sample); !written) {
            return std::unexpected(written.error());
        }
    }
    return muxer.finish();
}

}  // namespace mireth::platform
