// Reads a run's transcript. Whatever is wrong with a file, it is as if it were not there. Any thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <optional>

namespace corvane {

class TranscriptResultReader {
public:
    // Whether this gives a value is the test that a run has a transcript.
    [[nodiscard]] std::optional<TranscriptResult> read(const QString& runDirectory) const;

    // transcript.txt, or "".
    [[nodiscard]] QString transcriptText(const QString& runDirectory) const;
};

} // namespace corvane
