#include "platforms/linux/media/WriterCore.hpp"

#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "platforms/linux/media/HeapPixelBufferPool.hpp"

namespace mireth::platform {

namespace {

std::optional<int> wholePixels(double length) {
    if (!(length >= 1) || length > 65'536 || length != std::floor(length)) {
        return std::nullopt;
    }
    return static_cast<int>(length);
}

/// In units of the track, to the nearest one; nothing for a time without meaning.
std::optional<std::int64_t> inTrackUnits(MediaTime time, std::int32_t timescale) {
    if (time.timescale <= 0) {
        return std::nullopt;
    }
    if (time.timescale == timescale) {
        return time.value;
    }
    __extension__ using Wide = __int128;
    const Wide scaled = static_cast<Wide>(time.value) * timescale;
    const Wide half = time.timescale / 2;
    const Wide rounded = (scaled + (scaled < 0 ? -half : half)) / time.timescale;
    if (rounded > std::numeric_limits<std::int64_t>::max() ||
        rounded < std::numeric_limits<std::int64_t>::min()) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(rounded);
}

/// Holds a buffer's base address for as long as it is read.
class LockedBuffer {
  public:
    explicit LockedBuffer(PixelBuffer& buffer) : buffer_(buffer) { buffer_.lockBaseAddress(); }
    ~LockedBuffer() { buffer_.unlockBaseAddress(); }
    LockedBuffer(const LockedBuffer&) = delete;
    LockedBuffer& operator=(const LockedBuffer&) = delete;
    const std::byte* bytes() const { return buffer_.baseAddress(); }

  private:
    PixelBuffer& buffer_;
};

std::string sizeText(std::size_t width, std::size_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

std::optional<TrackSize> trackSizeFor(MediaType type, const VideoOutputSettings& settings) {
    const auto width = wholePixels(settings.size.width);
    const auto height = wholePixels(settings.size.height);
    if (type != MediaType::video || settings.codec != VideoCodec::h264 || !width || !height ||
        !H264Encoder::supports(*width, *height)) {
        return std::nullopt;
    }
    return TrackSize{*width, *height};
}

WriterCore::WriterCore(std::shared_ptr<FileManager> files, std::filesystem::path outputFile,
                       std::int32_t timescale, std::int64_t defaultFrameDuration)
    : files_(std::move(files)),
      outputFile_(std::move(outputFile)),
      timescale_(timescale),
      defaultFrameDuration_(defaultFrameDuration) {}

WriterCore::~WriterCore() {
    if (readiness_ != nullptr) {
        readiness_->finish();
    }
}

void WriterCore::setInput(const TrackSize& size, std::shared_ptr<ReadinessSignal> readiness) {
    size_ = size;
    readiness_ = std::move(readiness);
}

bool WriterCore::attempt(const std::function<Outcome()>& step) {
    try {
        const Outcome outcome = step();
        return outcome || fail(outcome.error());
    } catch (const std::bad_alloc&) {
        return fail("Out of memory");
    }
}

bool WriterCore::fail(const std::string& reason) {
    errorDescription_ = outputFile_.string() + ": " + reason;
    end(AssetWriterStatus::failed);
    return false;
}

void WriterCore::end(AssetWriterStatus status) {
    status_ = status;
    recorder_.reset();
    if (readiness_ != nullptr) {
        readiness_->finish();
    }
}

WriterCore::Outcome WriterCore::open() {
    if (!hasInput()) {
        return std::unexpected("Writing cannot begin without an input");
    }
    auto recorder = TrackRecorder::create(size_.width, size_.height, timescale_, defaultFrameDuration_);
    if (!recorder) {
        return std::unexpected(recorder.error());
    }
    pool_ = std::make_shared<HeapPixelBufferPool>(static_cast<std::size_t>(size_.width),
                                                  static_cast<std::size_t>(size_.height));
    recorder_.emplace(std::move(*recorder));
    status_ = AssetWriterStatus::writing;
    return {};
}

bool WriterCore::startWriting() {
    return status_ == AssetWriterStatus::unknown && attempt([this] { return open(); });
}

void WriterCore::startSession(MediaTime sourceTime) {
    if (status_ != AssetWriterStatus::writing || sessionStart_) {
        return;
    }
    sessionStart_ = inTrackUnits(sourceTime, timescale_);
    if (!sessionStart_) {
        fail("A session cannot begin at a time without a time scale");
        return;
    }
    readiness_->becomeReady();
}

WriterCore::Outcome WriterCore::appendFrame(PixelBuffer& buffer, MediaTime presentationTime) {
    const auto time = inTrackUnits(presentationTime, timescale_);
    std::int64_t sinceStart = 0;
    if (!sessionStart_ || !time || __builtin_sub_overflow(*time, *sessionStart_, &sinceStart)) {
        return std::unexpected("A frame came before the session, or with a time without a time scale");
    }
    const auto width = static_cast<std::size_t>(size_.width);
    const auto height = static_cast<std::size_t>(size_.height);
    if (buffer.width() != width || buffer.height() != height || buffer.bytesPerRow() < width * 4 ||
        buffer.bytesPerRow() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return std::unexpected("A frame of " + sizeText(buffer.width(), buffer.height()) +
                               " pixels does not fit a track of " + sizeText(width, height));
    }
    const LockedBuffer locked(buffer);
    if (locked.bytes() == nullptr) {
        return std::unexpected("A frame's memory could not be read");
    }
    return recorder_->append(locked.bytes(), buffer.bytesPerRow(), sinceStart);
}

bool WriterCore::append(PixelBuffer& buffer, MediaTime presentationTime) {
    if (status_ != AssetWriterStatus::writing ||
        !attempt([&] { return appendFrame(buffer, presentationTime); })) {
        return false;
    }
    readiness_->becomeReady();
    return true;
}

WriterCore::Outcome WriterCore::writeFile() {
    const auto bytes = recorder_->finish();
    if (!bytes) {
        return std::unexpected(bytes.error());
    }
    auto file = files_->createFile(outputFile_);
    if (!file) {
        return std::unexpected(file.error().description);
    }
    auto written = (*file)->write(*bytes);
    if (written) {
        written = (*file)->commit();
    }
    if (!written) {
        return std::unexpected(written.error().description);
    }
    return {};
}

void WriterCore::finish() {
    if (status_ == AssetWriterStatus::unknown) {
        fail("Writing was finished before it began");
    } else if (status_ == AssetWriterStatus::writing && attempt([this] { return writeFile(); })) {
        end(AssetWriterStatus::completed);
    }
}

void WriterCore::cancel() {
    if (status_ == AssetWriterStatus::unknown || status_ == AssetWriterStatus::writing) {
        end(AssetWriterStatus::cancelled);
    }
}

}  // namespace mireth::platform
