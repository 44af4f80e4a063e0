// What a start asks for, what the tray offers, and how the application ends.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/Fakes/FakePowerManagement.h"
#include "Support/PrintQt.h"

#include "CorvaneApp/Views/KeepAwake.h"
#include "CorvaneApp/Views/QuitController.h"
#include "CorvaneApp/Views/TrayMenu.h"
#include "CorvaneCore/Services/StartRequest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gmock/gmock.h>

using namespace corvane;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

TEST(StartCommandTest, ReadsTheCommandLine) {
    using Kind = StartCommand::Kind;
    using Window = StartRequest::Window;
    const auto parse = [](const QStringList& arguments) { return parseStartCommand(arguments, u"/home/ada"_s); };
    EXPECT_EQ(parse({}).request, StartRequest());
    EXPECT_EQ(parse({u"debug"_s}).request, StartRequest()) << "no file";
    EXPECT_EQ(parse({u"--background"_s}).request.window, Window::never);
    const StartRequest files = parse({u"--show"_s, u"a.wav"_s, u"../b.mp4"_s, u"/c"_s, u"--"_s, u"-d"_s}).request;
    EXPECT_EQ(files.window, Window::show);
    EXPECT_EQ(files.files, (QStringList{u"/home/ada/a.wav"_s, u"/home/b.mp4"_s, u"/c"_s, u"/home/ada/-d"_s}));
    const StartRequest addresses = parse({u"file:///a%20b/%C3%BC.wav"_s, u"file:/"_s, u"a%20b"_s}).request;
    EXPECT_EQ(addresses.files, (QStringList{u"/a b/ü.wav"_s, u"/home/ada/file:"_s, u"/home/ada/a%20b"_s}));
    EXPECT_EQ(parse({u"https://example.org/a.wav"_s}).words,
              u"https://example.org/a.wav is not a file on this machine"_s);
    EXPECT_EQ(parse({u"-h"_s, u"--nonsense"_s}).kind, Kind::help);
    EXPECT_EQ(parse({u"--version"_s}).kind, Kind::version);
    EXPECT_EQ(parse({u""_s}).kind, Kind::refuse);
    EXPECT_THAT(parse({u"--nonsense"_s}).words.toStdString(), HasSubstr("--nonsense"));
}

TEST(StartCommandTest, SaysWhatIsWrongWithAFile) {
    const QTemporaryDir directory;
    const QString file = directory.filePath(u"a.wav"_s);
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    EXPECT_EQ(fileFault({file}), std::nullopt);
    EXPECT_EQ(fileFault({file, u"/nowhere"_s}), u"there is no file /nowhere"_s);
    EXPECT_EQ(fileFault({directory.path()}), directory.path() + u" is not a file"_s);
}

TEST(TrayMenuTest, OffersWhatTheRecordingAllows) {
    using Kind = RecordingState::Kind;
    const auto texts = [](Kind kind) {
        QStringList list;
        for (const TrayMenuItem& item : trayMenu(kind, Finishing::no).items)
            list.append(item.text);
        return list;
    };
    const QStringList idle{u"Start Recording"_s, u"Open App"_s};
    EXPECT_EQ(texts(Kind::idle), idle);
    EXPECT_EQ(texts(Kind::stopped), idle);
    EXPECT_EQ(texts(Kind::recording), (QStringList{u"Stop Recording"_s, u"Pause Recording"_s, u"Open App"_s}));
    EXPECT_EQ(texts(Kind::paused), (QStringList{u"Stop Recording"_s, u"Resume Recording"_s, u"Open App"_s}));
    for (const Kind kind : {Kind::idle, Kind::stopped, Kind::paused})
        EXPECT_EQ(trayMenu(kind, Finishing::no).iconName, u"waveform.circle"_s);
    EXPECT_EQ(trayMenu(Kind::recording, Finishing::no).iconName, u"waveform.circle.fill"_s);
    for (const TrayMenuItem& item : trayMenu(Kind::recording, Finishing::underWay).items)
        EXPECT_EQ(item.isEnabled, item.action == TrayAction::openApp);
}

