// The sound of one audio or movie file from any time on, as floats of one or two channels at the file's own rate. One
// thread at a time.
#pragma once

#include "CorvanePlatform/Linux/Audio/FFmpegInput.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswresample/swresample.h>
}

namespace corvane {

class FFmpegDecoder {
public:
    // Throws AudioPlayerError if the file cannot be read or holds no sound.
    explicit FFmpegDecoder(const QString& path);
    FFmpegDecoder(const FFmpegDecoder&) = delete;
    FFmpegDecoder& operator=(const FFmpegDecoder&) = delete;

    [[nodiscard]] int sampleRate() const { return m_codec->sample_rate; }
    [[nodiscard]] int channels() const { return m_channels; }

    // The next frame is exactly the one at this time.
    void seek(double seconds);
    // Interleaved; the number of frames, 0 at the end or where the file cannot be read on.
    [[nodiscard]] std::size_t read(std::span<float> samples);

private:
    struct Free {
        void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
        void operator()(AVFrame* frame) const { av_frame_free(&frame); }
        void operator()(AVPacket* packet) const { av_packet_free(&packet); }
        void operator()(SwrContext* converter) const { swr_free(&converter); }
    };

    struct Kind { // of decoded frames
        int format = 0;
        int channels = 0;
        int rate = 0;
        friend bool operator==(const Kind&, const Kind&) = default;
    };

    void rewindTo(double seconds);
    [[nodiscard]] bool decodeFrame();
    [[nodiscard]] bool sendPacket();
    void keep(double untilSeconds);
    [[nodiscard]] bool convert();

    std::chrono::steady_clock::time_point m_deadline;
    FFmpegInput m_input;
    AVStream* m_stream = nullptr;
    std::unique_ptr<AVCodecContext, Free> m_codec;
    std::unique_ptr<SwrContext, Free> m_converter;
    std::unique_ptr<AVFrame, Free> m_frame;
    std::unique_ptr<AVPacket, Free> m_packet;
    Kind m_converted;
    int m_channels = 0;
    double m_frameSeconds = 0;    // the time of what follows the last frame
    std::vector<float> m_samples; // decoded and not yet read, from m_next on
    std::size_t m_next = 0;
};

} // namespace corvane
