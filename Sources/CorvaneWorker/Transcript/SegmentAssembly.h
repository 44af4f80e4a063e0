// Makes the segments and speakers of result.json out of recognised words. Pure functions; any thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Recognition/RecognizedWord.h"
#include "CorvaneWorker/Recognition/Spelling.h"

#include <span>

namespace corvane {

// "SPEAKER_00" for 0, and so on.
[[nodiscard]] QString speakerLabel(int number);

// Words in order become segments: a new one begins at a pause of 0.6 s, where the speaker changes, and at the widest
// gap of what would be longer than 25 s. Labels are numbered in the order in which the speakers first appear. A
// segment of bare words gets a capital letter and, by its first word, a full stop or a question mark; where pieces of
// sentences were recognised apart, the capital letters at the seams are put right.
[[nodiscard]] std::vector<TranscriptSegment> assembleSegments(std::span<const RecognizedWord> words, Spelling spelling);

// One entry per label of the segments, in the order of first appearance: the seconds of its segments, and up to five
// examples of 2 to 8 s where there are such, spread over the recording.
[[nodiscard]] std::vector<TranscriptSpeaker> summarizeSpeakers(std::span<const TranscriptSegment> segments);

} // namespace corvane
