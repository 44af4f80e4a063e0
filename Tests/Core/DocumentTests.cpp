// The application's own documents, its settings, and the files that it writes for others.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Fakes/FakeWorkspace.h"
#include "Support/Fakes/InMemoryTokenStore.h"
#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Library/AudioImport.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Services/DebugCommand.h"
#include "CorvaneCore/Settings/DefaultDiarizationSettings.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"

#include <QScopeGuard>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

using namespace corvane;

TEST(MeetingMetadata, FillsInWhatIsMissing) {
    const MeetingDraftMetadata plain = decodeMeetingDraft(R"({"title":"x","language":null,"unknown":{}})");
    MeetingDraftMetadata expected;
    expected.title = QStringLiteral("x");
    EXPECT_EQ(plain, expected);
    EXPECT_EQ(plain.recordingStatus, QStringLiteral("imported"));
    EXPECT_EQ(plain.settings.language, QStringLiteral("fr"));
    EXPECT_EQ(decodeRunAppMetadata("{}"), RunAppMetadata());

    const ProcessingSettings odd = decodeRunAppMetadata(R"({"min_speaker_count":5,"max_speaker_count":2,
        "speaker_count_mode":"exact","speaker_count":-3.0})")
                                       .settings;
    EXPECT_EQ(odd.minSpeakerCount, 5);
    EXPECT_EQ(odd.maxSpeakerCount, 5);
    EXPECT_EQ(odd.speakerCountMode, QStringLiteral("auto"));
    EXPECT_EQ(odd.speakerCount, -3);
    for (const char* refused : {R"({"speaker_count":"2"})", R"({"speaker_count":2.5})", R"({"title":5})",
                                R"({"diarization_enabled":1})", R"({"speaker_count":1e30})", "[]", ""})
        EXPECT_THROW(static_cast<void>(decodeRunAppMetadata(refused)), JsonError) << refused;
    EXPECT_THROW(static_cast<void>(decodeMeetingDraft(R"({"chunks":[null]})")), JsonError);
    EXPECT_THROW(static_cast<void>(decodeMeetingDraft(R"({"started_at":"2026"})")), JsonError);
}

TEST(MeetingMetadata, KeepsEverythingOverAWriteAndAReading) {
    const DataDirectoryBuilder data;
    MeetingDraftMetadata draft;
    draft.title = QStringLiteral("Zürich \"q\"\n/\\");
    draft.settings.maxSpeakerCount = 12;
    draft.startedAt = 794'152'733.123456;
    draft.chunks = {QStringLiteral("/a"), QStringLiteral("/b")};
    const QString meeting = data.makeDraft(QStringLiteral("M"), draft);
    EXPECT_EQ(readMeetingDraft(meeting), draft);
    RunAppMetadata record;
    EXPECT_EQ(encodeRunAppMetadata(record), R"({
    "audio_path": "",
    "diarization_enabled": true,
    "language": "fr",
    "max_speaker_count": 8,
    "min_speaker_count": 1,
    "speaker_count": 2,
    "speaker_count_mode": "auto",
    "speaker_identification_context": "",
    "title": ""
}
)");
    EXPECT_TRUE(encodeMeetingDraft({}).contains("\"chunks\": []"));
    EXPECT_FALSE(encodeMeetingDraft({}).contains("started_at"));
    EXPECT_THROW(writeRunAppMetadata(record, QStringLiteral("/nowhere")), FileError);
    EXPECT_EQ(fromReferenceSeconds(0), QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
    EXPECT_EQ(referenceSeconds(fromReferenceSeconds(draft.startedAt.value())), 794'152'733.123);
    EXPECT_TRUE(fromReferenceSeconds(1e308).isValid());
}

