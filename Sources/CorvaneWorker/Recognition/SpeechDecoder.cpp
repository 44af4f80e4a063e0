#include "CorvaneWorker/Recognition/SpeechDecoder.h"

#include "CorvaneWorker/WorkerError.h"

#include <QFile>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace corvane {

namespace {

constexpr double modelFramesPerSecond = 100.0;

std::function<void()>& failureHandler() {
    static std::function<void()> handler;
    return handler;
}

// The library talks a lot; only what explains a failure is worth a line in the log.
void logLibraryMessage(void*, err_lvl_t level, const char* format, ...) {
    if (level < ERR_FATAL)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    if (failureHandler())
        failureHandler()();
}

void quietLibrary() {
    static std::once_flag once;
    std::call_once(once, [] { err_set_callback(&logLibraryMessage, nullptr); });
    err_set_logfp(nullptr); // of this thread
}

} // namespace

void setSpeechLibraryFailureHandler(std::function<void()> handler) {
    failureHandler() = std::move(handler);
}

QString plainWord(const QString& dictionaryWord) {
    static const QString markers = QStringLiteral("<[+(");
    if (dictionaryWord.isEmpty() || markers.contains(dictionaryWord.front()))
        return {};
    return dictionaryWord.section(QLatin1Char('('), 0, 0);
}

void SpeechDecoder::Free::operator()(ps_decoder_s* decoder) const {
    ps_free(decoder);
}

SpeechDecoder::SpeechDecoder(const SpeechModel& model) {
    quietLibrary();
    // A cap on the active models bounds the time that noise can take; the language weight and the missing best-path
    // pass are each a point of word error rate better than the library's own choice. The library's own removal of
    // silence would shift the times.
    cmd_ln_t* config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", QFile::encodeName(model.acoustic).constData(),
                                   "-lm", QFile::encodeName(model.language).constData(), "-dict",
                                   QFile::encodeName(model.dictionary).constData(), "-maxhmmpf", "3000", "-lw", "5",
                                   "-bestpath", "no", "-cmn", "batch", "-remove_silence", "no", nullptr);
    if (config != nullptr) {
        m_decoder.reset(ps_init(config));
        cmd_ln_free_r(config);
    }
    if (!m_decoder)
        throw WorkerError(QStringLiteral("The speech model in “%1” could not be loaded. Reinstall the package "
                                         "pocketsphinx-en-us.")
                              .arg(model.acoustic));
}

SpeechDecoder::~SpeechDecoder() = default;
SpeechDecoder::SpeechDecoder(SpeechDecoder&&) noexcept = default;

std::vector<RecognizedWord> SpeechDecoder::recognize(std::span<const std::int16_t> samples, double startSeconds) {
    std::vector<RecognizedWord> words;
    ps_decoder_t* decoder = m_decoder.get();
    if (samples.empty() || ps_start_utt(decoder) < 0)
        return words;
    // The whole stretch at once: the mean of its features is then known before the first frame is searched.
    ps_process_raw(decoder, samples.data(), samples.size(), FALSE, TRUE);
    ps_end_utt(decoder);
    for (ps_seg_t* segment = ps_seg_iter(decoder); segment != nullptr; segment = ps_seg_next(segment)) {
        const QString text = plainWord(QString::fromUtf8(ps_seg_word(segment)));
        int first = 0;
        int last = 0;
        ps_seg_frames(segment, &first, &last);
        if (!text.isEmpty())
            words.push_back(
                {startSeconds + first / modelFramesPerSecond, startSeconds + (last + 1) / modelFramesPerSecond, text});
    }
    return words;
}

} // namespace corvane
