// What a careless worker, a user's file manager or an attacker leaves in the data directory must neither hang nor end
// the application, nor hide the other meetings, nor lead a deletion elsewhere.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/PrintQt.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;

namespace {

// A watchdog and no measure: only a tick that hangs comes near it.
constexpr qint64 watchdogMilliseconds = 60'000;

class HostileDataTest : public testing::Test {
protected:
    HostileDataTest() {
        RunAppMetadata record;
        record.title = QStringLiteral("Honest");
        record.meetingID = QStringLiteral("HONEST");
        data.makeRun(QStringLiteral("HONEST-RUN"), record);
        writeFileAtomically(treasure, "keep me");
    }
    // Lists, shows and leaves every meeting, as a user does who clicks through them.
    void visitAll(const char* what) {
        SCOPED_TRACE(what);
        AppModel& model = fixture.start();
        QElapsedTimer watchdog;
        watchdog.start();
        const auto meetings = model.library().meetings();
        for (const MeetingListItem& meeting : meetings) {
            model.selectSidebarItem(SidebarItem::meeting(meeting.id));
            model.pollTick();
        }
        EXPECT_LT(watchdog.elapsed(), watchdogMilliseconds);
        EXPECT_TRUE(model.library().find(QStringLiteral("HONEST")));
    }
    [[nodiscard]] static QByteArray native(const QString& path) { return QFile::encodeName(path); }
    void makeSparse(const QString& path, const QByteArray& start = {}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(start) == start.size());
        ASSERT_TRUE(file.resize(300LL * 1024 * 1024));
    }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const QString treasure = data.paths.root + QStringLiteral("/treasure");
};

} // namespace

TEST_F(HostileDataTest, EveryDocumentMayBeAnything) {
    const QString run = data.makeRun(QStringLiteral("BAD"));
    const QString meeting = data.makeDraft(QStringLiteral("BAD-DRAFT"), {});
    const std::vector<QString> documents{
        runFiles::in(run, runAppMetadataFile),       runFiles::in(run, runFiles::jobState),
        runFiles::in(run, runFiles::result),         runFiles::in(run, runFiles::events),
        runFiles::in(run, runFiles::transcriptText), runFiles::in(meeting, meetingDraftFile)};
    const auto nested = [](int depth) { return QByteArray("{\"metadata\":{\"a\":") + QByteArray(depth, '['); };
    const auto writing = [](const QByteArray& content) {
        return [content](const QString& path) { writeFileAtomically(path, content); };
    };
    const std::vector<std::pair<const char*, std::function<void(const QString&)>>> kinds{
        {"empty", writing("")},
        {"null characters", writing(QByteArray(5000, '\0'))},
        {"invalid UTF-8", writing("{\"title\":\"\xff\xfe\"}\n")},
        {"200 levels", writing(nested(200) + QByteArray(200, ']') + "},\"segments\":[],\"speakers\":[]}")},
        {"100,000 levels", writing(nested(100'000))},
        {"a huge number", writing("{\"progress\":1e999,\"speaker_count\":99999999999999999999}")},
        {"300 MB", [&](const QString& path) { makeSparse(path, "{\"title\":\""); }},
        {"a FIFO", [](const QString& path) { ASSERT_EQ(::mkfifo(native(path).constData(), 0600), 0); }},
        {"a directory", [](const QString& path) { ASSERT_TRUE(QDir().mkdir(path)); }},
        {"a loop of links", [](const QString& path) { ASSERT_TRUE(QFile::link(path, path)); }},
        {"a device", [](const QString& path) { ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), path)); }}};
    for (const auto& [what, make] : kinds) {
        for (const QString& document : documents) {
            QFile::remove(document);
            QDir().rmdir(document);
            make(document);
        }
        visitAll(what);
    }
}

