#include "CorvaneWorker/Recognition/Recognizer.h"

#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>

namespace corvane {

namespace {

// The recogniser stretches the first and the last word over the silence at either end.
void fitInto(const SpeechRegion& region, std::vector<RecognizedWord>& words) {
    const double begin = static_cast<double>(region.speech.begin) / framesPerSecond;
    const double end = static_cast<double>(region.speech.end) / framesPerSecond;
    for (RecognizedWord& word : words) {
        word.speaker = region.speaker;
        word.start = std::clamp(word.start, begin, end);
        word.end = std::clamp(word.end, word.start, std::max(word.start, end));
    }
}

class RegionQueue {
public:
    RegionQueue(const SampleStore& samples, std::span<const SpeechRegion> regions, const RecognitionProgress& progress)
        : m_samples(samples), m_regions(regions), m_progress(progress), m_words(regions.size()) {
        for (const SpeechRegion& region : regions)
            m_totalFrames += region.sound.length();
    }

    // Takes region after region until none is left or a thread has failed.
    void work(const RecognitionEngine& engine) {
        try {
            const auto recognizer = engine.recognizer();
            while (const auto index = take()) {
                const SpeechRegion& region = m_regions[*index];
                const auto sound =
                    m_samples.read(region.sound.begin * frameSamples, region.sound.length() * frameSamples);
                auto words = recognizer->recognize(sound, static_cast<double>(region.sound.begin) / framesPerSecond);
                fitInto(region, words);
                deliver(*index, std::move(words));
            }
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            if (!m_error)
                m_error = std::current_exception();
        }
    }

    std::vector<RecognizedWord> allWords() {
        if (m_error)
            std::rethrow_exception(m_error);
        std::vector<RecognizedWord> all;
        for (auto& words : m_words)
            std::move(words.begin(), words.end(), std::back_inserter(all));
        return all;
    }

private:
    std::optional<std::size_t> take() {
        const std::lock_guard lock(m_mutex);
        if (m_error || m_next == m_regions.size())
            return std::nullopt;
        return m_next++;
    }

    void deliver(std::size_t index, std::vector<RecognizedWord> words) {
        const std::lock_guard lock(m_mutex);
        m_words[index] = std::move(words);
        m_doneFrames += m_regions[index].sound.length();
        m_progress(static_cast<double>(m_doneFrames) / static_cast<double>(m_totalFrames));
    }

    const SampleStore& m_samples;
    std::span<const SpeechRegion> m_regions;
    const RecognitionProgress& m_progress;
    std::mutex m_mutex;
    std::vector<std::vector<RecognizedWord>> m_words; // this and what follows is guarded by the mutex
    std::size_t m_next = 0;
    std::int64_t m_doneFrames = 0;
    std::int64_t m_totalFrames = 0;
    std::exception_ptr m_error;
};

} // namespace

std::vector<RecognizedWord> recognizeRegions(const SampleStore& samples, std::span<const SpeechRegion> regions,
                                             const RecognitionEngine& engine, unsigned threads,
                                             const RecognitionProgress& progress) {
    if (regions.empty())
        return {};
    RegionQueue queue(samples, regions, progress);
    {
        const auto count = std::clamp<std::size_t>(threads, 1, regions.size());
        std::vector<std::jthread> workers;
        for (std::size_t index = 0; index < count; ++index)
            workers.emplace_back([&queue, &engine] { queue.work(engine); });
    }
    return queue.allWords();
}

} // namespace corvane
