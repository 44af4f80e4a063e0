#include "Support/PrintQt.h"

#include "CorvaneWorker/Recognition/SpeechDecoder.h"
#include "CorvaneWorker/Recognition/SpeechRegions.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"
#include "CorvaneWorker/Transcript/Inaudible.h"
#include "CorvaneWorker/Transcript/SegmentAssembly.h"

#include <gmock/gmock.h>

using namespace corvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Seconds of a level each.
std::vector<float> levels(std::initializer_list<std::pair<double, float>> stretches) {
    std::vector<float> result;
    unsigned noise = 1;
    for (const auto& [seconds, level] : stretches)
        for (int frame = 0; frame < static_cast<int>(seconds * framesPerSecond); ++frame) {
            noise = noise * 1664525U + 1013904223U;
            result.push_back(std::max(silentLevel, level + static_cast<float>(noise >> 24U) / 128.0F - 1.0F));
        }
    return result;
}

RecognizedWord word(double start, double end, const char* text, int speaker = 0) {
    return {start, end, QString::fromLatin1(text), speaker};
}

} // namespace

TEST(VoiceActivity, SpeechStandsOutOfItsSurroundings) {
    EXPECT_THAT(findSpeech(levels({{3, -60}, {2, -25}, {0.2, -60}, {1, -28}, {3, -60}, {0.05, -20}, {2, -60}})),
                ElementsAre(FrameRange{300, 620}));
    // A quiet stretch of a recording is judged by its own surroundings.
    EXPECT_THAT(findSpeech(levels({{60, -75}, {5, -20}, {60, -75}, {5, -45}, {60, -75}})),
                ElementsAre(FrameRange{6000, 6500}, FrameRange{12500, 13000}));
    EXPECT_THAT(findSpeech(levels({{5, silentLevel - 10}, {4, -30}, {1, -70}, {5, silentLevel - 10}})),
                ElementsAre(FrameRange{500, 900}));
    for (const float steady : {-20.0F, -96.0F})
        EXPECT_THAT(findSpeech(levels({{60, steady}})), IsEmpty());
    EXPECT_THAT(findSpeech({}), IsEmpty());
}

TEST(VoiceActivity, ANetworkConfirmsWhatIsLoud) {
    const std::vector<FrameRange> loud{{100, 200}, {300, 400}, {500, 1500}, {3000, 4000}};
    // Speech, a door, music with a note like a word, a whisper that did not stand out, and somebody amid the noise.
    const std::vector<FrameRange> heard{{95, 180}, {700, 760}, {2000, 2050}, {3500, 3700}};
    EXPECT_THAT(confirmedSpeech(loud, heard),
                ElementsAre(FrameRange{100, 200}, FrameRange{2000, 2050}, FrameRange{3500, 3700}));
}

TEST(Regions, LongOnesAreCutWhereItIsQuietest) {
    auto sound = levels({{1, -70}, {50, -25}, {1, -70}});
    for (std::size_t frame = 1700; frame < 1712; ++frame)
        sound[frame] = -50;
    const std::vector<SpeakerTurn> turns{{1.0, 51.0, 0}};
    const auto regions = speechRegions(turns, sound);
    ASSERT_THAT(regions, testing::SizeIs(testing::Ge(3U)));
    EXPECT_NEAR(static_cast<double>(regions[0].sound.end), 1706, 6);
    EXPECT_EQ(regions.front().speech.begin, 100);
    EXPECT_EQ(regions.back().sound.end, 5120);
    EXPECT_EQ(regions.back().speech.end, 5100);
    for (std::size_t index = 0; index < regions.size(); ++index) {
        EXPECT_LE(regions[index].sound.length(), 2000);
        const std::int64_t before = index == 0 ? 80 : regions[index - 1].sound.end;
        EXPECT_EQ(regions[index].sound.begin, before);
    }
}

TEST(Regions, BelongToOneSpeakerEach) {
    const auto sound = levels({{10, -30}});
    const std::vector<SpeakerTurn> turns{{1.0, 2.0, 4}, {2.3, 3.0, 4}, {3.0, 3.4, 1}, {5.0, 6.0, 1}};
    EXPECT_THAT(speechRegions(turns, sound),
                ElementsAre(SpeechRegion{{80, 300}, {100, 300}, 4}, SpeechRegion{{300, 360}, {300, 340}, 1},
                            SpeechRegion{{480, 620}, {500, 600}, 1}));
}

