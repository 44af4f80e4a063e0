#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Library/MeetingLibrary.h"
#include "CorvaneCore/Library/RunIdentity.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QScopeGuard>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace corvane;
using testing::ElementsAre;

namespace {

// The real tree with the coarse times of an older kernel, which stamps a change with its last tick, and with a hook
// between the look at the stamps and the reading of the files.
class HookedFileTree final : public FileTree {
public:
    std::function<void()> afterStamps;

    [[nodiscard]] std::optional<std::vector<QString>> list(const QString& directory) const override {
        return m_tree.list(directory);
    }
    [[nodiscard]] FileStamp stamp(const QString& path) const override { return coarse(m_tree.stamp(path)); }
    [[nodiscard]] std::vector<FileStamp> stamps(const QString& directory,
                                                const std::vector<QString>& paths) const override {
        auto result = m_tree.stamps(directory, paths);
        for (FileStamp& one : result)
            one = coarse(one);
        if (afterStamps)
            afterStamps();
        return result;
    }
    [[nodiscard]] std::int64_t settledBefore() const override { return m_tree.settledBefore(); }

private:
    [[nodiscard]] static FileStamp coarse(FileStamp stamp) {
        constexpr std::int64_t tick = 10'000'000;
        stamp.modifiedNanoseconds -= stamp.modifiedNanoseconds % tick;
        stamp.statusNanoseconds -= stamp.statusNanoseconds % tick;
        return stamp;
    }

    LinuxFileTree m_tree;
};

RunAppMetadata recordOf(const char* title, const char* audio = "", std::optional<QString> meeting = {}) {
    RunAppMetadata record;
    record.title = QString::fromUtf8(title);
    record.audioPath = QString::fromUtf8(audio);
    record.meetingID = std::move(meeting);
    return record;
}

MeetingDraftMetadata draftOf(const char* title, const char* status = "imported") {
    MeetingDraftMetadata draft;
    draft.title = QString::fromUtf8(title);
    draft.recordingStatus = QString::fromUtf8(status);
    return draft;
}

// As an editor does that writes into the file it has open.
void overwrite(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

class MeetingLibraryTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<QString> titles() {
        std::vector<QString> result;
        for (const MeetingListItem& meeting : library.scan())
            result.push_back(meeting.title);
        return result;
    }
    [[nodiscard]] QString onlyTitle() {
        const auto all = titles();
        return all.size() == 1 ? all.front() : QStringLiteral("%1 meetings").arg(all.size());
    }
    void settle(const QString& path) const { DataDirectoryBuilder::settle(*files, path); }

    DataDirectoryBuilder data;
    std::shared_ptr<HookedFileTree> files = std::make_shared<HookedFileTree>();
    MeetingLibrary library{data.paths, files};
};

} // namespace