class QuitTest : public testing::Test {
protected:
    QuitTest() {
        fixture.audioInputs->systemDevice->format.sample = AudioFormat::Sample::float32;
        QObject::connect(&quit, &QuitController::quitWanted, [this] { ++quits; });
    }
    // What still joins writes into the directory that is about to go.
    ~QuitTest() override { QThreadPool::globalInstance()->waitForDone(); }
    void record() {
        model.startRecording(std::nullopt);
        ASSERT_TRUE(fixture.audioInputs->microphoneDevice->deliverCounted(48'000));
        ASSERT_TRUE(model.recording().recordingState().isActive());
        meeting = model.recording().currentRecordingMeetingID().value();
    }
    [[nodiscard]] bool hasQuit() const {
        return ModelFixture::until([this] { return quits > 0; });
    }
    [[nodiscard]] QString draftStatus() const {
        return readMeetingDraft(data.paths.meeting(meeting)).value().recordingStatus;
    }
    [[nodiscard]] QString recording() const { return data.paths.recordings() + u'/' + meeting + u".wav"_s; }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    AppModel& model = fixture.start();
    QuitController quit{model};
    QString meeting;
    int quits = 0;
};

TEST_F(QuitTest, AsksOnlyWhileARecordingRunsAndFinishesItFirst) {
    record();
    quit.requestQuit();
    EXPECT_TRUE(quit.isAsking());
    quit.cancel();
    EXPECT_FALSE(quit.isAsking());
    EXPECT_TRUE(model.recording().recordingState().isActive());

    quit.requestQuit();
    quit.stopAndQuit();
    EXPECT_TRUE(quit.isFinishing());
    EXPECT_EQ(quits, 0);
    ASSERT_TRUE(hasQuit());
    EXPECT_EQ(draftStatus(), u"recorded"_s);
    EXPECT_TRUE(QFile::exists(recording()));
    quit.endSoon(1s);
    EXPECT_EQ(quits, 1);
}

TEST_F(QuitTest, EndsAtOnceWithoutARecording) {
    quit.requestQuit();
    EXPECT_EQ(quits, 1);
}

TEST_F(QuitTest, ARecordingThatCannotBeFinishedIsKeptAndSaid) {
    record();
    QFile::remove(data.paths.meeting(meeting) + u"/metadata.json"_s);
    quit.requestQuit();
    quit.stopAndQuit();
    ASSERT_TRUE(ModelFixture::until([this] { return quit.hasFailed(); }));
    quit.cancel();
    EXPECT_EQ(quits, 0);
    quit.endSoon(1s); // nobody is there to be asked
    ASSERT_TRUE(hasQuit());
    EXPECT_TRUE(QFile::exists(data.paths.meeting(meeting) + u"/chunks"_s));
}

TEST_F(QuitTest, TheEndOfTheSessionWaitsForTheJoiningAsLongAsItMay) {
    record();
    quit.endSoon(0s);
    EXPECT_EQ(fixture.audioInputs->microphoneDevice->calls.last(), u"stop"_s) << "before it returns";
    ASSERT_TRUE(hasQuit());
    fixture.stop();
    // Whichever was faster, nothing is lost.
    if (draftStatus() == u"recording"_s)
        EXPECT_FALSE(QDir(data.paths.meeting(meeting) + u"/chunks"_s).entryList({u"*.wav"_s}).isEmpty());
    else
        EXPECT_TRUE(QFile::exists(recording()));
}

TEST_F(QuitTest, ASecondSignalWaitsNoLonger) {
    record();
    quit.endSoon(1h);
    EXPECT_EQ(quits, 0);
    quit.cancel();
    EXPECT_TRUE(quit.isFinishing());
    quit.endSoon(1h);
    EXPECT_EQ(quits, 1);
}

TEST_F(QuitTest, TheMachineStaysAwakeWhileSoundIsTakenAndJoined) {
    const auto power = std::make_shared<FakePowerManagement>();
    const KeepAwake keepAwake(model.recording(), power);
    record();
    EXPECT_TRUE(power->reason);
    model.pauseRecording();
    EXPECT_FALSE(power->reason);
    model.resumeRecording();
    EXPECT_TRUE(power->reason);
    model.pauseRecording();
    const auto joined = model.stopRecording(AppModel::AfterStop::leave);
    EXPECT_TRUE(power->reason);
    EXPECT_TRUE(ModelFixture::resultOf(joined));
    EXPECT_FALSE(power->reason);
}

TEST_F(QuitTest, PermissionForSystemAudioIsAskedForAtTheStart) {
    EXPECT_TRUE(ModelFixture::until([this] { return fixture.audioInputs->primedDevice->calls.size() == 2; }));
    EXPECT_THAT(fixture.audioInputs->primedDevice->calls, ElementsAre(u"start"_s, u"stop"_s));
}

} // namespace
