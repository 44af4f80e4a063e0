// Puts a finished transcript where the application reads it: the last stage of a run. Called once, on the main thread
// or, if the run is interrupted while it is summarized, on the thread that heard of it.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <map>
#include <memory>

namespace corvane {

class TranscriptWriter {
public:
    virtual ~TranscriptWriter() = default;

    // The paths of what was written, for job_state.json. Throws FileError; every file is then whole or absent.
    [[nodiscard]] virtual std::map<QString, QString> write(const TranscriptResult& result) = 0;
};

// transcript.txt and, last, result.json in the run directory.
[[nodiscard]] std::unique_ptr<TranscriptWriter> runDirectoryWriter(const QString& directory);

} // namespace corvane
