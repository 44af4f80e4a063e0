#include "CorvaneWorker/Audio/AudioDecoder.h"

#include "CorvaneWorker/Audio/AudioInput.h"
#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFileInfo>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

namespace {

struct FreeCodec {
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreeResampler {
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};

// Below this, time stamps are rounding and encoder padding; above the second, they are nonsense.
constexpr double smallestGapSeconds = 0.1;
constexpr double largestGapSeconds = 120.0;
constexpr int readErrorsBeforeGivingUp = 50;

class StreamDecoder {
public:
    StreamDecoder(const QString& path, const SampleSink& sink)
        : m_name(QFileInfo(path).fileName()), m_input(path), m_sink(sink) {
        openStream();
    }

    DecodedAudio run(const DecodeProgress& progress) {
        int errors = 0;
        while (errors < readErrorsBeforeGivingUp) {
            const int status = av_read_frame(m_input.format(), m_packet.get());
            if (status == AVERROR_EOF)
                break;
            if (status < 0) {
                ++errors;
                continue;
            }
            errors = 0;
            if (m_packet->stream_index == m_stream->index)
                decode(m_packet.get());
            av_packet_unref(m_packet.get());
            progress(m_input.fractionRead());
        }
        if (errors > 0)
            m_notes << QStringLiteral("The file ends in damaged data; what lies behind it was not decoded.");
        decode(nullptr);
        flushResampler();
        if (m_samples == 0)
            throw WorkerError(QStringLiteral("No sound could be decoded from “%1”.").arg(m_name));
        if (m_damaged > 0)
            m_notes << QStringLiteral("Damaged packets that were skipped: %1.").arg(m_damaged);
        return {m_samples, m_notes};
    }

private:
    void openStream() {
        const AVCodec* decoder = nullptr;
        const int index = av_find_best_stream(m_input.format(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
        if (index == AVERROR_DECODER_NOT_FOUND)
            throw WorkerError(QStringLiteral("The sound of “%1” is in a form that Corvane cannot decode.").arg(m_name));
        if (index < 0)
            throw WorkerError(QStringLiteral("“%1” holds no sound.").arg(m_name));
        m_stream = m_input.format()->streams[index];
        for (unsigned other = 0; other < m_input.format()->nb_streams; ++other)
            m_input.format()->streams[other]->discard =
                static_cast<int>(other) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        m_codec.reset(avcodec_alloc_context3(decoder));
        if (!m_codec || avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0)
            throw std::bad_alloc();
        m_codec->pkt_timebase = m_stream->time_base;
        if (avcodec_open2(m_codec.get(), decoder, nullptr) < 0)
            throw WorkerError(QStringLiteral("The sound of “%1” is in a form that Corvane cannot decode.").arg(m_name));
    }

    void decode(const AVPacket* packet) {
        if (avcodec_send_packet(m_codec.get(), packet) < 0)
            ++m_damaged;
        while (true) {
            const int status = avcodec_receive_frame(m_codec.get(), m_frame.get());
            if (status == AVERROR(EAGAIN) || status == AVERROR_EOF)
                return;
            if (status < 0) {
                ++m_damaged;
                return;
            }
            fillGap();
            resample();
            av_frame_unref(m_frame.get());
        }
    }

    // A player shows the time that the stamps tell; a hole in them must not shift what comes after it.
    void fillGap() {
        const std::int64_t stamp = m_frame->best_effort_timestamp;
        if (stamp == AV_NOPTS_VALUE)
            return;
        const std::int64_t origin = m_input.format()->start_time;
        double seconds = static_cast<double>(stamp) * av_q2d(m_stream->time_base) + m_stampShift;
        if (origin != AV_NOPTS_VALUE)
            seconds -= static_cast<double>(origin) / AV_TIME_BASE;
        const double gap = seconds - secondsOfSamples(m_samples);
        if (gap > largestGapSeconds || gap < -largestGapSeconds) {
            m_stampShift -= gap;
            m_notes << QStringLiteral("The time stamps jump by %1 s; the jump was ignored.").arg(gap, 0, 'f', 1);
        } else if (gap > smallestGapSeconds) {
            const std::vector<std::int16_t> silence(static_cast<std::size_t>(gap * sampleRate), 0);
            emitSamples(silence);
        }
    }

    void resample() {
        if (!m_resampler || m_frame->format != m_format || m_frame->sample_rate != m_rate ||
            av_channel_layout_compare(&m_frame->ch_layout, &m_layout) != 0)
            openResampler();
        convert(const_cast<const std::uint8_t**>(m_frame->extended_data), m_frame->nb_samples);
    }

    void openResampler() {
        flushResampler();
        AVChannelLayout from{};
        if (m_frame->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
            av_channel_layout_default(&from, m_frame->ch_layout.nb_channels);
        else
            av_channel_layout_copy(&from, &m_frame->ch_layout);
        AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
        SwrContext* resampler = nullptr;
        const int status =
            swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, sampleRate, &from,
                                static_cast<AVSampleFormat>(m_frame->format), m_frame->sample_rate, 0, nullptr);
        m_resampler.reset(resampler);
        av_channel_layout_uninit(&from);
        if (status < 0 || swr_init(resampler) < 0)
            throw WorkerError(QStringLiteral("The channels of “%1” could not be mixed to one.").arg(m_name));
        m_format = m_frame->format;
        m_rate = m_frame->sample_rate;
        av_channel_layout_uninit(&m_layout);
        av_channel_layout_copy(&m_layout, &m_frame->ch_layout);
    }

    void convert(const std::uint8_t** data, int count) {
        m_block.resize(static_cast<std::size_t>(std::max(0, swr_get_out_samples(m_resampler.get(), count))));
        auto* out = reinterpret_cast<std::uint8_t*>(m_block.data());
        const int made = swr_convert(m_resampler.get(), &out, static_cast<int>(m_block.size()), data, count);
        if (made > 0)
            emitSamples(std::span(m_block).first(static_cast<std::size_t>(made)));
    }

    void flushResampler() {
        if (m_resampler)
            convert(nullptr, 0);
        m_resampler.reset();
    }

    void emitSamples(std::span<const std::int16_t> samples) {
        m_samples += static_cast<std::int64_t>(samples.size());
        m_sink(samples);
    }

    QString m_name;
    AudioInput m_input;
    const SampleSink& m_sink;
    AVStream* m_stream = nullptr;
    std::unique_ptr<AVCodecContext, FreeCodec> m_codec;
    std::unique_ptr<AVPacket, FreePacket> m_packet{av_packet_alloc()};
    std::unique_ptr<AVFrame, FreeFrame> m_frame{av_frame_alloc()};
    std::unique_ptr<SwrContext, FreeResampler> m_resampler;
    AVChannelLayout m_layout{}; // of the resampler's input, as are the next two
    int m_format = -1;
    int m_rate = 0;
    std::vector<std::int16_t> m_block;
    std::int64_t m_samples = 0;
    double m_stampShift = 0; // seconds
    int m_damaged = 0;
    QStringList m_notes;
};

class MediaFileSource : public AudioSource {
public:
    DecodedAudio decode(const QString& path, const SampleSink& sink, const DecodeProgress& progress) override {
        return decodeAudio(path, sink, progress);
    }
};

} // namespace

DecodedAudio decodeAudio(const QString& path, const SampleSink& sink, const DecodeProgress& progress) {
    av_log_set_level(AV_LOG_QUIET);
    return StreamDecoder(path, sink).run(progress);
}

std::unique_ptr<AudioSource> mediaFileSource() {
    return std::make_unique<MediaFileSource>();
}

} // namespace corvane
