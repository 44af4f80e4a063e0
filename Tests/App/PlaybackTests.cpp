// Playing a meeting's audio, with players that make no sound.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/PrintQt.h"

#include <gmock/gmock.h>

using namespace corvane;

TEST(PlaybackTest, IsClampedToTheFileAndEndsByItself) {
    const DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const auto status = [](AppModel& shown) { return shown.status().statusMessage(); };
    const QString audio = data.recording(QStringLiteral("a.wav"));
    AppModel& model = fixture.start();
    model.toggleAudioPlayback();
    model.playAudio(3);
    EXPECT_EQ(status(model), u"Idle") << "nothing to play";
    writeFileAtomically(audio, "x");
    fixture.audioPlayers->durationSeconds = 4000;
    AppModel& again = fixture.start();
    again.playAudio(3725.9);
    EXPECT_EQ(status(again), u"Playing a.wav from 01:02:05");
    EXPECT_TRUE(again.playback().isPlayingAudio());
    again.playAudio(-7);
    EXPECT_EQ(status(again), u"Playing a.wav from 00:00:00");
    fixture.audioPlayers->openError = QStringLiteral("damaged");
    again.playAudio(1);
    EXPECT_EQ(status(again), u"Failed to play audio: damaged");
    EXPECT_TRUE(again.playback().isPlayingAudio()) << "what was heard goes on";
    again.toggleAudioPlayback();
    EXPECT_FALSE(again.playback().isPlayingAudio());
    EXPECT_EQ(fixture.audioPlayers->heard.join(QLatin1Char(',')),
              u"play a.wav at 3725.9,end a.wav,play a.wav at 0,end a.wav");

    fixture.audioPlayers->openError.reset();
    again.playAudio(5000);
    EXPECT_EQ(status(again), u"Playing a.wav from 01:06:40");
    EXPECT_TRUE(ModelFixture::until([&] { return !again.playback().isPlayingAudio(); }));
    fixture.audioPlayers->durationSeconds = 0.05;
    again.toggleAudioPlayback();
    EXPECT_TRUE(again.playback().isPlayingAudio());
    EXPECT_TRUE(ModelFixture::until([&] { return !again.playback().isPlayingAudio(); }));
    fixture.audioPlayers->durationSeconds = 100;
    again.playAudio(0);
    const auto failOfTheFirst = fixture.audioPlayers->fail;
    again.playAudio(0);
    failOfTheFirst(QStringLiteral("late"));
    fixture.audioPlayers->fail(QStringLiteral("no answer"));
    EXPECT_TRUE(ModelFixture::until([&] { return !again.playback().isPlayingAudio(); }));
    EXPECT_EQ(status(again), u"Failed to play audio: no answer");
    fixture.audioPlayers->playError = QStringLiteral("no sound server");
    again.playAudio(0);
    EXPECT_EQ(status(again), u"Failed to play audio: no sound server");
    EXPECT_FALSE(again.playback().isPlayingAudio());
    EXPECT_EQ(playbackTimestampText(-1), u"00:00:00");
    EXPECT_EQ(playbackTimestampText(360'000), u"100:00:00");
}
