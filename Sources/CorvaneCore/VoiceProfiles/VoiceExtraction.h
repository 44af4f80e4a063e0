// Having the worker put the voice of one speaker of a run into numbers.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"
#include "CorvaneCore/Interfaces/ProcessLauncher.h"

namespace corvane {

// The vector could not be had. text() is what the user reads.
class SpeakerProfileExtractionError : public Error {
public:
    using Error::Error;
    [[nodiscard]] static SpeakerProfileExtractionError workerFailed(const CommandResult& result);
};

struct VoiceExtraction {
    QString worker; // the executable
    QString runDirectory;
    QString speaker;
    QString output; // where the vector goes

    // The worker's exit status and what it said. Blocks: never on the main thread. Throws nothing: a worker that cannot
    // be started is status 2.
    [[nodiscard]] CommandResult run(ProcessLauncher& processes, const CommandCancellation& cancelled) const;
    // What a run() of status 0 has left. Throws SpeakerProfileExtractionError or JsonError.
    [[nodiscard]] ExtractedSpeakerEmbedding read() const;
};

// The name of a file of a speaker in its run directory: `prefix`, the label and ".json". A label is data from outside.
// Where it holds a slash, a per cent sign or a control character, these are written as a per cent sign and two digits
// for each byte; a label of more than 160 bytes is cut there and a hyphen and the beginning of its SHA-256 follow, so
// that the file lies in the run directory and no two labels share one.
[[nodiscard]] QString speakerFileName(const QString& prefix, const QString& speaker);

} // namespace corvane
