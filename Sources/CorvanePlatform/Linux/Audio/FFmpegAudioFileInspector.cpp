#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"

#include <QFile>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

extern "C" {
#include <libavformat/avformat.h>
}

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

// Left out are playlists and lists of parts, which name other files, and everything without sound.
constexpr const char* containers = "wav,w64,aiff,caf,au,flac,mp3,aac,ac3,eac3,dts,amr,ape,wv,tta,ogg,mov,mp4,matroska,"
                                   "webm,mpegts,mpeg,avi,asf,flv,mxf";

int isPast(void* deadline) {
    return Clock::now() > *static_cast<Clock::time_point*>(deadline) ? 1 : 0;
}

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using Input = std::unique_ptr<AVFormatContext, CloseInput>;

struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

// `deadline` must outlive the result.
Input openInput(const QByteArray& path, Clock::time_point& deadline) {
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        return nullptr;
    context->interrupt_callback = {isPast, &deadline};
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    av_dict_set(&options, "format_whitelist", containers, 0);
    // The prefix keeps a name with a colon from being taken for an address. A failure frees the context.
    const bool opened = avformat_open_input(&context, ("file:" + path).constData(), nullptr, &options) == 0;
    av_dict_free(&options);
    Input input(opened ? context : nullptr);
    return input && avformat_find_stream_info(input.get(), nullptr) >= 0 ? std::move(input) : nullptr;
}

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
        if (isPast(input.interrupt_callback.opaque))
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

FFmpegAudioFileInspector::FFmpegAudioFileInspector(std::chrono::milliseconds deadline) : m_deadline(deadline) {
    av_log_set_level(AV_LOG_QUIET);
}

std::optional<double> FFmpegAudioFileInspector::durationSeconds(const QString& path) const {
    const QByteArray native = QFile::encodeName(path);
    struct stat status {};
    // Opening a FIFO would wait for a writer.
    if (path.contains(QChar(0)) || ::stat(native.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    Clock::time_point deadline = Clock::now() + m_deadline;
    const Input input = openInput(native, deadline);
    const auto length = input ? lengthOf(*input) : std::nullopt;
    return length && std::isfinite(*length) && *length > 0 ? length : std::nullopt;
}

} // namespace corvane
