#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Library/MeetingLibrary.h"
#include "CorvaneCore/Library/RunIdentity.h"
#include "CorvaneCore/Text/Characters.h"
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

MeetingDraftMetadata draftOf(const char* title, const char* status = "imported") {
    MeetingDraftMetadata draft;
    draft.title = title;
    draft.recordingStatus = status;
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
        return all.size() == 1 ? all.front() : u"%1 meetings"_s.arg(all.size());
    }
    void settle(const QString& path) const { DataDirectoryBuilder::settle(*files, path); }

    DataDirectoryBuilder data;
    std::shared_ptr<HookedFileTree> files = std::make_shared<HookedFileTree>();
    MeetingLibrary library{data.paths, files};
};

} // namespace

TEST_F(MeetingLibraryTest, GroupsRunsByMeetingAndLetsTheNewestSpeak) {
    const QString old = data.makeRun(u"OLD"_s, recordOf("Old", "/a.wav", u"X"_s));
    const QString young = data.makeRun(u"YOUNG"_s, recordOf("Young", "/b.wav", u"X"_s), u"odd"_s);
    const QString first = data.makeRun(u"P1"_s, recordOf("By path", "/p/c.wav", QString()));
    const QString second = data.makeRun(u"P2"_s, recordOf("By path, new", "/p/c.wav"));
    const QString bare = data.makeRun(u"BARE"_s);
    data.makeDraft(u"X"_s, draftOf("Hidden by its runs"));
    const QString draft = data.makeDraft(u"D"_s, draftOf("", "paused"));
    data.makeDraft(u"BROKEN"_s, {});
    writeFileAtomically(data.paths.meeting(u"BROKEN"_s) + u"/metadata.json"_s, "{");
    writeFileAtomically(data.paths.runs() + u"/file"_s, "no run");
    createPrivateDirectory(data.run(u".hidden"_s));
    const std::vector<std::pair<QString, int>> times{{old, 100},    {young, 500}, {first, 200},
                                                     {second, 400}, {bare, 50},   {draft, 300}};
    for (const auto& [path, seconds] : times)
        DataDirectoryBuilder::setModified(path, seconds);

    const std::vector<MeetingListItem> meetings = library.scan();
    const FileTime oneSecond = 1'000'000'000;
    EXPECT_THAT(
        meetings,
        ElementsAre(MeetingListItem{u"X"_s, u"Young"_s, u"odd"_s, 500 * oneSecond, young, u"/b.wav"_s, {young, old}},
                    MeetingListItem{u"/p/c.wav"_s,
                                    u"By path, new"_s,
                                    u"completed"_s,
                                    400 * oneSecond,
                                    second,
                                    u"/p/c.wav"_s,
                                    {second, first}},
                    MeetingListItem{u"D"_s, QString(), u"paused"_s, 300 * oneSecond, draft, std::nullopt, {}},
                    MeetingListItem{bare, u"BARE"_s, u"pending"_s, 50 * oneSecond, bare, std::nullopt, {bare}}));
    EXPECT_TRUE(meetings[2].isDraft());
    EXPECT_TRUE(QFile::exists(data.paths.meeting(u"X"_s) + u"/metadata.json"_s));
}

TEST_F(MeetingLibraryTest, EqualTimesKeepTheOrderOfTheListingWithDraftsBehindRuns) {
    for (const char* name : {"R1", "R2", "R3"})
        DataDirectoryBuilder::setModified(data.makeRun(name, recordOf(name)), 7);
    for (const char* name : {"D1", "D2"})
        DataDirectoryBuilder::setModified(data.makeDraft(name, draftOf(name)), 7);
    std::vector<QString> expected = files->list(data.paths.runs()).value();
    const std::vector<QString> drafts = files->list(data.paths.meetings()).value();
    expected.insert(expected.end(), drafts.begin(), drafts.end());
    EXPECT_EQ(titles(), expected);
    EXPECT_EQ(titles(), expected) << "once more, from what is remembered";
}

