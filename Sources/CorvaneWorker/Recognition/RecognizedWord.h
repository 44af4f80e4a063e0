// A word of the recording. A value; any thread.
#pragma once

#include <QString>

namespace corvane {

struct RecognizedWord {
    double start = 0; // seconds from the start of the recording
    double end = 0;
    QString text;
    int speaker = 0; // as SpeakerTurn has it

    friend bool operator==(const RecognizedWord&, const RecognizedWord&) = default;
};

} // namespace corvane