TEST_F(HostileDataTest, LongFilesWithRealLinesAreReadOrLeftAlone) {
    const QString run = data.makeRun(QStringLiteral("LONG"));
    data.writeState(QStringLiteral("LONG"), QStringLiteral("running"));
    const QByteArray line =
        "{\"ts\":\"2026-03-02T14:05:33Z\",\"type\":\"asr_progress\",\"progress\":0.5,\"n\":[1,2]}\n";
    for (const qint64 megabytes : {8, 300}) {
        QFile events(runFiles::in(run, runFiles::events));
        ASSERT_TRUE(events.open(QIODevice::WriteOnly));
        const QByteArray block = line.repeated(1024 * 1024 / line.size() + 1);
        for (qint64 i = 0; i < megabytes; ++i)
            ASSERT_EQ(events.write(block), block.size());
        events.close();
        visitAll("long events");
    }
    QFile::remove(runFiles::in(run, runFiles::events));
    // A transcript of three days, and one beyond what is read.
    for (const int segments : {100'000, 400'000}) {
        data.write(QStringLiteral("LONG"), runFiles::result, encodeTranscriptResult(speechResult(segments)));
        visitAll("a long transcript");
    }
}

TEST_F(HostileDataTest, EntriesMayHaveAnyNameAndKind) {
    data.makeRun(QStringLiteral("new\nline\t\"quoted\" ü"));
    data.makeDraft(QStringLiteral("draft\nwith a break"), {});
    for (const QString& folder : {data.paths.runs(), data.paths.meetings()}) {
        ASSERT_EQ(::mkdir((native(folder) + "/invalid \xff\xfe").constData(), 0700), 0);
        ASSERT_EQ(::mkfifo((native(folder) + "/fifo").constData(), 0600), 0);
        ASSERT_TRUE(QFile::link(folder + QStringLiteral("/loop"), folder + QStringLiteral("/loop")));
        ASSERT_TRUE(QFile::link(QStringLiteral(".."), folder + QStringLiteral("/up")));
        ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), folder + QStringLiteral("/dangling")));
    }
    visitAll("odd names");
    AppModel& model = fixture.start();
    EXPECT_TRUE(model.library().find(QStringLiteral("draft\nwith a break")));
    EXPECT_TRUE(model.library().find(data.run(QStringLiteral("new\nline\t\"quoted\" ü"))));
    // A run that is a link: the link goes, what it leads to stays.
    const auto up = model.library().find(data.run(QStringLiteral("up")));
    ASSERT_TRUE(up);
    model.deleteMeeting(*up, true);
    EXPECT_TRUE(QFile::exists(treasure));
    EXPECT_FALSE(QFileInfo(data.run(QStringLiteral("up"))).isSymLink());
    fixture.stop();
    // Qt has no name for these and could not remove them.
    for (const QString& folder : {data.paths.runs(), data.paths.meetings()})
        ASSERT_EQ(::rmdir((native(folder) + "/invalid \xff\xfe").constData()), 0);
}

TEST_F(HostileDataTest, ADirectoryWithoutPermissionHidesNothingElse) {
    if (::geteuid() == 0 && ::seteuid(65534) != 0)
        GTEST_SKIP() << "the rights of the superuser cannot be given up";
    const DataDirectoryBuilder own;
    ModelFixture model(own.paths);
    RunAppMetadata record;
    record.meetingID = QStringLiteral("HONEST");
    own.makeRun(QStringLiteral("HONEST-RUN"), record);
    record.meetingID = QStringLiteral("CLOSED");
    const QString run = own.makeRun(QStringLiteral("CLOSED-RUN"), record);
    ASSERT_EQ(::chmod(native(run).constData(), 0), 0);
    AppModel& started = model.start();
    EXPECT_TRUE(started.library().find(QStringLiteral("HONEST")));
    const auto closed = started.library().find(run);
    ASSERT_TRUE(closed) << "listed by its path, as its record cannot be read";
    started.selectMeeting(*closed);
    started.renameSelectedRun(QStringLiteral("x"));
    EXPECT_EQ(started.status().statusMessage(),
              QStringLiteral("Failed to rename: app_metadata.json: Permission denied"));
    started.deleteMeeting(*closed, true);
    EXPECT_EQ(started.status().statusMessage(), QStringLiteral("Failed to delete: CLOSED-RUN: Permission denied"));
    ASSERT_EQ(::chmod(native(run).constData(), 0700), 0);
    started.pollTick();
    EXPECT_TRUE(started.library().find(QStringLiteral("CLOSED"))) << "seen again as soon as it is open";
    model.stop();
    ASSERT_EQ(::seteuid(::getuid()), 0);
}