TEST_F(MeetingLibraryTest, GroupsRunsByMeetingAndLetsTheNewestSpeak) {
    const QString old = data.makeRun(QStringLiteral("OLD"), recordOf("Old", "/a.wav", QStringLiteral("X")));
    const QString young =
        data.makeRun(QStringLiteral("YOUNG"), recordOf("Young", "/b.wav", QStringLiteral("X")), QStringLiteral("odd"));
    const QString first = data.makeRun(QStringLiteral("P1"), recordOf("By path", "/p/c.wav", QString()));
    const QString second = data.makeRun(QStringLiteral("P2"), recordOf("By path, new", "/p/c.wav"));
    const QString bare = data.makeRun(QStringLiteral("BARE"));
    data.makeDraft(QStringLiteral("X"), draftOf("Hidden by its runs"));
    const QString draft = data.makeDraft(QStringLiteral("D"), draftOf("", "paused"));
    data.makeDraft(QStringLiteral("BROKEN"), {});
    writeFileAtomically(data.paths.meeting(QStringLiteral("BROKEN")) + QStringLiteral("/metadata.json"), "{");
    writeFileAtomically(data.paths.runs() + QStringLiteral("/file"), "no run");
    createPrivateDirectory(data.run(QStringLiteral(".hidden")));
    const std::vector<std::pair<QString, int>> times{{old, 100},    {young, 500}, {first, 200},
                                                     {second, 400}, {bare, 50},   {draft, 300}};
    for (const auto& [path, seconds] : times)
        DataDirectoryBuilder::setModified(path, seconds);

    const std::vector<MeetingListItem> meetings = library.scan();
    const FileTime oneSecond = 1'000'000'000;
    EXPECT_THAT(
        meetings,
        ElementsAre(
            MeetingListItem{QStringLiteral("X"),
                            QStringLiteral("Young"),
                            QStringLiteral("odd"),
                            500 * oneSecond,
                            young,
                            QStringLiteral("/b.wav"),
                            {young, old}},
            MeetingListItem{QStringLiteral("/p/c.wav"),
                            QStringLiteral("By path, new"),
                            QStringLiteral("completed"),
                            400 * oneSecond,
                            second,
                            QStringLiteral("/p/c.wav"),
                            {second, first}},
            MeetingListItem{
                QStringLiteral("D"), QString(), QStringLiteral("paused"), 300 * oneSecond, draft, std::nullopt, {}},
            MeetingListItem{
                bare, QStringLiteral("BARE"), QStringLiteral("pending"), 50 * oneSecond, bare, std::nullopt, {bare}}));
    EXPECT_TRUE(meetings[2].isDraft());
    EXPECT_TRUE(QFile::exists(data.paths.meeting(QStringLiteral("X")) + QStringLiteral("/metadata.json")));
}

TEST_F(MeetingLibraryTest, EqualTimesKeepTheOrderOfTheListingWithDraftsBehindRuns) {
    for (const char* name : {"R1", "R2", "R3"})
        DataDirectoryBuilder::setModified(data.makeRun(QString::fromLatin1(name), recordOf(name)), 7);
    for (const char* name : {"D1", "D2"})
        DataDirectoryBuilder::setModified(data.makeDraft(QString::fromLatin1(name), draftOf(name)), 7);
    std::vector<QString> expected = files->list(data.paths.runs()).value();
    const std::vector<QString> drafts = files->list(data.paths.meetings()).value();
    expected.insert(expected.end(), drafts.begin(), drafts.end());
    EXPECT_EQ(titles(), expected);
    EXPECT_EQ(titles(), expected) << "once more, from what is remembered";
}