TEST(AppPaths, CreatesAPrivateTreeAndStopsAtTheFirstFailure) {
    const DataDirectoryBuilder data;
    for (const QString& directory :
         {data.paths.root, data.paths.recordings(), data.paths.runs(), data.paths.meetings(), data.paths.logs()}) {
        struct stat status {};
        ASSERT_EQ(::stat(QFile::encodeName(directory).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700U);
    }
    writeFileAtomically(data.paths.runs() + QStringLiteral("/kept"), "x");
    data.paths.createDirectories();
    EXPECT_TRUE(QFile::exists(data.paths.runs() + QStringLiteral("/kept")));

    const AppPaths blocked(data.paths.root + QStringLiteral("/deep/er"));
    createPrivateDirectory(blocked.root);
    writeFileAtomically(blocked.recordings(), "a file in the way");
    EXPECT_THROW(blocked.createDirectories(), FileError);
    EXPECT_FALSE(QFile::exists(blocked.runs()));
    EXPECT_TRUE(AppPaths(std::nullopt).root.endsWith(QLatin1String("/Corvane")));
}

TEST(FileNames, TakeAPathApart) {
    struct Case {
        const char *path, *last, *extension, *title;
    };
    for (const Case& c : std::vector<Case>{{"/a/b.c.WAV", "b.c.WAV", "WAV", "b.c"},
                                           {"/a/name.", "name.", "", "name."},
                                           {"/a/.hidden", ".hidden", "", ".hidden"},
                                           {"/a.b/name", "name", "", "name"},
                                           {"/a/b//", "b", "", "b"}}) {
        EXPECT_EQ(lastPathComponent(QString::fromLatin1(c.path)), QString::fromLatin1(c.last));
        EXPECT_EQ(pathExtension(QString::fromLatin1(c.path)), QString::fromLatin1(c.extension));
        EXPECT_EQ(fileTitle(QString::fromLatin1(c.path)), QString::fromLatin1(c.title));
    }
    for (const char* name : {"", ".", "..", "a/b", "/"})
        EXPECT_FALSE(isPlainName(QString::fromLatin1(name))) << name;
    EXPECT_FALSE(isPlainName(QStringLiteral("a") + QChar(0)));
    EXPECT_TRUE(isPlainName(QStringLiteral("...")));
}

TEST(DefaultDiarizationSettings, TellsAnAbsentKeyFromAStoredValue) {
    InMemoryUserDefaults defaults;
    const DefaultDiarizationSettings settings(defaults);
    const auto all = [&] {
        return QStringLiteral("%1 %2 %3 %4 %5")
            .arg(settings.speakerCount())
            .arg(settings.diarizationEnabled() ? 1 : 0)
            .arg(settings.speakerCountMode())
            .arg(settings.minSpeakerCount())
            .arg(settings.maxSpeakerCount(settings.minSpeakerCount()));
    };
    EXPECT_EQ(all(), QStringLiteral("2 1 auto 1 8"));
    for (const QString& key :
         {defaultsKeys::speakerCount, defaultsKeys::minSpeakerCount, defaultsKeys::maxSpeakerCount})
        defaults.set(key, std::int64_t{0});
    defaults.set(defaultsKeys::diarizationEnabled, false);
    defaults.set(defaultsKeys::speakerCountMode, QStringLiteral("exact"));
    EXPECT_EQ(all(), QStringLiteral("1 0 auto 1 1"));
    defaults.set(defaultsKeys::speakerCount, QStringLiteral("7"));
    defaults.set(defaultsKeys::minSpeakerCount, std::int64_t{5});
    defaults.set(defaultsKeys::maxSpeakerCount, std::int64_t{3});
    defaults.set(defaultsKeys::diarizationEnabled, std::int64_t{0});
    defaults.set(defaultsKeys::speakerCountMode, QStringLiteral("range"));
    EXPECT_EQ(all(), QStringLiteral("2 1 range 5 5"));
}

TEST(TranscriptExportRewriter, WritesNamesIntoFourFilesAndNothingElse) {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(QStringLiteral("R"));
    const QString label = QStringLiteral("SPEAKER_00");
    const SpeakerProfileAssignment assignment{QUuid::createUuid(), QStringLiteral("P")};
    TranscriptResult result = speechResult(3);
    result.speakerNames = {{QStringLiteral("gone"), QStringLiteral("Old")}};
    result.speakerProfileAssignments = {{label, assignment}};
    data.write(QStringLiteral("R"), runFiles::result, "{\"unknown\":1," + encodeTranscriptResult(result).mid(1));
    const TranscriptExportRewriter rewriter;
    const auto content = [&](const QString& file) { return readFile(runFiles::in(run, file)).value_or("absent"); };
    const auto all = [&] {
        return content(runFiles::result) + content(runFiles::transcriptText) + content(runFiles::transcriptSRT) +
               content(runFiles::transcriptVTT);
    };
    const SpeakerNames names{{label, QStringLiteral("Ada ")}, {QStringLiteral("SPEAKER_01"), QStringLiteral(" \t")}};
    rewriter.rewrite(run, names, {}, {});
    TranscriptResult expected = result;
    expected.speakerNames = {{label, QStringLiteral("Ada ")}};
    EXPECT_EQ(content(runFiles::result), encodeTranscriptResult(expected));
    EXPECT_EQ(content(runFiles::transcriptText), transcriptText(expected.segments, names).toUtf8());
    EXPECT_TRUE(content(runFiles::transcriptText).startsWith("[00:00:00.000] Ada : Thanks, everyone."));
    EXPECT_EQ(content(runFiles::transcriptSRT), transcriptSRT(expected.segments, names).toUtf8());
    EXPECT_EQ(content(runFiles::transcriptVTT), transcriptVTT(expected.segments, names).toUtf8());
    const QByteArray once = all();
    rewriter.rewrite(run, names, {}, {});
    EXPECT_EQ(all(), once);
    rewriter.rewrite(run, {}, SpeakerProfileAssignments(), SpeakerProfileMatches{{label, QUuid(), {}, 0.5, {}}});
    const TranscriptResult erased = decodeTranscriptResult(content(runFiles::result));
    EXPECT_TRUE(erased.speakerNames.empty());
    EXPECT_TRUE(erased.speakerProfileAssignments.empty());
    EXPECT_EQ(erased.speakerProfileMatches.size(), 1U);

    for (const char* damaged : {"{}", "x"}) {
        data.write(QStringLiteral("R"), runFiles::result, damaged);
        const QByteArray before = all();
        EXPECT_THROW(rewriter.rewrite(run, names, {}, {}), JsonError);
        EXPECT_EQ(all(), before);
    }
    ASSERT_TRUE(QFile::remove(runFiles::in(run, runFiles::result)));
    EXPECT_THROW(rewriter.rewrite(run, names, {}, {}), TranscriptRewriteError);
}

TEST(AudioImport, CopiesWholeOrNotAtAll) {
    const DataDirectoryBuilder data;
    const QString source = data.paths.root + QStringLiteral("/talk.m4a");
    const QString target = uniqueImportedAudioURL(data.paths.recordings(), source);
    EXPECT_TRUE(target.endsWith(QLatin1String(".m4a")));
    EXPECT_TRUE(
        uniqueImportedAudioURL(data.paths.recordings(), QStringLiteral("/x/talk")).endsWith(QLatin1String(".wav")));
    const auto nobody = [](double) {};
    const auto copyFails = [&](const QString& from) {
        EXPECT_THROW(copyAudioFile(from, target, nobody), AudioImportError) << from.toStdString();
        return !QFile::exists(target);
    };
    EXPECT_TRUE(copyFails(source));
    EXPECT_TRUE(copyFails(data.paths.recordings()));
    ASSERT_EQ(::mkfifo(QFile::encodeName(source).constData(), 0600), 0);
    EXPECT_TRUE(copyFails(source));
    ASSERT_TRUE(QFile::remove(source));

    // Sizes at which a short write falls into a buffer, or into the last block.
    for (const qint64 size : {qint64{10'000}, qint64{3 * 1024 * 1024 + 10'000}}) {
        const QByteArray content = QByteArray(static_cast<qsizetype>(size), 'a');
        writeFileAtomically(source, content);
        {
            // A file that may not grow stands for a disk that is full: the write before it fails is cut short.
            rlimit before{};
            ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
            const auto handler = std::signal(SIGXFSZ, SIG_IGN);
            const auto restore = qScopeGuard([&] {
                ::setrlimit(RLIMIT_FSIZE, &before);
                std::signal(SIGXFSZ, handler);
            });
            const rlimit full{static_cast<rlim_t>(size - 4'000), before.rlim_max};
            ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
            EXPECT_TRUE(copyFails(source)) << size;
            try {
                copyAudioFile(source, target, nobody);
            } catch (const AudioImportError& error) {
                EXPECT_TRUE(error.text().endsWith(QLatin1String(": File too large"))) << error.what();
            }
        }
        std::vector<double> fractions;
        copyAudioFile(source, target, [&](double fraction) { fractions.push_back(fraction); });
        EXPECT_EQ(readFile(target), content);
        EXPECT_EQ(fractions.back(), 1.0);
        EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
        ASSERT_TRUE(QFile::remove(target));
    }
    EXPECT_TRUE(QDir(data.paths.recordings()).isEmpty());
}

TEST(DebugCommand, PrintsOneLineAnItemAndAStatus) {
    const DataDirectoryBuilder data;
    InMemoryTokenStore tokens;
    FakeWorkspace workspace;
    std::string printed;
    const auto run = [&](const QStringList& words, const ProcessEnvironment& environment = {}, const char* typed = "") {
        std::istringstream input(typed);
        std::ostringstream output;
        const auto status = DebugCommand{tokens, workspace, environment, input, output}.run(
            QStringList{QStringLiteral("corvane")} + words, data.paths);
        printed = output.str();
        return status.value_or(-1);
    };
    const QString debug = QStringLiteral("debug");
    const std::string root = data.paths.root.toStdString();
    EXPECT_EQ(run({debug}), -1);
    EXPECT_EQ(run({QStringLiteral("x"), QStringLiteral("status")}), -1);
    EXPECT_EQ(run({debug, QStringLiteral("what")}), 2);
    EXPECT_EQ(printed, "Unknown debug command\n");
    EXPECT_EQ(run({debug, QStringLiteral("status"), QStringLiteral("more")}), 0);
    EXPECT_EQ(printed, "data_dir=" + root + "\ndatabase=" + root + "/corvane.sqlite\nlogs=" + root + "/logs\n");

    const QStringList save{debug, QStringLiteral("save-hf-token")};
    const QStringList tell{debug, QStringLiteral("token-status")};
    EXPECT_EQ(run(tell), 0);
    EXPECT_EQ(printed, "HF_TOKEN=missing\n");
    EXPECT_EQ(run(save, {{QStringLiteral("HF_TOKEN"), QStringLiteral(" \n")}}, " \n second"), 2);
    EXPECT_EQ(printed, "HF_TOKEN=missing\n");
    EXPECT_EQ(run(save), 2);
    EXPECT_EQ(run(save, {{QStringLiteral("HF_TOKEN"), QStringLiteral(" env ")}}, "typed\n"), 0);
    EXPECT_EQ(tokens.readHuggingFaceToken(), QStringLiteral("env"));
    EXPECT_EQ(run(save, {}, " typed \r\nmore"), 0);
    EXPECT_EQ(tokens.readHuggingFaceToken(), QStringLiteral("typed"));
    EXPECT_EQ(run(tell), 0);
    EXPECT_EQ(printed, "HF_TOKEN=configured\n");
    tokens.setFailure(TokenStoreError(1, QStringLiteral("The keyring is locked.")));
    EXPECT_EQ(run(save, {}, "typed\n"), 1);
    EXPECT_EQ(printed, "HF_TOKEN=save_failed\n");
    EXPECT_EQ(run(tell), 0);
    EXPECT_EQ(printed, "HF_TOKEN=missing\n");
    ASSERT_TRUE(QDir(data.paths.root).removeRecursively());
    EXPECT_EQ(run({debug, QStringLiteral("open-data-dir")}), 0);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(workspace.opened, QStringList(data.paths.root));
    EXPECT_TRUE(QFile::exists(data.paths.logs()));
}
