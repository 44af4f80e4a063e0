// Speech that was heard but not understood. Pure functions; any thread.
#pragma once

#include "CorvaneWorker/Diarization/SpeakerTurn.h"
#include "CorvaneWorker/Recognition/RecognizedWord.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"

#include <span>
#include <vector>

namespace corvane {

// Stands in a transcript for what nobody understood, in English and in French.
inline constexpr auto inaudible = "[inaudible]";

// The words, and a passage wherever `heard`, the network that knows speech, heard some while the recogniser found no
// word for a whole turn of half a second or for 1.5 s of one: in a language that its model does not know, for example.
// Without it the transcript would say that nobody spoke there. All three are in order, and so is the result.
[[nodiscard]] std::vector<RecognizedWord>
withInaudible(std::vector<RecognizedWord> words, std::span<const SpeakerTurn> turns, std::span<const FrameRange> heard);

} // namespace corvane