TEST_F(MeetingLibraryTest, FallsBackStepByStepForTitleAudioAndMeeting) {
    TranscriptResult spoken = speechResult(1);
    spoken.metadata = {{QStringLiteral("audio"), QStringLiteral("/from/result.v2.wav")}};
    TranscriptResult silent = spoken;
    silent.segments.clear();
    silent.metadata = {{QStringLiteral("audio"), QStringLiteral("/silent/a.b.wav")}};
    TranscriptResult mute = speechResult(1);
    mute.segments.front().text = QString();
    mute.metadata = {{QStringLiteral("audio"), 5}};
    const QByteArray events = "[1]\n\n{\"type\":\"job_started\"}\n{\"type\":\"job_started\",\"audio\":7}\nhalf a li\n"
                              "{\"type\":\"job_started\",\"audio\":\"/from/events\"}\n"
                              "{\"type\":\"job_started\",\"audio\":\"/too/late\"}\n";
    struct Case {
        const char* name;
        QByteArray record, result, events;
        QString title, audio, meeting;
    };
    const QString none = QStringLiteral("none");
    const QString firstWords = spoken.segments.front().text.left(48);
    const std::vector<Case> cases{
        {"RECORD", R"({"title":"T","audio_path":"/r.wav","meeting_id":"M"})", encodeTranscriptResult(spoken), events,
         QStringLiteral("T"), QStringLiteral("/r.wav"), QStringLiteral("M")},
        {"EMPTY-FIELDS", R"({"title":"","audio_path":"","meeting_id":""})", encodeTranscriptResult(spoken), events,
         firstWords, QStringLiteral("/from/result.v2.wav"), QStringLiteral("/from/result.v2.wav")},
        {"SILENT", "{}", encodeTranscriptResult(silent), events, QStringLiteral("a.b"),
         QStringLiteral("/silent/a.b.wav"), QStringLiteral("/silent/a.b.wav")},
        {"MUTE", "{broken", encodeTranscriptResult(mute), events, QStringLiteral("events"),
         QStringLiteral("/from/events"), QStringLiteral("/from/events")},
        {"TITLE-ONLY", R"({"title":"T"})", "{}", "{\"type\":\"x\",\"audio\":\"/no\"}", QStringLiteral("T"), none,
         data.run(QStringLiteral("TITLE-ONLY"))},
        {"WRONG-TYPE", R"({"title":"T","speaker_count":"2"})", "", "", QStringLiteral("WRONG-TYPE"), none,
         data.run(QStringLiteral("WRONG-TYPE"))},
        {"BAD-UTF8", "", "", events + "\xff", QStringLiteral("BAD-UTF8"), none, data.run(QStringLiteral("BAD-UTF8"))}};
    for (const Case& c : cases) {
        const QString name = QString::fromLatin1(c.name);
        data.makeRun(name);
        data.write(name, runAppMetadataFile, c.record);
        data.write(name, runFiles::result, c.result);
        data.write(name, runFiles::events, c.events);
    }
    std::map<QString, MeetingListItem> byRun;
    for (const MeetingListItem& meeting : library.scan()) {
        for (const QString& run : meeting.runURLs)
            byRun[run] = meeting;
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString run = data.run(QString::fromLatin1(c.name));
        RunIdentity identity = RunIdentity::ofDirectory(run);
        EXPECT_EQ(identity.title(), c.title);
        EXPECT_EQ(identity.audioURL().value_or(none), c.audio);
        EXPECT_EQ(identity.meetingID(), c.meeting);
        EXPECT_EQ(byRun[run].title, c.title);
        EXPECT_EQ(byRun[run].id, c.meeting);
        EXPECT_EQ(byRun[run].audioURL.value_or(none), c.audio);
    }
}

TEST(FirstCharacters, CountsWhatAPersonCounts) {
    const QString family = QString::fromUtf8("👨‍👩‍👧");
    EXPECT_EQ(firstCharacters(family.repeated(50), 48), family.repeated(48));
    EXPECT_EQ(firstCharacters(QStringLiteral("x").repeated(48), 48).size(), 48);
    EXPECT_EQ(firstCharacters(QString(), 48), QString());
}

