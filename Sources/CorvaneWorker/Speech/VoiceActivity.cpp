#include "CorvaneWorker/Speech/VoiceActivity.h"

#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::int64_t blockFrames = 500;         // the thresholds are found anew this often
constexpr std::int64_t surroundingsFrames = 3000; // from this much sound
constexpr std::int64_t shortestSpeech = 10;
constexpr std::int64_t bridgedPause = 30;
constexpr float aboveNoise = 7.0F;         // dB
constexpr float belowLoud = 30.0F;         // dB under the loud frames of the surroundings
constexpr float leastDynamicRange = 12.0F; // dB between the loud and the quiet frames
constexpr float faintest = -70.0F;

float percentile(std::vector<float>& values, double fraction) {
    const auto index = static_cast<std::ptrdiff_t>(fraction * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), values.begin() + index, values.end());
    return values[static_cast<std::size_t>(index)];
}

// The level above which a frame of the block is speech.
float thresholdOfBlock(std::span<const float> levels, std::int64_t block) {
    const auto count = static_cast<std::int64_t>(levels.size());
    const std::int64_t middle = block * blockFrames + blockFrames / 2;
    const std::int64_t begin = std::clamp<std::int64_t>(middle - surroundingsFrames / 2, 0, count);
    const std::int64_t end = std::clamp<std::int64_t>(middle + surroundingsFrames / 2, begin, count);
    // Frames of pure zeros are a muted microphone or a gap; they say nothing about the noise of the room.
    std::vector<float> sounding;
    for (const float level : levels.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)))
        if (level > silentLevel + 6.0F)
            sounding.push_back(level);
    if (sounding.empty())
        return 0.0F;
    const bool hasMutedFrames = static_cast<std::int64_t>(sounding.size()) < (end - begin) * 9 / 10;
    const float loud = percentile(sounding, 0.95);
    float noise = percentile(sounding, 0.10);
    if (hasMutedFrames)
        noise = std::min(noise, loud - belowLoud - aboveNoise);
    if (loud - noise < leastDynamicRange)
        return 0.0F;
    return std::max({std::min(noise + aboveNoise, loud - leastDynamicRange / 2), loud - belowLoud, faintest});
}

void appendRange(std::vector<FrameRange>& ranges, FrameRange range) {
    if (!ranges.empty() && range.begin - ranges.back().end < bridgedPause)
        ranges.back().end = range.end;
    else
        ranges.push_back(range);
}

} // namespace

std::vector<FrameRange> findSpeech(std::span<const float> levels) {
    std::vector<FrameRange> ranges;
    const auto count = static_cast<std::int64_t>(levels.size());
    float threshold = 0.0F;
    std::int64_t begin = -1;
    for (std::int64_t frame = 0; frame <= count; ++frame) {
        if (frame < count && frame % blockFrames == 0)
            threshold = thresholdOfBlock(levels, frame / blockFrames);
        const bool speech = frame < count && levels[static_cast<std::size_t>(frame)] > threshold;
        if (speech && begin < 0)
            begin = frame;
        if (!speech && begin >= 0) {
            appendRange(ranges, {begin, frame});
            begin = -1;
        }
    }
    std::erase_if(ranges, [](const FrameRange& range) { return range.length() < shortestSpeech; });
    return ranges;
}

std::vector<FrameRange> confirmedSpeech(std::span<const FrameRange> loud, std::span<const FrameRange> heard) {
    constexpr double leastShare = 0.3;
    constexpr std::int64_t leastAmongNoise = 150; // in music the network now and then takes a note for a word
    constexpr std::int64_t reach = 15;            // frames by which the network is early or late
    enum class Place { quiet, amongNoise, inSpeech };
    std::vector<Place> places(heard.size(), Place::quiet);
    std::vector<FrameRange> speech;
    std::size_t first = 0;
    for (const FrameRange& range : loud) {
        while (first < heard.size() && heard[first].end + reach <= range.begin)
            ++first;
        std::size_t last = first;
        std::int64_t common = 0;
        for (; last < heard.size() && heard[last].begin - reach < range.end; ++last)
            common += std::min(range.end, heard[last].end + reach) - std::max(range.begin, heard[last].begin - reach);
        const bool isSpeech = static_cast<double>(common) >= leastShare * static_cast<double>(range.length());
        if (isSpeech)
            speech.push_back(range);
        for (std::size_t index = first; index < last; ++index)
            if (heard[index].begin < range.end && range.begin < heard[index].end)
                places[index] = std::max(places[index], isSpeech ? Place::inSpeech : Place::amongNoise);
    }
    for (std::size_t index = 0; index < heard.size(); ++index)
        if (places[index] == Place::quiet ||
            (places[index] == Place::amongNoise && heard[index].length() >= leastAmongNoise))
            speech.push_back(heard[index]);
    std::sort(speech.begin(), speech.end(),
              [](const FrameRange& left, const FrameRange& right) { return left.begin < right.begin; });
    return speech;
}

} // namespace corvane