TEST(Segments, BreakAtPausesAndWhereTheSpeakerChanges) {
    const std::vector<RecognizedWord> words{word(1.0, 1.4, "well", 7), word(1.4, 1.6, "i", 7),
                                            word(1.7, 2.0, "know", 7), word(2.0, 2.4, "yes", 3),
                                            word(3.1, 3.5, "i'm", 3),  word(3.5, 4.0, "here", 3)};
    const auto segments = assembleSegments(words, Spelling::BareWords);
    EXPECT_THAT(segments, ElementsAre(TranscriptSegment{1.0, 2.0, u"Well I know."_s, u"SPEAKER_00"_s},
                                      TranscriptSegment{2.0, 2.4, u"Yes."_s, u"SPEAKER_01"_s},
                                      TranscriptSegment{3.1, 4.0, u"I'm here."_s, u"SPEAKER_01"_s}));
    const auto speakers = summarizeSpeakers(segments);
    ASSERT_EQ(speakers.size(), 2U);
    EXPECT_DOUBLE_EQ(speakers[1].duration, 1.3);
    EXPECT_EQ(speakers[1].examples.front().text, u"I'm here."_s);
    EXPECT_THAT(assembleSegments({}, Spelling::Sentences), IsEmpty());
}

TEST(Segments, SayWhereSomebodyWasNotUnderstood) {
    const std::vector<SpeakerTurn> turns{{0.0, 2.0, 0}, {2.2, 4.0, 0}, {5.0, 5.4, 1}, {6.0, 9.0, 1}, {10.0, 20.0, 0}};
    const std::vector<RecognizedWord> words{word(6.0, 9.0, "yes", 1), word(10.0, 14.0, "but", 0)};
    // The third turn is too short to matter, and only a part of the last one was understood.
    const std::vector<FrameRange> heard{{0, 400}, {500, 540}, {1000, 1800}};
    const auto all = withInaudible(words, turns, heard);
    EXPECT_THAT(all, ElementsAre(word(0.0, 4.0, inaudible, 0), words[0], words[1], word(14.0, 20.0, inaudible, 0)));
    EXPECT_THAT(withInaudible(words, turns, {}), words);
    EXPECT_EQ(assembleSegments(all, Spelling::BareWords).front().text, u"[inaudible]"_s);
}

TEST(Segments, AreWrittenAsSentences) {
    const auto textOf = [](const QString& text, Spelling spelling) {
        std::vector<RecognizedWord> words;
        for (const QString& part : text.split(u' '))
            words.push_back({static_cast<double>(words.size()), static_cast<double>(words.size()) + 1, part});
        return assembleSegments(words, spelling).front().text;
    };
    EXPECT_EQ(textOf(u"where did he go"_s, Spelling::BareWords), u"Where did he go?"_s);
    // Two pieces each, recognised apart.
    EXPECT_EQ(textOf(u"We have a set Of sounds."_s, Spelling::Sentences), u"We have a set of sounds."_s);
    EXPECT_EQ(textOf(u"All are busy. please ask Of Anna."_s, Spelling::Sentences),
              u"All are busy. Please ask of Anna."_s);
    EXPECT_EQ(textOf(u"Hello, Anna,"_s, Spelling::Sentences), u"Hello, Anna."_s);
}

TEST(Segments, ALongTalkIsCutAndItsExamplesAreSpread) {
    std::vector<RecognizedWord> words;
    for (int index = 0; index < 600; ++index)
        words.push_back(word(index * 0.5, index * 0.5 + (index % 8 == 7 ? 0.3 : 0.5), "so"));
    const auto segments = assembleSegments(words, Spelling::BareWords);
    std::size_t count = 0;
    for (const auto& segment : segments) {
        EXPECT_LE(segment.end - segment.start, 25.0);
        count += static_cast<std::size_t>(segment.text.count(u' ') + 1);
    }
    EXPECT_EQ(count, words.size());
    std::vector<TranscriptSegment> talk;
    for (int index = 0; index < 40; ++index)
        talk.push_back({index * 10.0, index * 10.0 + (index % 2 == 0 ? 1.0 : 5.0), u"x"_s, speakerLabel(0)});
    const auto examples = summarizeSpeakers(talk).front().examples;
    ASSERT_EQ(examples.size(), 5U);
    EXPECT_GT(examples.back().start, 250.0);
    for (const auto& example : examples)
        EXPECT_DOUBLE_EQ(example.end - example.start, 5.0);
}

TEST(Words, FillersAndPronunciationMarkersAreTakenOut) {
    for (const char* filler : {"<s>", "<sil>", "[NOISE]", "[SPEECH]", "++UH++", "(NULL)", ""})
        EXPECT_TRUE(plainWord(QString::fromLatin1(filler)).isEmpty()) << filler;
    EXPECT_EQ(plainWord(u"the(2)"_s), u"the"_s);
    EXPECT_EQ(plainWord(u"don't"_s), u"don't"_s);
}
