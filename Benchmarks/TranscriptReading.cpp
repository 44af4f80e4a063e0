// How long does it take to open the transcript of a long meeting, against the reader that Qt brings along?
#include "Ratio.h"

#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace corvane;

namespace {

constexpr int segmentCount = 20'000; // a day of talk

TranscriptResult longMeeting() {
    TranscriptResult result;
    for (int i = 0; i < segmentCount; ++i)
        result.segments.push_back({.start = i * 3.217,
                                   .end = i * 3.217 + 2.9041,
                                   .text = QStringLiteral("Sentence %1 of a meeting, “as it was spoken”, is about "
                                                          "as long as this one, which has some ninety letters.")
                                               .arg(i),
                                   .speaker = QStringLiteral("SPEAKER_0%1").arg(i % 4)});
    return result;
}

std::vector<TranscriptSegment> segmentsByQt(const QByteArray& json) {
    std::vector<TranscriptSegment> segments;
    const QJsonArray array = QJsonDocument::fromJson(json).object().value(QStringLiteral("segments")).toArray();
    segments.reserve(static_cast<std::size_t>(array.size()));
    for (const auto& value : array) {
        const QJsonObject object = value.toObject();
        segments.push_back({.start = object.value(QStringLiteral("start")).toDouble(),
                            .end = object.value(QStringLiteral("end")).toDouble(),
                            .text = object.value(QStringLiteral("text")).toString(),
                            .speaker = object.value(QStringLiteral("speaker")).toString()});
    }
    return segments;
}

} // namespace

int main() {
    const TranscriptResult meeting = longMeeting();
    const QByteArray json = encodeTranscriptResult(meeting);
    if (decodeTranscriptResult(json).segments != meeting.segments || segmentsByQt(json) != meeting.segments) {
        std::fprintf(stderr, "The readers do not agree about what they read.\n");
        return EXIT_FAILURE;
    }
    const auto medians = benchmarks::compare(
        25, [&] { benchmark::DoNotOptimize(decodeTranscriptResult(json)); },
        [&] { benchmark::DoNotOptimize(segmentsByQt(json)); });
    std::printf("%d segments, %.2f MB\n", segmentCount, static_cast<double>(json.size()) / 1e6);
    benchmarks::print("decodeTranscriptResult", medians, "QJsonDocument");
    return EXIT_SUCCESS;
}
