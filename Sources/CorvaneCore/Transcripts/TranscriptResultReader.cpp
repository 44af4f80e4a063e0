#include "CorvaneCore/Transcripts/TranscriptResultReader.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonReader.h"

namespace corvane {

std::optional<TranscriptResult> TranscriptResultReader::read(const QString& runDirectory) const {
    const auto content = readFile(runFiles::in(runDirectory, runFiles::result));
    if (!content)
        return std::nullopt;
    try {
        return decodeTranscriptResult(*content);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

QString TranscriptResultReader::transcriptText(const QString& runDirectory) const {
    return readTextFile(runFiles::in(runDirectory, runFiles::transcriptText)).value_or(QString());
}

} // namespace corvane
