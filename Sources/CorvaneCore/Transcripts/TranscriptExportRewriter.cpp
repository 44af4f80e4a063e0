#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Text/UserText.h"

namespace corvane {

namespace {

SpeakerNames withoutBlanks(const SpeakerNames& names) {
    SpeakerNames kept;
    for (const auto& [label, name] : names) {
        if (!name.trimmed().isEmpty())
            kept.emplace(label, name);
    }
    return kept;
}

} // namespace

void TranscriptExportRewriter::rewrite(const QString& runDirectory, const SpeakerNames& speakerNames,
                                       const std::optional<SpeakerProfileAssignments>& speakerProfileAssignments,
                                       const std::optional<SpeakerProfileMatches>& speakerProfileMatches) const {
    const auto content = readFile(runFiles::in(runDirectory, runFiles::result));
    if (!content)
        throw TranscriptRewriteError(UserText::tr("%1 cannot be read").arg(runFiles::result));
    TranscriptResult result = decodeTranscriptResult(*content);
    result.speakerNames = withoutBlanks(speakerNames);
    if (speakerProfileAssignments)
        result.speakerProfileAssignments = *speakerProfileAssignments;
    if (speakerProfileMatches)
        result.speakerProfileMatches = *speakerProfileMatches;

    const auto write = [&runDirectory](const QString& file, const QByteArray& bytes) {
        writeFileAtomically(runFiles::in(runDirectory, file), bytes);
    };
    write(runFiles::result, encodeTranscriptResult(result));
    write(runFiles::transcriptText, transcriptText(result.segments, result.speakerNames).toUtf8());
    write(runFiles::transcriptSRT, transcriptSRT(result.segments, result.speakerNames).toUtf8());
    write(runFiles::transcriptVTT, transcriptVTT(result.segments, result.speakerNames).toUtf8());
}

} // namespace corvane
