#include "CorvanePlatform/Linux/Audio/FFmpegDecoder.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Interfaces/AudioPlayer.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr AVRational microsecond{1, AV_TIME_BASE}; // in which libavformat counts the time of a container
constexpr auto openLimit = std::chrono::seconds(5);
// Decoders of MP3 and AAC need what came before: their first frames after a seek are wrong.
constexpr double preroll = 0.3;

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw AudioPlayerError(UserText::tr("%1: %2").arg(QFileInfo(path).fileName(), reason));
}

} // namespace

FFmpegDecoder::FFmpegDecoder(const QString& path)
    : m_deadline(std::chrono::steady_clock::now() + openLimit),
      m_input(openFFmpegInput(path, m_deadline)),
      m_frame(av_frame_alloc()),
      m_packet(av_packet_alloc()) {
    if (!m_input)
        fail(path, QFileInfo::exists(path) ? UserText::tr("It cannot be read as an audio file")
                                           : UserText::tr("No such file"));
    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(m_input.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (index < 0)
        fail(path, UserText::tr("It holds no sound that can be played"));
    m_stream = m_input->streams[index];
    for (unsigned i = 0; i < m_input->nb_streams; ++i)
        if (m_input->streams[i] != m_stream)
            m_input->streams[i]->discard = AVDISCARD_ALL;
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec || !m_frame || !m_packet || avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0 ||
        avcodec_open2(m_codec.get(), codec, nullptr) < 0 || m_codec->sample_rate <= 0 ||
        m_codec->ch_layout.nb_channels <= 0)
        fail(path, UserText::tr("It holds no sound that can be played"));
    m_codec->pkt_timebase = m_stream->time_base;
    m_channels = std::min(m_codec->ch_layout.nb_channels, 2);
    m_deadline = std::chrono::steady_clock::time_point::max();
}

void FFmpegDecoder::seek(double seconds) {
    rewindTo(std::max(0.0, seconds - preroll));
    if (!decodeFrame())
        return;
    // Containers without an index are sought by an estimate, which may lie behind the aim.
    if (m_frameSeconds > seconds && seconds > 0) {
        rewindTo(0);
        if (!decodeFrame())
            return;
    }
    do
        keep(seconds);
    while (m_next == m_samples.size() && decodeFrame());
}

void FFmpegDecoder::rewindTo(double seconds) {
    const std::int64_t start = m_input->start_time == AV_NOPTS_VALUE ? 0 : m_input->start_time;
    const auto position = start + static_cast<std::int64_t>(seconds * AV_TIME_BASE);
    const auto seekTo = [this](std::int64_t microseconds) {
        const auto aim = av_rescale_q(microseconds, microsecond, m_stream->time_base);
        return av_seek_frame(m_input.get(), m_stream->index, aim, AVSEEK_FLAG_BACKWARD) >= 0;
    };
    // In front of the first sound AAC has a packet that its decoder needs.
    if (seconds > 0 || !seekTo(start - AV_TIME_BASE))
        seekTo(position);
    avcodec_flush_buffers(m_codec.get());
    m_converter.reset();
    m_samples.clear();
    m_next = 0;
    m_frameSeconds = seconds;
}

std::size_t FFmpegDecoder::read(std::span<float> samples) {
    std::size_t done = 0;
    while (done < samples.size()) {
        if (m_next == m_samples.size()) {
            if (!decodeFrame())
                break;
            keep(0);
            continue;
        }
        const std::size_t count = std::min(samples.size() - done, m_samples.size() - m_next);
        std::copy_n(m_samples.begin() + static_cast<std::ptrdiff_t>(m_next), count,
                    samples.begin() + static_cast<std::ptrdiff_t>(done));
        m_next += count;
        done += count;
    }
    return done / static_cast<std::size_t>(m_channels);
}

// The next frame that can be decoded, with its time; damaged ones are passed over. False at the end.
bool FFmpegDecoder::decodeFrame() {
    int result = 0;
    while ((result = avcodec_receive_frame(m_codec.get(), m_frame.get())) == AVERROR(EAGAIN))
        if (!sendPacket())
            return false;
    if (result < 0)
        return false;
    const std::int64_t start =
        m_input->start_time == AV_NOPTS_VALUE ? 0 : av_rescale_q(m_input->start_time, microsecond, m_stream->time_base);
    if (m_frame->best_effort_timestamp != AV_NOPTS_VALUE)
        m_frameSeconds = static_cast<double>(m_frame->best_effort_timestamp - start) * av_q2d(m_stream->time_base);
    return true;
}

bool FFmpegDecoder::sendPacket() {
    while (av_read_frame(m_input.get(), m_packet.get()) >= 0) {
        const bool isOurs = m_packet->stream_index == m_stream->index;
        const int sent = isOurs ? avcodec_send_packet(m_codec.get(), m_packet.get()) : -1;
        av_packet_unref(m_packet.get());
        if (sent >= 0)
            return true;
    }
    // What the decoder still holds; it refuses a second end.
    return avcodec_send_packet(m_codec.get(), nullptr) >= 0;
}

// Takes of the decoded frame what does not lie before a time.
void FFmpegDecoder::keep(double untilSeconds) {
    const double offset = std::round((untilSeconds - m_frameSeconds) * sampleRate());
    m_frameSeconds += static_cast<double>(m_frame->nb_samples) / sampleRate();
    m_samples.clear();
    m_next = 0;
    if (offset >= m_frame->nb_samples || !convert())
        return;
    const auto skipped = static_cast<std::size_t>(std::max(offset, 0.0)) * static_cast<std::size_t>(m_channels);
    m_next = std::min(skipped, m_samples.size());
}

bool FFmpegDecoder::convert() {
    const Kind kind{m_frame->format, m_frame->ch_layout.nb_channels, m_frame->sample_rate};
    if (!m_converter || kind != m_converted) { // a stream may change in its midst
        m_converted = kind;
        AVChannelLayout layout{};
        av_channel_layout_default(&layout, m_channels);
        SwrContext* converter = nullptr;
        swr_alloc_set_opts2(&converter, &layout, AV_SAMPLE_FMT_FLT, sampleRate(), &m_frame->ch_layout,
                            static_cast<AVSampleFormat>(m_frame->format), m_frame->sample_rate, 0, nullptr);
        m_converter.reset(converter);
        if (!m_converter || swr_init(m_converter.get()) < 0)
            return false;
    }
    const int room = swr_get_out_samples(m_converter.get(), m_frame->nb_samples);
    m_samples.resize(static_cast<std::size_t>(std::max(room, 0)) * static_cast<std::size_t>(m_channels));
    auto* out = reinterpret_cast<std::uint8_t*>(m_samples.data());
    const int frames = swr_convert(m_converter.get(), &out, room,
                                   const_cast<const std::uint8_t**>(m_frame->extended_data), m_frame->nb_samples);
    m_samples.resize(static_cast<std::size_t>(std::max(frames, 0)) * static_cast<std::size_t>(m_channels));
    return frames > 0;
}

} // namespace corvane
