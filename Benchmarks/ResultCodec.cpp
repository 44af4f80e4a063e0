// What does it cost to read a long meeting's transcript, and to write its four files with new names? The peers are a
// plain read and plain writes of the same bytes; no limit can be kept by a disk that takes longer than that to flush.
#include "Benchmarks/Measuring.h"
#include "Support/Builders/DataDirectoryBuilder.h"

#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"

#include <QJsonDocument>

#include <cstdlib>

using namespace corvane;

namespace {

constexpr int segments = 20'000;
constexpr int repetitions = 21;

void require(bool done, const char* what) {
    if (!done) {
        std::fprintf(stderr, "%s failed\n", what);
        std::exit(1);
    }
}

} // namespace

int main() {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(QStringLiteral("RUN"));
    const TranscriptResult result = speechResult(segments);
    data.write(QStringLiteral("RUN"), runFiles::result, encodeTranscriptResult(result));
    const SpeakerNames names{{QStringLiteral("SPEAKER_00"), QStringLiteral("Ada Lovelace")},
                             {QStringLiteral("SPEAKER_01"), QStringLiteral("Zoë")}};
    const TranscriptExportRewriter rewriter;
    rewriter.rewrite(run, names, {}, {});

    std::vector<std::pair<QString, QByteArray>> written;
    for (const QString& file :
         {runFiles::result, runFiles::transcriptText, runFiles::transcriptSRT, runFiles::transcriptVTT})
        written.emplace_back(runFiles::in(run, file), readFile(runFiles::in(run, file)).value());
    qsizetype total = 0;
    for (const auto& [path, content] : written)
        total += content.size();
    std::printf("%d segments: result.json of %.1f MB, all four files %.1f MB\n", segments,
                static_cast<double>(written.front().second.size()) / 1e6, static_cast<double>(total) / 1e6);

    const double plainRead =
        medianMilliseconds(repetitions, [&] { require(readFile(written.front().first).has_value(), "read"); });
    const double plainWrite = medianMilliseconds(repetitions, [&] {
        for (const auto& [path, content] : written) {
            QFile file(path + QStringLiteral(".plain"));
            require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "write");
        }
    });
    const double flushedWrite = medianMilliseconds(repetitions, [&] {
        for (const auto& [path, content] : written)
            writeFileAtomically(path, content);
    });
    const double decode = medianMilliseconds(
        repetitions, [&] { require(TranscriptResultReader().read(run)->segments == result.segments, "decode"); });
    const double encode =
        medianMilliseconds(repetitions, [&] { require(!encodeTranscriptResult(result).isEmpty(), "encode"); });
    const double rewrite = medianMilliseconds(repetitions, [&] { rewriter.rewrite(run, names, {}, {}); });
    const double qtParse = medianMilliseconds(repetitions, [&] {
        require(QJsonDocument::fromJson(readFile(written.front().first).value()).isObject(), "Qt's parse");
    });
    printFigure("  TranscriptResultReader::read", decode, 60, "plain read", plainRead);
    printFigure("  the same", decode, 60, "parse by Qt, without structs", qtParse);
    printFigure("  TranscriptExportRewriter::rewrite", rewrite, 150, "plain write", plainWrite);
    printFigure("  the same", rewrite, 150, "flushed write", flushedWrite);
    std::printf("  of it, encoding result.json %37.2f ms\n", encode);
    return 0;
}