TEST_F(MeetingLibraryTest, MissesNoKindOfEdit) {
    const QString name = QStringLiteral("RUN");
    const QString run = data.makeRun(name, recordOf("title 0", "/a.wav", QStringLiteral("M")));
    const QString record = runFiles::in(run, runAppMetadataFile);
    const QString other = data.makeRun(QStringLiteral("OTHER"), recordOf("elsewhere", "/b.wav", QStringLiteral("M")));
    const QString away = data.paths.root + QStringLiteral("/away");
    ASSERT_TRUE(QDir().rename(other, away));
    const QString moved = data.paths.root + QStringLiteral("/moved");
    const auto with = [](const char* title) {
        return encodeRunAppMetadata(recordOf(title, "/a.wav", QStringLiteral("M")));
    };
    const std::vector<std::pair<const char*, std::function<QString()>>> edits{
        {"written in place, same size",
         [&] {
             overwrite(record, with("title 1"));
             return QStringLiteral("title 1");
         }},
        {"and its time put back",
         [&] {
             const std::int64_t before = files->stamp(record).modifiedNanoseconds;
             overwrite(record, with("title 2"));
             DataDirectoryBuilder::setModified(record, before / 1'000'000'000, before % 1'000'000'000);
             return QStringLiteral("title 2");
         }},
        {"replaced by renaming, same size and time",
         [&] {
             const std::int64_t before = files->stamp(record).modifiedNanoseconds;
             writeFileAtomically(record, with("title 3"));
             DataDirectoryBuilder::setModified(record, before / 1'000'000'000, before % 1'000'000'000);
             return QStringLiteral("title 3");
         }},
        {"deleted",
         [&] {
             EXPECT_TRUE(QFile::remove(record));
             return QStringLiteral("RUN");
         }},
        {"made again",
         [&] {
             writeFileAtomically(record, with("title 4"));
             return QStringLiteral("title 4");
         }},
        {"made a directory",
         [&] {
             EXPECT_TRUE(QFile::remove(record) && QDir().mkdir(record));
             return QStringLiteral("RUN");
         }},
        {"made a link",
         [&] {
             EXPECT_TRUE(QDir().rmdir(record) && QFile::link(away + QStringLiteral("/app_metadata.json"), record));
             return QStringLiteral("elsewhere");
         }},
        {"changed behind the link",
         [&] {
             overwrite(away + QStringLiteral("/app_metadata.json"),
                       encodeRunAppMetadata(recordOf("elsewherE", "/b.wav", QStringLiteral("M"))));
             return QStringLiteral("elsewherE");
         }},
        {"its directory replaced by a link",
         [&] {
             overwrite(away + QStringLiteral("/app_metadata.json"),
                       encodeRunAppMetadata(recordOf("behind it", "/b.wav", QStringLiteral("M"))));
             EXPECT_TRUE(QDir().rename(run, moved) && QFile::link(away, run));
             return QStringLiteral("behind it");
         }},
        {"its directory gone",
         [&] {
             EXPECT_TRUE(QFile::remove(run));
             return QStringLiteral("0 meetings");
         }},
        {"a directory of the same name", [&] {
             data.makeRun(name, recordOf("new one"));
             return QStringLiteral("new one");
         }}};
    ASSERT_EQ(onlyTitle(), QStringLiteral("title 0"));
    for (const auto& [what, edit] : edits) {
        for (const QString& path : {record, run, away + QStringLiteral("/app_metadata.json")})
            settle(path);
        static_cast<void>(library.scan());
        const QString expected = edit();
        EXPECT_EQ(onlyTitle(), expected) << what;
        EXPECT_EQ(onlyTitle(), expected) << what << ", from what is remembered";
    }
}

TEST_F(MeetingLibraryTest, SeesEditsOfWhatOnlyAFallbackReads) {
    const QString name = QStringLiteral("RUN");
    const QString run = data.makeRun(name);
    const auto events = [](const char* audio) {
        return QByteArray("{\"type\":\"job_started\",\"audio\":\"") + audio + "\"}\n";
    };
    TranscriptResult result = speechResult(1);
    result.metadata.clear();
    const auto saying = [&result](const char* text) {
        result.segments.front().text = QString::fromUtf8(text);
        return encodeTranscriptResult(result);
    };
    const auto afterSettling = [&](const QString& file) {
        settle(runFiles::in(run, file));
        return onlyTitle();
    };
    EXPECT_EQ(onlyTitle(), name);
    data.write(name, runFiles::events, events("/one.wav"));
    EXPECT_EQ(afterSettling(runFiles::events), QStringLiteral("one"));
    overwrite(runFiles::in(run, runFiles::events), events("/two.wav"));
    EXPECT_EQ(afterSettling(runFiles::events), QStringLiteral("two"));
    data.write(name, runFiles::result, saying("Hello"));
    EXPECT_EQ(afterSettling(runFiles::result), QStringLiteral("Hello"));
    overwrite(runFiles::in(run, runFiles::result), saying("World"));
    EXPECT_EQ(afterSettling(runFiles::result), QStringLiteral("World"));
    EXPECT_EQ(library.scan().front().id, QStringLiteral("/two.wav"));
    data.writeState(name, QStringLiteral("running"));
    EXPECT_EQ(library.scan().front().status, QStringLiteral("running"));
    // A record of its own ends the fallbacks, and its loss brings them back as they are by then.
    writeRunAppMetadata(recordOf("Named", "/a.wav"), run);
    EXPECT_EQ(afterSettling(runAppMetadataFile), QStringLiteral("Named"));
    overwrite(runFiles::in(run, runFiles::result), saying("Later"));
    EXPECT_EQ(afterSettling(runFiles::result), QStringLiteral("Named"));
    ASSERT_TRUE(QFile::remove(runFiles::in(run, runAppMetadataFile)));
    EXPECT_EQ(onlyTitle(), QStringLiteral("Later"));

    data.makeDraft(QStringLiteral("D"), draftOf("Draft", "recorded"));
    ASSERT_TRUE(QDir(run).removeRecursively());
    EXPECT_EQ(onlyTitle(), QStringLiteral("Draft"));
    const QString draft = data.paths.meeting(QStringLiteral("D")) + QStringLiteral("/metadata.json");
    settle(draft);
    static_cast<void>(library.scan());
    overwrite(draft, encodeMeetingDraft(draftOf("drafT", "recorded")));
    EXPECT_EQ(onlyTitle(), QStringLiteral("drafT"));
}

