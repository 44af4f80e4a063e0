// Opening audio and movie files with libavformat. Files come from anywhere, so that only regular files are opened, only
// containers that carry sound, and nothing that refers to other files or addresses. Any thread.
#pragma once

#include <QString>

#include <chrono>
#include <memory>

extern "C" {
#include <libavformat/avformat.h>
}

namespace corvane {

struct CloseFFmpegInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using FFmpegInput = std::unique_ptr<AVFormatContext, CloseFFmpegInput>;

// Nothing if it cannot be read as a container with streams. Reading fails once `deadline` is past, which must outlive
// the result. Silences libavformat, which would write to standard error, for the whole process.
[[nodiscard]] FFmpegInput openFFmpegInput(const QString& path, std::chrono::steady_clock::time_point& deadline);

// Whether the deadline of such an input is past.
[[nodiscard]] bool isPastDeadline(const AVFormatContext& input);

} // namespace corvane
