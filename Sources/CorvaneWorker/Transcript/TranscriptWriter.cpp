#include "CorvaneWorker/Transcript/TranscriptWriter.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"

namespace corvane {

namespace {

class RunDirectoryWriter : public TranscriptWriter {
public:
    explicit RunDirectoryWriter(const QString& directory)
        : m_text(runFiles::in(directory, runFiles::transcriptText)),
          m_result(runFiles::in(directory, runFiles::result)) {}

    std::map<QString, QString> write(const TranscriptResult& result) override {
        writeFileAtomically(m_text, transcriptText(result.segments, {}).toUtf8());
        writeFileAtomically(m_result, encodeTranscriptResult(result));
        return {{QStringLiteral("result"), m_result}, {QStringLiteral("transcript"), m_text}};
    }

private:
    const QString m_text;
    const QString m_result;
};

} // namespace

std::unique_ptr<TranscriptWriter> runDirectoryWriter(const QString& directory) {
    return std::make_unique<RunDirectoryWriter>(directory);
}

} // namespace corvane