TEST_F(MeetingLibraryTest, SeesAnEditWithinTheClockTickOfTheScan) {
    const QString run = data.makeRun(QStringLiteral("RUN"), recordOf("title 000"));
    const QString draft = data.makeDraft(QStringLiteral("D"), draftOf("draft 000"));
    DataDirectoryBuilder::setModified(draft, 100);
    for (int i = 0; i < 300; ++i) {
        const QByteArray number = QByteArray::number(i).rightJustified(3, '0');
        static_cast<void>(library.scan());
        overwrite(runFiles::in(run, runAppMetadataFile), encodeRunAppMetadata(recordOf("title " + number)));
        overwrite(draft + QStringLiteral("/metadata.json"), encodeMeetingDraft(draftOf("draft " + number)));
        ASSERT_THAT(titles(),
                    ElementsAre(QString::fromLatin1("title " + number), QString::fromLatin1("draft " + number)));
    }
}

TEST_F(MeetingLibraryTest, RemembersNothingOfAFileThatCouldNotBeOpened) {
    const QString run = data.makeRun(QStringLiteral("RUN"), recordOf("Title"));
    settle(runFiles::in(run, runFiles::jobState));
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const auto restore = qScopeGuard([&] { ::setrlimit(RLIMIT_NOFILE, &before); });
    files->afterStamps = [&] {
        const rlimit none{0, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    };
    EXPECT_EQ(onlyTitle(), QStringLiteral("RUN")) << "the test has to keep the file from being opened";
    files->afterStamps = nullptr;
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(onlyTitle(), QStringLiteral("Title"));
    EXPECT_EQ(library.scan().front().status, QStringLiteral("completed"));
}

TEST_F(MeetingLibraryTest, TakesTheNewestRecording) {
    const auto latest = [&] { return latestRecording(data.paths.recordings(), *files); };
    EXPECT_TRUE(latest().listed);
    EXPECT_FALSE(latest().path);
    const std::vector<std::pair<const char*, int>> recordings{
        {"old.wav", 100}, {"new.WaV", 300}, {"newer.mp3", 400}, {".hidden.wav", 500}, {"wav", 600}};
    for (const auto& [name, seconds] : recordings) {
        writeFileAtomically(data.recording(QString::fromLatin1(name)), "x");
        DataDirectoryBuilder::setModified(data.recording(QString::fromLatin1(name)), seconds);
    }
    ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), data.recording(QStringLiteral("dangling.wav"))));
    EXPECT_EQ(latest().path, data.recording(QStringLiteral("new.WaV")));
    EXPECT_FALSE(latestRecording(QStringLiteral("/nowhere"), *files).listed);
}
