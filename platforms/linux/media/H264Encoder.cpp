#include "platforms/linux/media/H264Encoder.hpp"

#include <wels/codec_api.h>

#include <algorithm>
#include <span>
#include <utility>

namespace mireth::platform {

namespace {

/// Quantisation of every picture, on the standard's scale of 0 to 51. Flat areas and edges of an interface
/// look like the original at this value; a rate to keep would only blur the first frame after a change.
constexpr int quantizer = 20;

SEncParamExt parametersFor(ISVCEncoder& encoder, int width, int height) {
    SEncParamExt parameters{};
    encoder.GetDefaultParams(&parameters);
    parameters.iUsageType = SCREEN_CONTENT_REAL_TIME;
    parameters.iPicWidth = width;
    parameters.iPicHeight = height;
    parameters.iRCMode = RC_OFF_MODE;
    parameters.fMaxFrameRate = 30;
    parameters.iEntropyCodingModeFlag = 1;  // CABAC
    parameters.iMultipleThreadIdc = 1;
    parameters.bEnableFrameSkip = false;
    parameters.bEnableSceneChangeDetect = true;
    parameters.bEnableDenoise = false;
    parameters.uiIntraPeriod = 0;  // a chunk is short: its first frame is enough
    parameters.eSpsPpsIdStrategy = CONSTANT_ID;
    SSpatialLayerConfig& layer = parameters.sSpatialLayers[0];
    layer.iVideoWidth = width;
    layer.iVideoHeight = height;
    layer.fFrameRate = parameters.fMaxFrameRate;
    layer.iDLayerQp = quantizer;
    layer.uiProfileIdc = PRO_HIGH;
    layer.sSliceArgument.uiSliceMode = SM_SINGLE_SLICE;
    // ITU-T H.264 Annex E: what PlanarConverter makes.
    layer.bVideoSignalTypePresent = true;
    layer.uiVideoFormat = VF_UNDEF;
    layer.bFullRange = false;
    layer.bColorDescriptionPresent = true;
    layer.uiColorPrimaries = CP_BT709;
    layer.uiTransferCharacteristics = TRC_IEC61966_2_1;
    layer.uiColorMatrix = CM_SMPTE170M;
    return parameters;
}

std::span<const std::byte> bytesOf(const SLayerBSInfo& layer) {
    std::size_t size = 0;
    for (int i = 0; i < layer.iNalCount; ++i) {
        size += static_cast<std::size_t>(layer.pNalLengthInByte[i]);
    }
    return {reinterpret_cast<const std::byte*>(layer.pBsBuf), size};
}

}  // namespace

void H264Encoder::EncoderDeleter::operator()(ISVCEncoder* encoder) const noexcept {
    encoder->Uninitialize();
    WelsDestroySVCEncoder(encoder);
}

H264Encoder::H264Encoder(std::unique_ptr<ISVCEncoder, EncoderDeleter> encoder)
    : encoder_(std::move(encoder)) {}

bool H264Encoder::supports(int width, int height) noexcept {
    constexpr int smallest = 16;
    // Level 5.1 (table A-1): 36,864 macroblocks a frame, sides of at most sqrt(8 × 36,864) macroblocks.
    constexpr int longest = 543 * 16;
    constexpr int macroblocks = 36'864;
    if (width < smallest || height < smallest || width > longest || height > longest || width % 2 != 0 ||
        height % 2 != 0) {
        return false;
    }
    return ((width + 15) / 16) * ((height + 15) / 16) <= macroblocks;
}

std::expected<H264Encoder, std::string> H264Encoder::create(int width, int height) {
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
    ISVCEncoder* created = nullptr;
    if (!supports(width, height) || WelsCreateSVCEncoder(&created) != 0 || created == nullptr) {
        return std::unexpected("No H.264 encoder for frames of " + size);
    }
    std::unique_ptr<ISVCEncoder, EncoderDeleter> encoder(created);
    // Standard error belongs to the app.
    int quiet = WELS_LOG_QUIET;
    encoder->SetOption(ENCODER_OPTION_TRACE_LEVEL, &quiet);
    const SEncParamExt parameters = parametersFor(*encoder, width, height);
    if (const int code = encoder->InitializeExt(&parameters); code != cmResultSuccess) {
        return std::unexpected("The H.264 encoder refused frames of " + size + " (code " +
                               std::to_string(code) + ")");
    }
    return H264Encoder(std::move(encoder));
}

std::expected<EncodedPicture, std::string> H264Encoder::encode(const PlanarPicture& picture,
                                                               long long milliseconds) {
    SSourcePicture source{};
    source.iColorFormat = videoFormatI420;
    source.iPicWidth = picture.width;
    source.iPicHeight = picture.height;
    source.uiTimeStamp = milliseconds;
    std::ranges::copy(picture.planes, source.pData);
    std::ranges::copy(picture.bytesPerRow, source.iStride);
    SFrameBSInfo info{};
    if (const int code = encoder_->EncodeFrame(&source, &info); code != cmResultSuccess) {
        return std::unexpected("The H.264 encoder failed on a frame (code " + std::to_string(code) + ")");
    }
    EncodedPicture encoded;
    encoded.isKeyFrame = info.eFrameType == videoFrameTypeIDR;
    for (int i = 0; i < info.iLayerNum; ++i) {
        const std::span<const std::byte> bytes = bytesOf(info.sLayerInfo[i]);
        if (info.sLayerInfo[i].uiLayerType == VIDEO_CODING_LAYER) {
            encoded.bytes.insert(encoded.bytes.end(), bytes.begin(), bytes.end());
        } else if (parameterSets_.empty()) {
            parameterSets_.assign(bytes.begin(), bytes.end());
        }
    }
    if (encoded.bytes.empty()) {
        return std::unexpected("The H.264 encoder gave nothing for a frame");
    }
    return encoded;
}

}  // namespace mireth::platform