TEST_F(HostileDataTest, AMeetingIdLeadsADeletionNowhereElse) {
    writeFileAtomically(data.paths.recordings() + QStringLiteral("/kept.wav"), "keep me");
    const QString meeting = data.makeDraft(QStringLiteral("OTHER"), {});
    const QString nul(QChar(0));
    for (const QString& id :
         {QStringLiteral("../treasure"), QStringLiteral(".."), QStringLiteral("."), QStringLiteral("/"),
          QStringLiteral("../../x"), data.paths.meetings(), treasure, QStringLiteral("OTHER") + nul,
          QStringLiteral("OTHER/"), QStringLiteral("OTHER/.."), nul + QStringLiteral("x")}) {
        SCOPED_TRACE(id.toStdString());
        RunAppMetadata record;
        record.meetingID = id;
        const QString run = data.makeRun(QStringLiteral("BAD"), record);
        AppModel& model = fixture.start();
        const auto found = model.library().find(id);
        ASSERT_TRUE(found);
        model.selectMeeting(*found);
        EXPECT_FALSE(model.hasRecoverableRecording());
        model.persistCurrentMeetingSettings();
        model.renameSelectedRun(QStringLiteral("x"));
        model.deleteMeeting(*found, true);
        EXPECT_EQ(model.status().statusMessage(), QStringLiteral("Deleted"));
        EXPECT_FALSE(QFile::exists(run));
        for (const QString& kept : {treasure, meeting + QStringLiteral("/metadata.json"),
                                    data.recording(QStringLiteral("kept.wav")), data.run(QStringLiteral("HONEST-RUN"))})
            ASSERT_TRUE(QFile::exists(kept)) << kept.toStdString();
    }
}

TEST_F(HostileDataTest, AnAudioPathLeadsADeletionNowhereElse) {
    const QString recordings = data.paths.recordings();
    const QString outside = data.paths.root + QStringLiteral("/outside");
    createPrivateDirectory(outside + QStringLiteral("/folder"));
    createPrivateDirectory(recordings + QStringLiteral("/folder"));
    ASSERT_TRUE(QFile::link(outside + QStringLiteral("/folder"), recordings + QStringLiteral("/link")));
    const std::vector<QString> kept{outside + QStringLiteral("/x"), outside + QStringLiteral("/folder/x"), treasure,
                                    data.paths.root + QStringLiteral("/recordings-old"),
                                    recordings + QStringLiteral("/x")};
    for (const QString& file : kept)
        writeFileAtomically(file, "keep me");
    const QString nul(QChar(0));
    const auto deleteWith = [&](const QString& audio) {
        RunAppMetadata record;
        record.meetingID = QStringLiteral("BAD");
        record.audioPath = audio;
        data.makeRun(QStringLiteral("BAD"), record);
        AppModel& model = fixture.start();
        model.deleteMeeting(model.library().find(QStringLiteral("BAD")).value(), true);
    };
    for (const char* path : {"", "/", "/.", "/..", "/../treasure", "/../recordings", "/folder/..", "/link/../x",
                             "/link/x", "/folder/../../treasure", "-old", "/absent/../../treasure"}) {
        deleteWith(recordings + QString::fromLatin1(path));
        for (const QString& file : kept)
            ASSERT_TRUE(QFile::exists(file)) << path << " removed " << file.toStdString();
    }
    for (const QString& path :
         {recordings + QStringLiteral("/") + nul, recordings + QStringLiteral("/x") + nul, nul, QString()}) {
        deleteWith(path);
        for (const QString& file : kept)
            ASSERT_TRUE(QFile::exists(file)) << file.toStdString();
    }
    deleteWith(recordings + QStringLiteral("/link"));
    EXPECT_TRUE(QFile::exists(outside + QStringLiteral("/folder/x"))) << "the link alone goes";
    EXPECT_FALSE(QFileInfo(recordings + QStringLiteral("/link")).isSymLink());
    deleteWith(recordings + QStringLiteral("/folder/../x"));
    EXPECT_FALSE(QFile::exists(recordings + QStringLiteral("/x"))) << "an odd path that stays inside";
}
