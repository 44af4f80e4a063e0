// Sound that a test plays and knows again in what was recorded. Pure functions.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <random>
#include <span>
#include <vector>

namespace corvane {

// Noise below some 4 kHz that swells like syllables; mono, of a peak below 1. Other seeds give unrelated sound.
inline std::vector<float> speechLike(int sampleRate, double seconds, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<float> sound(static_cast<std::size_t>(sampleRate * seconds));
    double slow = 0;
    double slower = 0;
    const double step = 1 - std::exp(-2 * 3.14159265 * 1500 / sampleRate);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double white = static_cast<double>(random()) / 2147483648.0 - 1;
        slow += step * (white - slow);
        slower += step * (slow - slower);
        const double second = static_cast<double>(i) / sampleRate;
        sound[i] = static_cast<float>(slower * (0.7 + 0.6 * std::sin(2 * 3.14159265 * (3 + seed % 5) * second)));
    }
    const auto peak = std::abs(*std::ranges::max_element(sound, {}, [](float s) { return std::abs(s); }));
    for (float& sample : sound)
        sample *= 0.8F / peak;
    return sound;
}

struct Likeness {
    double correlation = 0; // 1: the same, without a frame lost or added
    double gainDecibels = 0;
    std::ptrdiff_t position = 0; // of the sound in the recording
};

// Where in a recording that is silent before the sound it best lies, from its first samples that are heard.
inline Likeness findSound(std::span<const float> recording, std::span<const float> sound) {
    const auto isHeard = [](float sample) { return std::abs(sample) > 0.02F; };
    const auto heard = std::ranges::find_if(recording, isHeard) - recording.begin();
    const auto begins = heard - (std::ranges::find_if(sound, isHeard) - sound.begin());
    const auto compare = [&](std::ptrdiff_t at, std::size_t length) {
        double both = 0;
        double there = 0;
        double here = 0;
        for (std::size_t i = 0; i < length; ++i) {
            const auto from = at + static_cast<std::ptrdiff_t>(i);
            const double heardHere =
                from < 0 || from >= std::ssize(recording) ? 0 : recording[static_cast<std::size_t>(from)];
            both += heardHere * sound[i];
            there += heardHere * heardHere;
            here += static_cast<double>(sound[i]) * sound[i];
        }
        return Likeness{.correlation = there > 0 ? both / std::sqrt(there * here) : 0,
                        .gainDecibels = there > 0 ? 10 * std::log10(there / here) : -200,
                        .position = at};
    };
    Likeness best;
    for (std::ptrdiff_t at = begins - 300; at < begins + 300; ++at) {
        const Likeness likeness = compare(at, std::min<std::size_t>(sound.size(), 8000));
        if (likeness.correlation > best.correlation)
            best = likeness;
    }
    return compare(best.position, sound.size());
}

} // namespace corvane
