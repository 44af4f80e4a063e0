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

TEST(PlaybackTest, PlaysASpeakersExamplesOneAfterTheOther) {
    const DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const auto status = [](AppModel& shown) { return shown.status().statusMessage(); };
    writeFileAtomically(data.recording(QStringLiteral("a.wav")), "x");
    AppModel& model = fixture.start();
    const auto speaker = [](const char* label, std::vector<TranscriptExample> examples) {
        return TranscriptSpeaker{.speaker = QString::fromUtf8(label), .duration = 1, .examples = std::move(examples)};
    };
    const TranscriptSpeaker ada = speaker("A", {{7, 7.1, {}}, {-2, -1.9, {}}, {3, 3, {}}, {99, 100, {}}});
    const TranscriptSpeaker bob = speaker("B", {{1, 9, {}}});
    const QStringList& heard = fixture.audioPlayers->heard;
    model.toggleSpeakerExamplesPlayback(speaker("C", {{3, 3, {}}}));
    EXPECT_FALSE(model.playback().isPlayingAudio()) << "nothing to play";

    QElapsedTimer clock;
    clock.start();
    model.toggleSpeakerExamplesPlayback(ada);
    EXPECT_EQ(status(model), u"Playing examples for A");
    EXPECT_EQ(model.playback().playingSpeakerExamplesFor(), u"A");
    EXPECT_TRUE(ModelFixture::until([&] { return !model.playback().isPlayingAudio(); }));
    EXPECT_GE(clock.elapsed(), 3 * 490) << "the shortest is heard for half a second";
    EXPECT_EQ(heard.join(QLatin1Char(',')),
              u"play a.wav at 0,end a.wav,play a.wav at 7,end a.wav,play a.wav at 10,end a.wav");
    EXPECT_FALSE(model.playback().playingSpeakerExamplesFor());

    model.toggleSpeakerExamplesPlayback(ada);
    model.toggleSpeakerExamplesPlayback(bob);
    EXPECT_TRUE(ModelFixture::until([&] { return heard.last() == u"play a.wav at 1"; }));
    EXPECT_EQ(model.playback().playingSpeakerExamplesFor(), u"B");
    model.playAudio(5); // the two kinds exclude each other
    EXPECT_FALSE(model.playback().playingSpeakerExamplesFor());
    EXPECT_EQ(heard.last(), u"play a.wav at 5");
    model.toggleSpeakerExamplesPlayback(bob);
    model.toggleSpeakerExamplesPlayback(bob);
    EXPECT_FALSE(model.playback().isPlayingAudio());

    fixture.audioPlayers->openError = QStringLiteral("damaged");
    model.toggleSpeakerExamplesPlayback(bob);
    EXPECT_TRUE(ModelFixture::until([&] { return !model.playback().isPlayingAudio(); }));
    EXPECT_EQ(status(model), u"Failed to play examples: damaged");
}
