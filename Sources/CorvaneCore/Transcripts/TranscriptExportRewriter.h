// The one writer of a run's result after the worker has finished: it brings the names that the user gave into
// result.json and into the three plain transcript files. Stateless; called on the main thread.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <optional>

namespace corvane {

class TranscriptRewriteError : public Error {
public:
    using Error::Error;
};

class TranscriptExportRewriter {
public:
    // `speakerNames` replaces the stored names wholly; blank ones are left out, the others are kept as typed. Absent
    // assignments or matches leave the stored ones. Throws TranscriptRewriteError if result.json cannot be read, and
    // then nothing has been written, JsonError if it does not decode, FileError if a file cannot be written. Each file
    // is replaced as a whole, result.json first.
    void rewrite(const QString& runDirectory, const SpeakerNames& speakerNames,
                 const std::optional<SpeakerProfileAssignments>& speakerProfileAssignments,
                 const std::optional<SpeakerProfileMatches>& speakerProfileMatches) const;
};

} // namespace corvane
