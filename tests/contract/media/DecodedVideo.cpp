#include "tests/contract/media/DecodedVideo.hpp"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

namespace mireth::tests {

namespace {

/// The file, as libavformat reads from memory.
struct Source {
    const std::string& bytes;
    std::size_t position = 0;
};

int readBytes(void* opaque, std::uint8_t* buffer, int size) {
    auto& source = *static_cast<Source*>(opaque);
    const std::size_t count = std::min(static_cast<std::size_t>(size), source.bytes.size() - source.position);
    std::memcpy(buffer, source.bytes.data() + source.position, count);
    source.position += count;
    return count > 0 ? static_cast<int>(count) : AVERROR_EOF;
}

std::int64_t seekTo(void* opaque, std::int64_t offset, int whence) {
    auto& source = *static_cast<Source*>(opaque);
    const auto size = static_cast<std::int64_t>(source.bytes.size());
    if (whence == AVSEEK_SIZE) {
        return size;
    }
    const std::int64_t base = whence == SEEK_SET   ? 0
                              : whence == SEEK_END ? size
                                                   : static_cast<std::int64_t>(source.position);
    source.position = static_cast<std::size_t>(std::clamp<std::int64_t>(base + offset, 0, size));
    return static_cast<std::int64_t>(source.position);
}

std::string orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

platform::Image toImage(const AVFrame& frame) {
    const auto width = static_cast<std::size_t>(frame.width);
    const auto height = static_cast<std::size_t>(frame.height);
    std::vector<std::uint32_t> pixels(width * height);
    SwsContext* const scaler = sws_getContext(
        frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width, frame.height,
        AV_PIX_FMT_RGB32, SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr);
    const int* const matrix =
        sws_getCoefficients(frame.colorspace == AVCOL_SPC_BT709 ? SWS_CS_ITU709 : SWS_CS_ITU601);
    const int fullRange = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    sws_setColorspaceDetails(scaler, matrix, fullRange, matrix, 1, 0, 1 << 16, 1 << 16);
    auto* target = reinterpret_cast<std::uint8_t*>(pixels.data());
    const int bytesPerRow = frame.width * 4;
    sws_scale(scaler, frame.data, frame.linesize, 0, frame.height, &target, &bytesPerRow);
    sws_freeContext(scaler);
    return {width, height, std::move(pixels)};
}

/// Units stand behind their length in four bytes (ISO 14496-15).
void collectNalUnitTypes(const AVPacket& packet, std::vector<int>& types) {
    const std::span<const std::uint8_t> bytes(packet.data, static_cast<std::size_t>(packet.size));
    for (std::size_t at = 0; at + 4 < bytes.size();) {
        types.push_back(bytes[at + 4] & 0x1F);
        at += 4 + (std::size_t{bytes[at]} << 24U | std::size_t{bytes[at + 1]} << 16U |
                   std::size_t{bytes[at + 2]} << 8U | std::size_t{bytes[at + 3]});
    }
}

class Reader {
  public:
    explicit Reader(const std::string& file) : source_{file} {
        constexpr int bufferSize = 4096;
        input_ = avio_alloc_context(static_cast<std::uint8_t*>(av_malloc(bufferSize)), bufferSize, 0,
                                    &source_, readBytes, nullptr, seekTo);
        format_ = avformat_alloc_context();
        format_->pb = input_;
    }
    ~Reader() {
        avcodec_free_context(&decoder_);
        avformat_close_input(&format_);
        av_free(input_->buffer);
        avio_context_free(&input_);
        av_packet_free(&packet_);
        av_frame_free(&frame_);
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    DecodedVideo read() {
        DecodedVideo video;
        if (avformat_open_input(&format_, nullptr, nullptr, nullptr) < 0 ||
            avformat_find_stream_info(format_, nullptr) < 0) {
            return video;
        }
        video.streams = format_->nb_streams;
        video.fileDuration = format_->duration;
        if (format_->nb_streams == 0 || !openDecoder(*format_->streams[0])) {
            return video;
        }
        describe(video, *format_->streams[0]);
        while (av_read_frame(format_, packet_) >= 0) {
            video.packets.push_back(
                {packet_->pts, packet_->duration, (packet_->flags & AV_PKT_FLAG_KEY) != 0});
            collectNalUnitTypes(*packet_, video.nalUnitTypes);
            decode(video, packet_);
            av_packet_unref(packet_);
        }
        decode(video, nullptr);
        return video;
    }

  private:
    static void describe(DecodedVideo& video, const AVStream& stream) {
        const AVCodecParameters& codec = *stream.codecpar;
        char tag[AV_FOURCC_MAX_STRING_SIZE] = {};
        video.codec = avcodec_get_name(codec.codec_id);
        video.sampleEntry = av_fourcc_make_string(tag, codec.codec_tag);
        video.pixelFormat = orEmpty(av_get_pix_fmt_name(static_cast<AVPixelFormat>(codec.format)));
        video.width = codec.width;
        video.height = codec.height;
        video.timescale = stream.time_base.num == 1 ? stream.time_base.den : 0;
        video.duration = stream.duration;
        video.range = orEmpty(av_color_range_name(codec.color_range));
        video.primaries = orEmpty(av_color_primaries_name(codec.color_primaries));
        video.transfer = orEmpty(av_color_transfer_name(codec.color_trc));
        video.matrix = orEmpty(av_color_space_name(codec.color_space));
    }

    bool openDecoder(const AVStream& stream) {
        const AVCodec* const codec = avcodec_find_decoder(stream.codecpar->codec_id);
        decoder_ = avcodec_alloc_context3(codec);
        return codec != nullptr && avcodec_parameters_to_context(decoder_, stream.codecpar) >= 0 &&
               avcodec_open2(decoder_, codec, nullptr) >= 0;
    }

    void decode(DecodedVideo& video, const AVPacket* packet) {
        video.errors += avcodec_send_packet(decoder_, packet) < 0 ? 1 : 0;
        while (avcodec_receive_frame(decoder_, frame_) >= 0) {
            video.frames.push_back(toImage(*frame_));
        }
    }

    Source source_;
    AVIOContext* input_ = nullptr;
    AVFormatContext* format_ = nullptr;
    AVCodecContext* decoder_ = nullptr;
    AVPacket* packet_ = av_packet_alloc();
    AVFrame* frame_ = av_frame_alloc();
};

}  // namespace

DecodedVideo decodeVideo(const std::string& file) {
    return Reader(file).read();
}

}  // namespace mireth::tests
