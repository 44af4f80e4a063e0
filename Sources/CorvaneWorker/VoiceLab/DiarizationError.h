// How far found speaker turns are from the true ones. Pure functions; used by the voice-lab and by tests.
#pragma once

#include "CorvaneWorker/Diarization/SpeakerTurn.h"

#include <QString>

#include <span>
#include <vector>

namespace corvane {

struct DiarizationError {
    double speech = 0; // scored seconds of true speech, as are the next three
    double missed = 0;
    double falseAlarm = 0;
    double confused = 0;

    [[nodiscard]] double rate() const { return (missed + falseAlarm + confused) / speech; }
};

// Within 0.25 s of a true start or end nothing is scored. The found speakers are matched to the true ones in the way
// that is kindest. Turns of the truth do not overlap.
[[nodiscard]] DiarizationError compareTurns(std::span<const SpeakerTurn> truth, std::span<const SpeakerTurn> found);

// Lines of start, end (seconds) and name, separated by tabs; whatever follows on a line is passed over.
[[nodiscard]] std::vector<SpeakerTurn> parseTruth(const QString& text);

} // namespace corvane
