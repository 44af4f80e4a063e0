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

// Cuts the sound at its quietest tenth of a second, as late as the limit allows and not before half of it, until no
// piece is too long.
void appendCut(std::vector<SpeechRegion>& regions, SpeechRegion region, std::span<const float> levels,
               std::int64_t longest) {
    const auto part = [&](std::int64_t begin, std::int64_t end) {
        regions.push_back({{begin, end}, {std::max(begin, region.speech.begin), std::min(end, region.speech.end)}});
    };
    std::int64_t begin = region.sound.begin;
    while (region.sound.end - begin > longest) {
        const std::int64_t from = begin + longest / 2;
        std::int64_t quietest = from;
        float least = 0.0F;
        for (std::int64_t frame = from; frame + 10 <= begin + longest; ++frame) {
            float sum = 0.0F;
            for (std::int64_t offset = 0; offset < 10; ++offset)
                sum += levels[static_cast<std::size_t>(frame + offset)];
            if (frame == from || sum < least) {
                least = sum;
                quietest = frame + 5;
            }
        }
        part(begin, quietest);
        begin = quietest;
    }
    part(begin, region.sound.end);
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

std::vector<SpeechRegion> speechRegions(std::span<const FrameRange> speech, std::span<const float> levels,
                                        const RegionLimits& limits) {
    std::vector<FrameRange> joined;
    for (const FrameRange& range : speech) {
        if (!joined.empty() && range.begin - joined.back().end < limits.joinedPause)
            joined.back().end = range.end;
        else
            joined.push_back(range);
    }
    std::vector<SpeechRegion> regions;
    const auto count = static_cast<std::int64_t>(levels.size());
    for (std::size_t index = 0; index < joined.size(); ++index) {
        const std::int64_t before = index == 0 ? 0 : (joined[index - 1].end + joined[index].begin) / 2;
        const std::int64_t behind =
            index + 1 == joined.size() ? count : (joined[index].end + joined[index + 1].begin) / 2;
        const FrameRange padded{std::max(before, joined[index].begin - limits.paddingFrames),
                                std::min(behind, joined[index].end + limits.paddingFrames)};
        appendCut(regions, {padded, joined[index]}, levels, limits.longestFrames);
    }
    return regions;
}

} // namespace corvane
