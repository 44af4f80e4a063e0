// One PocketSphinx decoder: a stretch of sound in, words with times out. Heavy to build (some 100 MB and half a
// second); used by one thread at a time.
#pragma once

#include "CorvaneWorker/Recognition/RecognizedWord.h"
#include "CorvaneWorker/Recognition/SpeechModel.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct ps_decoder_s;

namespace corvane {

class SpeechDecoder {
public:
    // Throws WorkerError if the model does not load.
    explicit SpeechDecoder(const SpeechModel& model);
    ~SpeechDecoder();
    SpeechDecoder(SpeechDecoder&&) noexcept;

    // The words of the samples, which begin at `startSeconds` of the recording. Silences, noises and markers of an
    // alternate pronunciation are left out. The same samples always give the same words.
    [[nodiscard]] std::vector<RecognizedWord> recognize(std::span<const std::int16_t> samples, double startSeconds);

private:
    struct Free {
        void operator()(ps_decoder_s* decoder) const;
    };
    std::unique_ptr<ps_decoder_s, Free> m_decoder;
};

// PocketSphinx ends the process where its model is damaged beyond what it can report. This is called right before,
// once for the whole process. Set it before any decoder is built.
void setSpeechLibraryFailureHandler(std::function<void()> handler);

// The word without the marker of its pronunciation, "read(2)" for example; empty for what is not a word.
[[nodiscard]] QString plainWord(const QString& dictionaryWord);

} // namespace corvane
