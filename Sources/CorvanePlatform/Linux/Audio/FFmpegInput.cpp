#include "CorvanePlatform/Linux/Audio/FFmpegInput.h"

#include <QFile>

#include <sys/stat.h>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

// Left out are playlists and lists of parts, which name other files, and everything without sound.
constexpr const char* containers = "wav,w64,aiff,caf,au,flac,mp3,aac,ac3,eac3,dts,amr,ape,wv,tta,ogg,mov,mp4,matroska,"
                                   "webm,mpegts,mpeg,avi,asf,flv,mxf";

int isPast(void* deadline) {
    return Clock::now() > *static_cast<Clock::time_point*>(deadline) ? 1 : 0;
}

} // namespace

FFmpegInput openFFmpegInput(const QString& path, Clock::time_point& deadline) {
    av_log_set_level(AV_LOG_QUIET);
    const QByteArray native = QFile::encodeName(path);
    struct stat status {};
    // Opening a FIFO would wait for a writer.
    if (path.contains(QChar(0)) || ::stat(native.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        return nullptr;
    context->interrupt_callback = {isPast, &deadline};
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    av_dict_set(&options, "format_whitelist", containers, 0);
    // The prefix keeps a name with a colon from being taken for an address. A failure frees the context.
    const bool opened = avformat_open_input(&context, ("file:" + native).constData(), nullptr, &options) == 0;
    av_dict_free(&options);
    FFmpegInput input(opened ? context : nullptr);
    return input && avformat_find_stream_info(input.get(), nullptr) >= 0 ? std::move(input) : nullptr;
}

bool isPastDeadline(const AVFormatContext& input) {
    return isPast(input.interrupt_callback.opaque) != 0;
}

} // namespace corvane
