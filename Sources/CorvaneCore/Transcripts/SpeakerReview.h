// What the panels of a finished run show of its speakers and its transcript, and which excerpts of a voice are played.
// Pure functions. `names` is the working copy of the names: labels without one may be missing or hold "".
#pragma once

#include "CorvaneContract/Transcripts/TranscriptText.h"

namespace corvane {

// A row of the transcript as it is shown: the same turns that the transcript files have.
using TranscriptDisplayGroup = TranscriptSegmentGroup;

// The name without the blanks around it, or the label if nothing is left. The transcript files keep the blanks.
[[nodiscard]] QString displayName(const QString& label, const SpeakerNames& names);

// "2m 5s", rounded to whole seconds, halves away from zero. Minutes go on past 59. A number from a careless worker that
// is beyond all counting is shown as the highest or lowest that can be counted.
[[nodiscard]] QString formatDuration(double seconds);

// The label's open suggestion with the highest score, the first among equals.
[[nodiscard]] std::optional<SpeakerProfileMatchSuggestion> suggestedProfileMatch(const QString& speaker,
                                                                                 const SpeakerProfileMatches& matches);

// What the language model says about a speaker; the first entry counts.
[[nodiscard]] std::optional<TranscriptSpeakerContext> speakerContext(const QString& speaker,
                                                                     const TranscriptResult& result);

// Lower case, one blank between words, none around: the form in which texts about a speaker are compared.
[[nodiscard]] QString normalizedSpeakerHintText(const QString& text);

// The notable lines as they were written, without those that are empty, that came before in other case or spacing, or
// that repeat a part of the short label and the context: language models like to quote themselves.
[[nodiscard]] std::vector<QString> deduplicatedNotableLines(const TranscriptSpeakerContext& context);

[[nodiscard]] inline std::vector<TranscriptDisplayGroup>
groupedTranscript(const std::vector<TranscriptSegment>& segments) {
    return groupedSegments(segments);
}

// As timestampPlain, the times it refuses included.
[[nodiscard]] inline QString timestampText(double seconds) {
    return timestampPlain(seconds);
}

// A line "[HH:MM:SS] name: text" per turn, with no line feed behind the last. Empty if nothing was said.
[[nodiscard]] QString transcriptClipboardText(const std::vector<TranscriptDisplayGroup>& turns,
                                              const SpeakerNames& names);

// The excerpts by which a voice is heard, in this order: the five earliest that have any length.
[[nodiscard]] std::vector<TranscriptExample> playableExamples(std::vector<TranscriptExample> examples);

// How long to let an excerpt play that goes from `start` to `end` in a file of `duration`, when the player stands at
// `current`; all in seconds. At least half a second, so that a very short one can be heard at all and an excerpt behind
// the end of the file does not rush past.
[[nodiscard]] double excerptWaitSeconds(double start, double end, double duration, double current);

} // namespace corvane