TEST_F(MeetingLibraryTest, FallsBackStepByStepForTitleAudioAndMeeting) {
    TranscriptResult spoken = speechResult(1);
    spoken.metadata = {{u"audio"_s, u"/from/result.v2.wav"_s}};
    TranscriptResult silent = spoken;
    silent.segments.clear();
    silent.metadata = {{u"audio"_s, u"/silent/a.b.wav"_s}};
    TranscriptResult mute = speechResult(1);
    mute.segments.front().text = QString();
    mute.metadata = {{u"audio"_s, 5}};
    const QByteArray events = "[1]\n\n{\"type\":\"job_started\"}\n{\"type\":\"job_started\",\"audio\":7}\nhalf a li\n"
                              "{\"type\":\"job_started\",\"audio\":\"/from/events\"}\n"
                              "{\"type\":\"job_started\",\"audio\":\"/too/late\"}\n";
    struct Case {
        const char* name;
        QByteArray record, result, events;
        QString title, audio, meeting;
    };
    const QString none = u"none"_s;
    const QString firstWords = spoken.segments.front().text.left(48);
    const std::vector<Case> cases{
        {"RECORD", R"({"title":"T","audio_path":"/r.wav","meeting_id":"M"})", encodeTranscriptResult(spoken), events,
         u"T"_s, u"/r.wav"_s, u"M"_s},
        {"EMPTY-FIELDS", R"({"title":"","audio_path":"","meeting_id":""})", encodeTranscriptResult(spoken), events,
         firstWords, u"/from/result.v2.wav"_s, u"/from/result.v2.wav"_s},
        {"SILENT", "{}", encodeTranscriptResult(silent), events, u"a.b"_s, u"/silent/a.b.wav"_s, u"/silent/a.b.wav"_s},
        {"MUTE", "{broken", encodeTranscriptResult(mute), events, u"events"_s, u"/from/events"_s, u"/from/events"_s},
        {"TITLE-ONLY", R"({"title":"T"})", "{}", "{\"type\":\"x\",\"audio\":\"/no\"}", u"T"_s, none,
         data.run(u"TITLE-ONLY"_s)},
        {"WRONG-TYPE", R"({"title":"T","speaker_count":"2"})", "", "", u"WRONG-TYPE"_s, none,
         data.run(u"WRONG-TYPE"_s)},
        {"BAD-UTF8", "", "", events + "\xff", u"BAD-UTF8"_s, none, data.run(u"BAD-UTF8"_s)}};
    for (const Case& c : cases) {
        const QString name = c.name;
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
        const QString run = data.run(c.name);
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
    const QString family = u"👨‍👩‍👧"_s;
    EXPECT_EQ(firstCharacters(family.repeated(50), 48), family.repeated(48));
    EXPECT_EQ(firstCharacters(u"x"_s.repeated(48), 48).size(), 48);
    EXPECT_EQ(firstCharacters(QString(), 48), QString());
}

TEST_F(MeetingLibraryTest, MissesNoKindOfEdit) {
    const QString name = u"RUN"_s;
    const QString run = data.makeRun(name, recordOf("title 0", "/a.wav", u"M"_s));
    const QString record = runFiles::in(run, runAppMetadataFile);
    const QString other = data.makeRun(u"OTHER"_s, recordOf("elsewhere", "/b.wav", u"M"_s));
    const QString away = data.paths.root + u"/away"_s;
    ASSERT_TRUE(QDir().rename(other, away));
    const QString moved = data.paths.root + u"/moved"_s;
    const auto with = [](const char* title) { return encodeRunAppMetadata(recordOf(title, "/a.wav", u"M"_s)); };
    const QString farRecord = away + u"/app_metadata.json"_s;
    const auto keepingItsTime = [&](const std::function<void()>& edit) {
        const std::int64_t before = files->stamp(record).modifiedNanoseconds;
        edit();
        DataDirectoryBuilder::setModified(record, before / 1'000'000'000, before % 1'000'000'000);
    };
    const auto remove = [](const QString& path) { EXPECT_TRUE(QFile::remove(path)); };
    const auto link = [](const QString& to, const QString& path) { EXPECT_TRUE(QFile::link(to, path)); };
    struct Edit {
        const char *what, *title;
        std::function<void()> make;
    };
    const std::vector<Edit> edits{
        {"written in place, same size", "title 1", [&] { overwrite(record, with("title 1")); }},
        {"and its time put back", "title 2", [&] { keepingItsTime([&] { overwrite(record, with("title 2")); }); }},
        {"replaced by renaming, same size and time", "title 3",
         [&] { keepingItsTime([&] { writeFileAtomically(record, with("title 3")); }); }},
        {"deleted", "RUN", [&] { remove(record); }},
        {"made again", "title 4", [&] { writeFileAtomically(record, with("title 4")); }},
        {"made a directory", "RUN", [&] { remove(record), QDir().mkdir(record); }},
        {"made a link", "elsewhere", [&] { QDir().rmdir(record), link(farRecord, record); }},
        {"changed behind the link", "elsewherE", [&] { overwrite(farRecord, with("elsewherE")); }},
        {"its directory replaced by a link", "behind it",
         [&] {
             overwrite(farRecord, with("behind it"));
             EXPECT_TRUE(QDir().rename(run, moved));
             link(away, run);
         }},
        {"its directory gone", "0 meetings", [&] { remove(run); }},
        {"a directory of the same name", "new one", [&] { data.makeRun(name, recordOf("new one")); }}};
    ASSERT_EQ(onlyTitle(), u"title 0"_s);
    for (const Edit& edit : edits) {
        for (const QString& path : {record, run, farRecord})
            settle(path);
        (void)library.scan();
        edit.make();
        EXPECT_EQ(onlyTitle(), edit.title) << edit.what;
        EXPECT_EQ(onlyTitle(), edit.title) << edit.what << ", from what is remembered";
    }
}

TEST_F(MeetingLibraryTest, SeesEditsOfWhatOnlyAFallbackReads) {
    const QString name = u"RUN"_s;
    const QString run = data.makeRun(name);
    const auto events = [](const char* audio) {
        return QByteArray("{\"type\":\"job_started\",\"audio\":\"") + audio + "\"}\n";
    };
    TranscriptResult result = speechResult(1);
    result.metadata.clear();
    const auto saying = [&result](const char* text) {
        result.segments.front().text = text;
        return encodeTranscriptResult(result);
    };
    const auto afterSettling = [&](const QString& file) {
        settle(runFiles::in(run, file));
        return onlyTitle();
    };
    EXPECT_EQ(onlyTitle(), name);
    data.write(name, runFiles::events, events("/one.wav"));
    EXPECT_EQ(afterSettling(runFiles::events), u"one"_s);
    overwrite(runFiles::in(run, runFiles::events), events("/two.wav"));
    EXPECT_EQ(afterSettling(runFiles::events), u"two"_s);
    data.write(name, runFiles::result, saying("Hello"));
    EXPECT_EQ(afterSettling(runFiles::result), u"Hello"_s);
    overwrite(runFiles::in(run, runFiles::result), saying("World"));
    EXPECT_EQ(afterSettling(runFiles::result), u"World"_s);
    EXPECT_EQ(library.scan().front().id, u"/two.wav"_s);
    data.writeState(name, u"running"_s);
    EXPECT_EQ(library.scan().front().status, u"running"_s);
    // A record of its own ends the fallbacks, and its loss brings them back as they are by then.
    writeRunAppMetadata(recordOf("Named", "/a.wav"), run);
    EXPECT_EQ(afterSettling(runAppMetadataFile), u"Named"_s);
    overwrite(runFiles::in(run, runFiles::result), saying("Later"));
    EXPECT_EQ(afterSettling(runFiles::result), u"Named"_s);
    ASSERT_TRUE(QFile::remove(runFiles::in(run, runAppMetadataFile)));
    EXPECT_EQ(onlyTitle(), u"Later"_s);

    data.makeDraft(u"D"_s, draftOf("Draft", "recorded"));
    ASSERT_TRUE(QDir(run).removeRecursively());
    EXPECT_EQ(onlyTitle(), u"Draft"_s);
    const QString draft = data.paths.meeting(u"D"_s) + u"/metadata.json"_s;
    settle(draft);
    (void)library.scan();
    overwrite(draft, encodeMeetingDraft(draftOf("drafT", "recorded")));
    EXPECT_EQ(onlyTitle(), u"drafT"_s);
}

TEST_F(MeetingLibraryTest, SeesAnEditWithinTheClockTickOfTheScan) {
    const QString run = data.makeRun(u"RUN"_s, recordOf("title 000"));
    const QString draft = data.makeDraft(u"D"_s, draftOf("draft 000"));
    DataDirectoryBuilder::setModified(draft, 100);
    for (int i = 0; i < 300; ++i) {
        const QByteArray number = QByteArray::number(i).rightJustified(3, '0');
        (void)library.scan();
        overwrite(runFiles::in(run, runAppMetadataFile), encodeRunAppMetadata(recordOf("title " + number)));
        overwrite(draft + u"/metadata.json"_s, encodeMeetingDraft(draftOf("draft " + number)));
        ASSERT_THAT(titles(),
                    ElementsAre(QString::fromLatin1("title " + number), QString::fromLatin1("draft " + number)));
    }
}

TEST_F(MeetingLibraryTest, RemembersNothingOfAFileThatCouldNotBeOpened) {
    const QString run = data.makeRun(u"RUN"_s, recordOf("Title"));
    settle(runFiles::in(run, runFiles::jobState));
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const auto restore = qScopeGuard([&] { ::setrlimit(RLIMIT_NOFILE, &before); });
    files->afterStamps = [&] {
        const rlimit none{0, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    };
    EXPECT_EQ(onlyTitle(), u"RUN"_s) << "the test has to keep the file from being opened";
    files->afterStamps = nullptr;
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(onlyTitle(), u"Title"_s);
    EXPECT_EQ(library.scan().front().status, u"completed"_s);
}

TEST_F(MeetingLibraryTest, TakesTheNewestRecording) {
    const auto latest = [&] { return latestRecording(data.paths.recordings(), *files); };
    EXPECT_TRUE(latest().listed);
    EXPECT_FALSE(latest().path);
    const std::vector<std::pair<const char*, int>> recordings{
        {"old.wav", 100}, {"new.WaV", 300}, {"newer.mp3", 400}, {".hidden.wav", 500}, {"wav", 600}};
    for (const auto& [name, seconds] : recordings) {
        writeFileAtomically(data.recording(name), "x");
        DataDirectoryBuilder::setModified(data.recording(name), seconds);
    }
    ASSERT_TRUE(QFile::link(u"nowhere"_s, data.recording(u"dangling.wav"_s)));
    EXPECT_EQ(latest().path, data.recording(u"new.WaV"_s));
    EXPECT_FALSE(latestRecording(u"/nowhere"_s, *files).listed);
}
