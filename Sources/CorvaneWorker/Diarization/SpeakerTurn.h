// Who speaks when, as the diarization tells it: the value between that stage and the making of segments.
#pragma once

namespace corvane {

struct SpeakerTurn {
    double start = 0; // seconds from the start of the recording
    double end = 0;
    int speaker = 0; // counted from 0 in no meaningful order

    friend bool operator==(const SpeakerTurn&, const SpeakerTurn&) = default;
};

} // namespace corvane
