#include "CorvaneWorker/Recognition/SpeechRegions.h"

#include "CorvaneWorker/Speech/FrameLevels.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

std::vector<SpeechRegion> joinedTurns(std::span<const SpeakerTurn> turns, std::int64_t joinedPause) {
    std::vector<SpeechRegion> joined;
    for (const SpeakerTurn& turn : turns) {
        const FrameRange speech{std::llround(turn.start * framesPerSecond), std::llround(turn.end * framesPerSecond)};
        if (!joined.empty() && joined.back().speaker == turn.speaker &&
            speech.begin - joined.back().speech.end < joinedPause)
            joined.back().speech.end = speech.end;
        else
            joined.push_back({speech, speech, turn.speaker});
    }
    return joined;
}

// Cuts the sound at its quietest tenth of a second, as late as the limit allows and not before half of it, until no
// piece is too long.
void appendCut(std::vector<SpeechRegion>& regions, SpeechRegion region, std::span<const float> levels,
               std::int64_t longest) {
    const auto part = [&](std::int64_t begin, std::int64_t end) {
        regions.push_back(
            {{begin, end}, {std::max(begin, region.speech.begin), std::min(end, region.speech.end)}, region.speaker});
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

std::vector<SpeechRegion> speechRegions(std::span<const SpeakerTurn> turns, std::span<const float> levels,
                                        const RegionLimits& limits) {
    const auto joined = joinedTurns(turns, limits.joinedPause);
    std::vector<SpeechRegion> regions;
    const auto count = static_cast<std::int64_t>(levels.size());
    for (std::size_t index = 0; index < joined.size(); ++index) {
        const FrameRange& speech = joined[index].speech;
        const std::int64_t before = index == 0 ? 0 : (joined[index - 1].speech.end + speech.begin) / 2;
        const std::int64_t behind =
            index + 1 == joined.size() ? count : (speech.end + joined[index + 1].speech.begin) / 2;
        const FrameRange padded{std::max(before, speech.begin - limits.paddingFrames),
                                std::min(behind, speech.end + limits.paddingFrames)};
        appendCut(regions, {padded, speech, joined[index].speaker}, levels, limits.longestFrames);
    }
    return regions;
}

} // namespace corvane
