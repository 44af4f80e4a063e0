// The plain forms of a transcript: speaker turns, timestamps, and the text of the three transcript files. Pure
// functions. Nothing is escaped; line breaks inside a segment are kept.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"

namespace corvane {

// A speaker turn. Derived, never stored.
struct TranscriptSegmentGroup {
    double start = 0; // seconds
    double end = 0;
    QString speaker;
    QString text;

    friend bool operator==(const TranscriptSegmentGroup&, const TranscriptSegmentGroup&) = default;
};

// Joins neighbouring segments of one speaker, in file order and whatever the pause between them. A blank segment
// vanishes and interrupts nothing.
[[nodiscard]] std::vector<TranscriptSegmentGroup> groupedSegments(const std::vector<TranscriptSegment>& segments);

// "HH:MM:SS,mmm", rounded to the nearest millisecond, halves away from zero. A time that is not finite, or whose
// milliseconds do not fit in 64 bits, ends the program: it cannot come out of a decoded document by honest means.
[[nodiscard]] QString timestampSRT(double seconds);
// "HH:MM:SS": rounded to milliseconds first, then cut.
[[nodiscard]] QString timestampPlain(double seconds);

// `names` maps labels to names; a label without a name of more than blanks stands for itself. Names are used untrimmed.
[[nodiscard]] QString transcriptText(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names);
[[nodiscard]] QString transcriptSRT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names);
[[nodiscard]] QString transcriptVTT(const std::vector<TranscriptSegment>& segments, const SpeakerNames& names);

} // namespace corvane
