#include "CorvaneWorker/Run/ExtractRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Audio/AudioDecoder.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/Run/StageChoice.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr double leastSpeechSeconds = 1.5;

TranscriptResult readResult(const QString& runDirectory) {
    const auto json = readFile(runFiles::in(runDirectory, runFiles::result));
    if (!json)
        throw WorkerError(QStringLiteral("The run has no transcript to take a voice from."));
    try {
        return decodeTranscriptResult(*json);
    } catch (const JsonError& error) {
        throw WorkerError(QStringLiteral("The transcript of the run is damaged: %1.").arg(error.text()));
    }
}

QString audioOfRun(const QString& runDirectory, const TranscriptResult& result) {
    if (const auto audio = stringAt(result.metadata, QStringLiteral("audio")); audio && !audio->isEmpty())
        return *audio;
    const auto log = readFile(runFiles::in(runDirectory, runFiles::events)).value_or(QByteArray());
    for (const QByteArray& line : log.split('\n')) {
        const auto event = decodeWorkerJobEvent(line);
        if (!event || event->type != jobEvents::jobStarted)
            continue;
        if (const auto audio = stringAt(event->payload, QStringLiteral("audio")))
            return *audio;
    }
    throw WorkerError(QStringLiteral("The run does not tell which recording it was made from."));
}

// The label's segments as frames, in order, neighbours joined.
std::vector<FrameRange> speechOf(const TranscriptResult& result, const QString& label) {
    std::vector<FrameRange> ranges;
    constexpr double longestRecordingSeconds = 1e7; // a careless document must not overflow a frame number
    for (const TranscriptSegment& segment : result.segments) {
        if (segment.speaker != label || !(segment.start >= 0) || !(segment.end > segment.start))
            continue;
        ranges.push_back({std::llround(std::min(segment.start, longestRecordingSeconds) * framesPerSecond),
                          std::llround(std::min(segment.end, longestRecordingSeconds) * framesPerSecond)});
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const auto& left, const auto& right) { return left.begin < right.begin; });
    std::vector<FrameRange> joined;
    for (const FrameRange& range : ranges) {
        if (!joined.empty() && range.begin <= joined.back().end)
            joined.back().end = std::max(joined.back().end, range.end);
        else
            joined.push_back(range);
    }
    return joined;
}

// Where the label speaks and there is sound at all.
std::vector<FrameRange> intersect(std::span<const FrameRange> left, std::span<const FrameRange> right) {
    std::vector<FrameRange> common;
    for (std::size_t one = 0, other = 0; one < left.size() && other < right.size();) {
        const FrameRange range{std::max(left[one].begin, right[other].begin),
                               std::min(left[one].end, right[other].end)};
        if (range.length() > 0)
            common.push_back(range);
        if (left[one].end < right[other].end)
            ++one;
        else
            ++other;
    }
    return common;
}

ExtractedSpeakerEmbedding extract(const ExtractCommand& command) {
    const TranscriptResult result = readResult(command.runDirectory);
    const auto wanted = speechOf(result, command.speaker);
    if (wanted.empty())
        throw WorkerError(QStringLiteral("The transcript has no speaker “%1”.").arg(command.speaker));
    const WorkerError tooLittle(
        QStringLiteral("“%1” speaks too little in this recording to know the voice again.").arg(command.speaker));
    SampleStore samples(QDir::tempPath());
    FrameLevels levels;
    const auto sink = [&](std::span<const std::int16_t> block) {
        samples.append(block);
        levels.add(block);
    };
    (void)decodeAudio(audioOfRun(command.runDirectory, result), sink, [](double) {});
    const auto speech = intersect(wanted, findSpeech(levels.levels()));
    std::int64_t frames = 0;
    for (const FrameRange& range : speech)
        frames += range.length();
    const double seconds = static_cast<double>(frames) / framesPerSecond;
    if (seconds < leastSpeechSeconds)
        throw tooLittle;
    const MeasuredVoice voice = chooseMeasurer()->measure(samples, speech);
    if (voice.windowCount == 0)
        throw tooLittle;
    ExtractedSpeakerEmbedding embedding;
    embedding.speaker = command.speaker;
    embedding.embedding.assign(voice.vector.begin(), voice.vector.end());
    embedding.modelID = voiceModelID;
    embedding.dimension = static_cast<std::int64_t>(embedding.embedding.size());
    embedding.sampleCount = voice.windowCount;
    embedding.totalSpeechSeconds = seconds;
    embedding.sourceRunID =
        QFileInfo(QDir::cleanPath(QDir::current().absoluteFilePath(command.runDirectory))).fileName();
    return embedding;
}

} // namespace

int runExtract(const ExtractCommand& command) {
    try {
        writeFileAtomically(command.output, encodeExtractedSpeakerEmbedding(extract(command)));
        return 0;
    } catch (const Error& error) {
        logLine(error.text());
    } catch (const std::exception& error) {
        logLine(QStringLiteral("The voice could not be measured: %1.").arg(QString::fromUtf8(error.what())));
    }
    return 1;
}

} // namespace corvane
