// A process that is killed at any moment of any write leaves every document old or new, and never half of one.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"

#include <QElapsedTimer>
#include <QProcess>

#include <gmock/gmock.h>

#include <random>

using namespace corvane;

namespace {

constexpr int kills = 200;

// How many times a text that every round writes whole stands in a document; -1 for a document of two rounds.
int roundsIn(const QByteArray& content, const QByteArray& word = "Round ") {
    std::map<QByteArray, int> rounds;
    for (qsizetype at = content.indexOf(word); at >= 0; at = content.indexOf(word, at + 1)) {
        const qsizetype start = at + word.size();
        ++rounds[content.mid(start, content.indexOf(' ', start) - start)];
    }
    return rounds.size() == 1 ? rounds.begin()->second : -1;
}

} // namespace

TEST(Kill, LeavesEveryDocumentWhole) {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(u"RUN"_s);
    const QString source = data.paths.root + u"/source.wav"_s;
    const QString launched = data.run(u"0A1B2C3D-0000-4000-8000-00000000000F"_s);
    constexpr qint64 audioBytes = 3'000'001;
    writeFileAtomically(source, QByteArray(audioBytes, 'a'));
    constexpr int segments = 600;
    data.write(u"RUN"_s, runFiles::result, encodeTranscriptResult(speechResult(segments)));
    const qsizetype turns = static_cast<qsizetype>(groupedSegments(speechResult(segments).segments).size());
    // One whole text of the first speaker's turns, for the three plain forms.
    const int names = static_cast<int>((turns + 1) / 2) * 200;

    std::mt19937 random(20260302);
    std::uniform_real_distribution<double> part(0, 1.1);
    double roundMilliseconds = 0;
    std::set<QByteArray> states;
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE(kill);
        QProcess writer;
        writer.start(QStringLiteral(WRITE_FOREVER), {data.paths.root, source});
        const auto waitForRound = [&writer] {
            const bool begun = waitFor([&writer] { return writer.canReadLine() || writer.waitForReadyRead(100); });
            return begun && !writer.readLine().isEmpty();
        };
        ASSERT_TRUE(waitForRound());
        if (kill == 0) {
            // The first writer ends some rounds, so that every document is there from then on. More than one is timed:
            // the end of a single one may be heard late.
            constexpr int timedRounds = 5;
            QElapsedTimer timer;
            timer.start();
            for (int round = 0; round < timedRounds; ++round)
                ASSERT_TRUE(waitForRound());
            roundMilliseconds = static_cast<double>(timer.elapsed()) / timedRounds;
        }
        std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(part(random) * roundMilliseconds));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(60'000));
        ASSERT_EQ(writer.exitStatus(), QProcess::CrashExit) << "it has to be killed, not to end";

        ASSERT_EQ(QFileInfo(data.recording(u"copy.wav"_s)).size(), audioBytes);
        const auto result = TranscriptResultReader().read(run);
        ASSERT_TRUE(result && result->segments.size() == segments);
        const QString draft = data.paths.meeting(u"M"_s);
        ASSERT_TRUE(readMeetingDraft(draft) && readRunAppMetadata(run));
        ASSERT_EQ(roundsIn(readMeetingDraft(draft)->title.toUtf8()), 200);
        ASSERT_EQ(roundsIn(readRunAppMetadata(run)->title.toUtf8()), 200);
        ASSERT_EQ(readRunAppMetadata(launched)->title, u"source"_s);
        ASSERT_EQ(roundsIn(JobStateReader().read(launched)->message.toUtf8()), 200);
        ASSERT_EQ(roundsIn(result->speakerNames.at(u"SPEAKER_00"_s).toUtf8()), 200);
        for (const QString& file : {runFiles::transcriptText, runFiles::transcriptSRT, runFiles::transcriptVTT})
            ASSERT_EQ(roundsIn(readFile(runFiles::in(run, file)).value()), names) << file.toStdString();
        states.insert(readFile(runFiles::in(run, runAppMetadataFile)).value() +
                      readFile(runFiles::in(run, runFiles::transcriptText)).value());
    }
    EXPECT_GT(states.size(), static_cast<std::size_t>(kills) / 4) << "the kills have to hit different moments";
}
