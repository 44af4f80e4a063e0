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
        data.makeRun(u"HONEST-RUN"_s, recordOf(u"Honest"_s, {}, u"HONEST"_s));
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
        EXPECT_TRUE(model.library().find(u"HONEST"_s));
    }
    [[nodiscard]] static QByteArray native(const QString& path) { return QFile::encodeName(path); }
    void makeSparse(const QString& path, const QByteArray& start = {}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(start) == start.size());
        ASSERT_TRUE(file.resize(300LL * 1024 * 1024));
    }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const QString treasure = data.paths.root + u"/treasure"_s;
};

} // namespace

TEST_F(HostileDataTest, EveryDocumentMayBeAnything) {
    const QString run = data.makeRun(u"BAD"_s);
    const QString meeting = data.makeDraft(u"BAD-DRAFT"_s, {});
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
        {"a device", [](const QString& path) { ASSERT_TRUE(QFile::link(u"/dev/zero"_s, path)); }}};
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
    const QString run = data.makeRun(u"LONG"_s);
    data.writeState(u"LONG"_s, u"running"_s);
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
        data.write(u"LONG"_s, runFiles::result, encodeTranscriptResult(speechResult(segments)));
        visitAll("a long transcript");
    }
}

TEST_F(HostileDataTest, EntriesMayHaveAnyNameAndKind) {
    data.makeRun(u"new\nline\t\"quoted\" ü"_s);
    data.makeDraft(u"draft\nwith a break"_s, {});
    for (const QString& folder : {data.paths.runs(), data.paths.meetings()}) {
        ASSERT_EQ(::mkdir((native(folder) + "/invalid \xff\xfe").constData(), 0700), 0);
        ASSERT_EQ(::mkfifo((native(folder) + "/fifo").constData(), 0600), 0);
        ASSERT_TRUE(QFile::link(folder + u"/loop"_s, folder + u"/loop"_s));
        ASSERT_TRUE(QFile::link(u".."_s, folder + u"/up"_s));
        ASSERT_TRUE(QFile::link(u"/nowhere"_s, folder + u"/dangling"_s));
    }
    visitAll("odd names");
    AppModel& model = fixture.start();
    EXPECT_TRUE(model.library().find(u"draft\nwith a break"_s));
    EXPECT_TRUE(model.library().find(data.run(u"new\nline\t\"quoted\" ü"_s)));
    // A run that is a link: the link goes, what it leads to stays.
    const auto up = model.library().find(data.run(u"up"_s));
    ASSERT_TRUE(up);
    model.deleteMeeting(*up, true);
    EXPECT_TRUE(QFile::exists(treasure));
    EXPECT_FALSE(QFileInfo(data.run(u"up"_s)).isSymLink());
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
    own.makeRun(u"HONEST-RUN"_s, recordOf({}, {}, u"HONEST"_s));
    const QString run = own.makeRun(u"CLOSED-RUN"_s, recordOf({}, {}, u"CLOSED"_s));
    ASSERT_EQ(::chmod(native(run).constData(), 0), 0);
    AppModel& started = model.start();
    EXPECT_TRUE(started.library().find(u"HONEST"_s));
    const auto closed = started.library().find(run);
    ASSERT_TRUE(closed) << "listed by its path, as its record cannot be read";
    started.selectMeeting(*closed);
    started.renameSelectedRun(u"x"_s);
    EXPECT_EQ(started.status().statusMessage(), u"Failed to rename: app_metadata.json: Permission denied"_s);
    started.deleteMeeting(*closed, true);
    EXPECT_EQ(started.status().statusMessage(), u"Failed to delete: CLOSED-RUN: Permission denied"_s);
    ASSERT_EQ(::chmod(native(run).constData(), 0700), 0);
    started.pollTick();
    EXPECT_TRUE(started.library().find(u"CLOSED"_s)) << "seen again as soon as it is open";
    model.stop();
    ASSERT_EQ(::seteuid(::getuid()), 0);
}

TEST_F(HostileDataTest, AMeetingIdLeadsADeletionNowhereElse) {
    writeFileAtomically(data.paths.recordings() + u"/kept.wav"_s, "keep me");
    const QString meeting = data.makeDraft(u"OTHER"_s, {});
    const QString nul(QChar(0));
    for (const QString& id : {u"../treasure"_s, u".."_s, u"."_s, u"/"_s, u"../../x"_s, data.paths.meetings(), treasure,
                              u"OTHER"_s + nul, u"OTHER/"_s, u"OTHER/.."_s, nul + u"x"_s}) {
        SCOPED_TRACE(id.toStdString());
        const QString run = data.makeRun(u"BAD"_s, recordOf({}, {}, id));
        AppModel& model = fixture.start();
        const auto found = model.library().find(id);
        ASSERT_TRUE(found);
        model.selectMeeting(*found);
        EXPECT_FALSE(model.hasRecoverableRecording());
        model.persistCurrentMeetingSettings();
        model.renameSelectedRun(u"x"_s);
        model.deleteMeeting(*found, true);
        EXPECT_EQ(model.status().statusMessage(), u"Deleted"_s);
        EXPECT_FALSE(QFile::exists(run));
        for (const QString& kept :
             {treasure, meeting + u"/metadata.json"_s, data.recording(u"kept.wav"_s), data.run(u"HONEST-RUN"_s)})
            ASSERT_TRUE(QFile::exists(kept)) << kept.toStdString();
    }
}

TEST_F(HostileDataTest, AnAudioPathLeadsADeletionNowhereElse) {
    const QString recordings = data.paths.recordings();
    const QString outside = data.paths.root + u"/outside"_s;
    createPrivateDirectory(outside + u"/folder"_s);
    createPrivateDirectory(recordings + u"/folder"_s);
    ASSERT_TRUE(QFile::link(outside + u"/folder"_s, recordings + u"/link"_s));
    const std::vector<QString> kept{outside + u"/x"_s, outside + u"/folder/x"_s, treasure,
                                    data.paths.root + u"/recordings-old"_s, recordings + u"/x"_s};
    for (const QString& file : kept)
        writeFileAtomically(file, "keep me");
    const QString nul(QChar(0));
    const auto deleteWith = [&](const QString& audio) {
        data.makeRun(u"BAD"_s, recordOf({}, audio, u"BAD"_s));
        AppModel& model = fixture.start();
        model.deleteMeeting(model.library().find(u"BAD"_s).value(), true);
    };
    std::vector<QString> paths{recordings + u'/' + nul, recordings + u"/x"_s + nul, nul, {}};
    for (const char* below : {"", "/", "/.", "/..", "/../treasure", "/../recordings", "/folder/..", "/link/../x",
                              "/link/x", "/folder/../../treasure", "-old", "/absent/../../treasure"})
        paths.push_back(recordings + below);
    for (const QString& path : paths) {
        deleteWith(path);
        for (const QString& file : kept)
            ASSERT_TRUE(QFile::exists(file)) << path.toStdString() << " removed " << file.toStdString();
    }
    deleteWith(recordings + u"/link"_s);
    EXPECT_TRUE(QFile::exists(outside + u"/folder/x"_s)) << "the link alone goes";
    EXPECT_FALSE(QFileInfo(recordings + u"/link"_s).isSymLink());
    deleteWith(recordings + u"/folder/../x"_s);
    EXPECT_FALSE(QFile::exists(recordings + u"/x"_s)) << "an odd path that stays inside";
}
