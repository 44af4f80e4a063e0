#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"

#include "CorvanePlatform/Linux/Audio/FFmpegInput.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace corvane {

namespace {

struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

double seconds(std::int64_t count, AVRational unit) {
    return static_cast<double>(count) * unit.num / unit.den;
}

// Containers without a length, such as bare MP3 and AAC, get an estimate from the bit rate of their start, which is off
// by a tenth for variable rates. The packets tell exactly; nothing is decoded.
std::optional<double> lengthOfPackets(AVFormatContext& input, const AVStream& stream) {
    const std::unique_ptr<AVPacket, FreePacket> packet(av_packet_alloc());
    std::int64_t length = 0;
    int result = packet ? 0 : AVERROR(ENOMEM);
    while (result == 0 && (result = av_read_frame(&input, packet.get())) == 0) {
        if (packet->stream_index == stream.index)
            length += std::max<std::int64_t>(packet->duration, 0);
        av_packet_unref(packet.get());
        if (isPastDeadline(input))
            return std::nullopt;
    }
    return result == AVERROR_EOF ? std::optional(seconds(length, stream.time_base)) : std::nullopt;
}

std::optional<double> lengthOf(AVFormatContext& input) {
    const int index = av_find_best_stream(&input, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0)
        return std::nullopt;
    const AVStream& stream = *input.streams[index];
    if (input.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
        if (const auto exact = lengthOfPackets(input, stream))
            return exact;
    }
    // The container's length, which counts in microseconds, is that of its longest stream.
    if (input.nb_streams == 1 && stream.duration != AV_NOPTS_VALUE)
        return seconds(stream.duration, stream.time_base);
    return input.duration == AV_NOPTS_VALUE ? std::nullopt
                                            : std::optional(seconds(input.duration, AVRational{1, AV_TIME_BASE}));
}

} // namespace

FFmpegAudioFileInspector::FFmpegAudioFileInspector(std::chrono::milliseconds deadline) : m_deadline(deadline) {}

std::optional<double> FFmpegAudioFileInspector::durationSeconds(const QString& path) const {
    auto deadline = std::chrono::steady_clock::now() + m_deadline;
    const FFmpegInput input = openFFmpegInput(path, deadline);
    const auto length = input ? lengthOf(*input) : std::nullopt;
    return length && std::isfinite(*length) && *length > 0 ? length : std::nullopt;
}

} // namespace corvane
