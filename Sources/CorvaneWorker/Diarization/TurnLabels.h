// From what windows say to turns: every step of the speech gets a speaker, and turns get their borders. Used by the
// separators; any thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Diarization/SpeakerTurn.h"
#include "CorvaneWorker/Diarization/VoiceWindows.h"

namespace corvane {

// `scores` has a row for each window and a column for each speaker. Every step of the speech is given to the speaker
// for whom the windows around it vote, and scraps to a neighbour.
[[nodiscard]] std::vector<SpeakerTurn> labelSpeech(std::span<const FrameRange> speech,
                                                   std::span<const FrameRange> windows, const Eigen::MatrixXf& scores);

// All of the speech as turns of one speaker.
[[nodiscard]] std::vector<SpeakerTurn> turnsOfOne(std::span<const FrameRange> speech);

// Moves each border between two turns that touch to the quietest place nearby.
void moveBordersToPauses(std::vector<SpeakerTurn>& turns, const SampleStore& samples);

} // namespace corvane
