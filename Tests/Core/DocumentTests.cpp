// The application's own documents, its settings, and the files that it writes for others.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/FullDisk.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Library/AudioImport.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Settings/DefaultDiarizationSettings.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;

TEST(MeetingMetadata, FillsInWhatIsMissing) {
    const MeetingDraftMetadata plain = decodeMeetingDraft(R"({"title":"x","language":null,"unknown":{}})");
    MeetingDraftMetadata expected;
    expected.title = u"x"_s;
    EXPECT_EQ(plain, expected);
    EXPECT_EQ(plain.recordingStatus, u"imported"_s);
    EXPECT_EQ(plain.settings.language, u"fr"_s);
    EXPECT_EQ(decodeRunAppMetadata("{}"), RunAppMetadata());

    const ProcessingSettings odd = decodeRunAppMetadata(R"({"min_speaker_count":5,"max_speaker_count":2,
        "speaker_count_mode":"exact","speaker_count":-3.0})")
                                       .settings;
    EXPECT_EQ(odd.minSpeakerCount, 5);
    EXPECT_EQ(odd.maxSpeakerCount, 5);
    EXPECT_EQ(odd.speakerCountMode, u"auto"_s);
    EXPECT_EQ(odd.speakerCount, -3);
    for (const char* refused : {R"({"speaker_count":"2"})", R"({"speaker_count":2.5})", R"({"title":5})",
                                R"({"diarization_enabled":1})", R"({"speaker_count":1e30})", "[]", ""})
        EXPECT_THROW((void)decodeRunAppMetadata(refused), JsonError) << refused;
    EXPECT_THROW((void)decodeMeetingDraft(R"({"chunks":[null]})"), JsonError);
    EXPECT_THROW((void)decodeMeetingDraft(R"({"started_at":"2026"})"), JsonError);
}

TEST(MeetingMetadata, KeepsEverythingOverAWriteAndAReading) {
    const DataDirectoryBuilder data;
    MeetingDraftMetadata draft;
    draft.title = u"Zürich \"q\"\n/\\"_s;
    draft.settings.maxSpeakerCount = 12;
    draft.startedAt = 794'152'733.123456;
    draft.chunks = {u"/a"_s, u"/b"_s};
    const QString meeting = data.makeDraft(u"M"_s, draft);
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
    EXPECT_THROW(writeRunAppMetadata(record, u"/nowhere"_s), FileError);
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
    writeFileAtomically(data.paths.runs() + u"/kept"_s, "x");
    data.paths.createDirectories();
    EXPECT_TRUE(QFile::exists(data.paths.runs() + u"/kept"_s));

    const AppPaths blocked(data.paths.root + u"/deep/er"_s);
    createPrivateDirectory(blocked.root);
    writeFileAtomically(blocked.recordings(), "a file in the way");
    EXPECT_THROW(blocked.createDirectories(), FileError);
    EXPECT_FALSE(QFile::exists(blocked.runs()));
    EXPECT_TRUE(AppPaths(std::nullopt).root.endsWith(u"/Corvane"_s));
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
    EXPECT_FALSE(isPlainName(u"a"_s + QChar(0)));
    EXPECT_TRUE(isPlainName(u"..."_s));
}

TEST(DefaultDiarizationSettings, TellsAnAbsentKeyFromAStoredValue) {
    InMemoryUserDefaults defaults;
    const DefaultDiarizationSettings settings(defaults);
    const auto all = [&] {
        return u"%1 %2 %3 %4 %5"_s.arg(settings.speakerCount())
            .arg(settings.diarizationEnabled() ? 1 : 0)
            .arg(settings.speakerCountMode())
            .arg(settings.minSpeakerCount())
            .arg(settings.maxSpeakerCount(settings.minSpeakerCount()));
    };
    EXPECT_EQ(all(), u"2 1 auto 1 8"_s);
    for (const QString& key :
         {defaultsKeys::speakerCount, defaultsKeys::minSpeakerCount, defaultsKeys::maxSpeakerCount})
        defaults.set(key, std::int64_t{0});
    defaults.set(defaultsKeys::diarizationEnabled, false);
    defaults.set(defaultsKeys::speakerCountMode, u"exact"_s);
    EXPECT_EQ(all(), u"1 0 auto 1 1"_s);
    defaults.set(defaultsKeys::speakerCount, u"7"_s);
    defaults.set(defaultsKeys::minSpeakerCount, std::int64_t{5});
    defaults.set(defaultsKeys::maxSpeakerCount, std::int64_t{3});
    defaults.set(defaultsKeys::diarizationEnabled, std::int64_t{0});
    defaults.set(defaultsKeys::speakerCountMode, u"range"_s);
    EXPECT_EQ(all(), u"2 1 range 5 5"_s);
}

TEST(TranscriptExportRewriter, WritesNamesIntoFourFilesAndNothingElse) {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(u"R"_s);
    const QString label = u"SPEAKER_00"_s;
    const SpeakerProfileAssignment assignment{QUuid::createUuid(), u"P"_s};
    TranscriptResult result = speechResult(3);
    result.speakerNames = {{u"gone"_s, u"Old"_s}};
    result.speakerProfileAssignments = {{label, assignment}};
    data.write(u"R"_s, runFiles::result, "{\"unknown\":1," + encodeTranscriptResult(result).mid(1));
    const TranscriptExportRewriter rewriter;
    const auto content = [&](const QString& file) { return readFile(runFiles::in(run, file)).value_or("absent"); };
    const auto all = [&] {
        return content(runFiles::result) + content(runFiles::transcriptText) + content(runFiles::transcriptSRT) +
               content(runFiles::transcriptVTT);
    };
    const SpeakerNames names{{label, u"Ada "_s}, {u"SPEAKER_01"_s, u" \t"_s}};
    rewriter.rewrite(run, names, {}, {});
    TranscriptResult expected = result;
    expected.speakerNames = {{label, u"Ada "_s}};
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
        data.write(u"R"_s, runFiles::result, damaged);
        const QByteArray before = all();
        EXPECT_THROW(rewriter.rewrite(run, names, {}, {}), JsonError);
        EXPECT_EQ(all(), before);
    }
    ASSERT_TRUE(QFile::remove(runFiles::in(run, runFiles::result)));
    EXPECT_THROW(rewriter.rewrite(run, names, {}, {}), TranscriptRewriteError);
}

TEST(AudioImport, CopiesWholeOrNotAtAll) {
    const DataDirectoryBuilder data;
    const QString source = data.paths.root + u"/talk.m4a"_s;
    const QString target = uniqueImportedAudioURL(data.paths.recordings(), source);
    EXPECT_TRUE(target.endsWith(u".m4a"_s));
    EXPECT_TRUE(uniqueImportedAudioURL(data.paths.recordings(), u"/x/talk"_s).endsWith(u".wav"_s));
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
            const FullDisk disk(static_cast<rlim_t>(size - 4'000)); // the write before it fails is cut short
            EXPECT_TRUE(copyFails(source)) << size;
            try {
                copyAudioFile(source, target, nobody);
            } catch (const AudioImportError& error) {
                EXPECT_TRUE(error.text().endsWith(u": File too large"_s)) << error.what();
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
