// The stages of a run, and which implementation of each it gets by what is installed and asked for. The only place
// where that is decided. One thread.
#pragma once

#include "CorvaneWorker/Audio/AudioDecoder.h"
#include "CorvaneWorker/CommandLine/CommandLine.h"
#include "CorvaneWorker/Diarization/SpeakerSeparator.h"
#include "CorvaneWorker/Diarization/VoiceMeasurer.h"
#include "CorvaneWorker/Recognition/RecognitionEngine.h"
#include "CorvaneWorker/Run/LanguageStep.h"
#include "CorvaneWorker/Speech/SpeechDetector.h"
#include "CorvaneWorker/Transcript/TranscriptWriter.h"

namespace corvane {

// In the order in which they work; none of the pointers is null.
struct RunStages {
    std::unique_ptr<AudioSource> source;
    std::unique_ptr<SpeechDetector> detector;
    std::unique_ptr<SpeakerSeparator> separator;
    std::unique_ptr<RecognitionEngine> engine;
    LanguageChoice language;
    std::shared_ptr<TranscriptWriter> writer; // shared with the end of an interrupted run
    QStringList remarks; // for the log and metadata: which better means are missing, one sentence each
};

// Loading takes up to some seconds. Throws WorkerError if nothing knows the language.
[[nodiscard]] RunStages chooseStages(const ProcessCommand& command);

// By the voice network where it is installed, and by plainer means without it.
[[nodiscard]] std::unique_ptr<SpeakerSeparator> chooseSeparator();
[[nodiscard]] std::unique_ptr<VoiceMeasurer> chooseMeasurer();

} // namespace corvane
