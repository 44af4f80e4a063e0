// The stages of a run in this process, with stages that are made to fail.
#include "Support/PrintQt.h"
#include "Worker/WorkerRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneWorker/Run/ProcessRun.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace corvane;
using namespace corvane::test;

namespace {

// What happens while a stage works.
using Fault = std::function<void()>;

template<typename Stage>
struct Faulty : Stage {
    explicit Faulty(Fault happening) : fault(std::move(happening)) {}
    Fault fault;
};

// Ten seconds in blocks of one.
struct FakeSource : Faulty<AudioSource> {
    using Faulty::Faulty;
    DecodedAudio decode(const QString&, const SampleSink& sink, const DecodeProgress& progress) override {
        const std::vector<std::int16_t> second(sampleRate, 100);
        for (int index = 0; index < 10; ++index) {
            if (index == 5)
                fault();
            sink(second);
            progress(index / 10.0);
        }
        return {sampleRate * 10, {}};
    }
};

// Hears speech from the second second on.
struct FakeDetector : Faulty<SpeechDetector> {
    using Faulty::Faulty;
    void add(std::span<const std::int16_t> samples) override { heardSamples += std::ssize(samples); }
    DetectedSpeech finish(std::span<const float> levels) override {
        fault();
        EXPECT_EQ(heardSamples / 160, std::ssize(levels));
        return {{{100, std::ssize(levels)}}, {}};
    }
    std::int64_t heardSamples = 0;
};

struct FakeSeparator : Faulty<SpeakerSeparator> {
    using Faulty::Faulty;
    QString name() const override { return u"halves"_s; }
    std::vector<SpeakerTurn> separate(const SampleStore& samples, std::span<const FrameRange>, const SpeakerLimits&,
                                      const std::function<void(double)>&) const override {
        fault();
        return {{1.0, 5.0, 0}, {5.0, secondsOfSamples(samples.sampleCount()), 1}};
    }
};

// Understands one word of every region.
struct FakeEngine : Faulty<RecognitionEngine> {
    using Faulty::Faulty;
    QString engineName() const override { return u"Fake"_s; }
    QString modelName() const override { return u"none"_s; }
    Spelling spelling() const override { return Spelling::BareWords; }
    QString crashText() const override { return u"It crashed."_s; }
    std::unique_ptr<RegionRecognizer> recognizer() const override {
        struct Recognizer : Faulty<RegionRecognizer> {
            using Faulty::Faulty;
            std::vector<RecognizedWord> recognize(std::span<const std::int16_t>, double start) override {
                fault();
                return {{start + 0.5, start + 1.0, u"hello"_s}};
            }
        };
        return std::make_unique<Recognizer>(fault);
    }
};

struct FakeLanguageModel : Faulty<LanguageModel> {
    using Faulty::Faulty;
    QString provider() const override { return u"fake"_s; }
    QString name() const override { return u"fake"_s; }
    QString answer(const LanguageQuestion&) override {
        fault();
        return uR"({"summary": "Greetings.", "speakers": []})"_s;
    }
};

// Writes the real files if nothing happens before.
struct FakeWriter : Faulty<TranscriptWriter> {
    FakeWriter(const QString& directory, Fault beforeWriting)
        : Faulty(std::move(beforeWriting)), writer(runDirectoryWriter(directory)) {}
    std::map<QString, QString> write(const TranscriptResult& result) override {
        fault();
        return writer->write(result);
    }
    std::unique_ptr<TranscriptWriter> writer;
};

struct Faults {
    Fault loading = [] {};
    Fault source = [] {};
    Fault detector = [] {};
    Fault separator = [] {};
    Fault engine = [] {};
    Fault language = [] {};
    Fault writer = [] {};
};

class Pipeline : public testing::Test {
protected:
    int run(const Faults& faults) {
        RunReporter reporter(m_directory.path());
        ProcessCommand command;
        command.audio = u"talk.wav"_s;
        command.outDirectory = m_directory.path();
        return runStages(command, reporter, [&faults](const ProcessCommand& asked) {
            faults.loading();
            RunStages stages;
            stages.source = std::make_unique<FakeSource>(faults.source);
            stages.detector = std::make_unique<FakeDetector>(faults.detector);
            stages.separator = std::make_unique<FakeSeparator>(faults.separator);
            stages.engine = std::make_unique<FakeEngine>(faults.engine);
            stages.language.model = std::make_unique<FakeLanguageModel>(faults.language);
            stages.writer = std::make_shared<FakeWriter>(asked.outDirectory, faults.writer);
            stages.remarks << u"Something is missing."_s;
            return stages;
        });
    }
    [[nodiscard]] QString directory() const { return m_directory.path(); }
    [[nodiscard]] QStringList files() const {
        return QDir(directory()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    [[nodiscard]] TranscriptResult result() const {
        return decodeTranscriptResult(readFile(runFiles::in(directory(), runFiles::result)).value());
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

TEST_F(Pipeline, WhatTheStagesSayBecomesTheTranscript) {
    ASSERT_EQ(run({}), 0);
    EXPECT_EQ(state(directory()).status, jobStatus::completed);
    EXPECT_EQ(state(directory()).stage, QString());
    const TranscriptResult whole = result();
    ASSERT_EQ(whole.segments.size(), 2U);
    EXPECT_EQ(whole.segments[1].speaker, u"SPEAKER_01"_s);
    EXPECT_EQ(whole.segments[1].text, u"Hello."_s);
    EXPECT_EQ(whole.llm->summary, u"Greetings."_s);
    EXPECT_EQ(numberAt(whole.metadata, u"duration"_s), 10.0);
    EXPECT_EQ(stringAt(whole.metadata, u"diarization"_s), u"halves"_s);
    EXPECT_TRUE(whole.metadata.at(u"remarks"_s) == JSONValue::Array{u"Something is missing."_s});

    // A language model that fails does not take the transcript with it.
    ASSERT_EQ(run({.language = [] { throw std::runtime_error("out of words"); }}), 0);
    EXPECT_FALSE(result().llm);
    EXPECT_EQ(result().segments.size(), 2U);
}

TEST_F(Pipeline, AStageThatFailsIsNamedAndLeavesNothingHalfWritten) {
    const auto cutShort = [] { throw WorkerError(u"The file ends in its middle."_s); };
    const auto unexpected = [] { throw std::runtime_error("no such voice"); };
    const auto noMemory = [] { throw std::bad_alloc(); };
    const auto fullDisk = [] { throw FileError(u"result.json: No space left on device"_s); };
    const struct {
        Faults faults;
        QString stage;
        QString sentence;
    } cases[] = {
        {{.loading = noMemory}, u"Loading the models"_s, u"There was not enough memory to transcribe the recording."_s},
        {{.source = cutShort}, u"Decoding audio"_s, u"The file ends in its middle."_s},
        {{.detector = unexpected}, u"Finding speech"_s, u"Transcription failed: no such voice."_s},
        {{.separator = unexpected}, u"Telling speakers apart"_s, u"Transcription failed: no such voice."_s},
        {{.engine = noMemory}, u"Transcribing"_s, u"There was not enough memory to transcribe the recording."_s},
        {{.writer = fullDisk},
         u"Writing the transcript"_s,
         u"Corvane could not write the transcript: result.json: No space left on device."_s},
    };
    for (const auto& failure : cases) {
        SCOPED_TRACE(failure.stage.toStdString());
        EXPECT_EQ(run(failure.faults), 1);
        const WorkerJobEvent last = events(directory()).back();
        EXPECT_EQ(last.type, jobEvents::failed);
        EXPECT_EQ(stringAt(last.payload, u"stage"_s), failure.stage);
        EXPECT_EQ(stringAt(last.payload, u"error"_s), failure.sentence);
        EXPECT_EQ(state(directory()).status, jobStatus::failed);
        EXPECT_EQ(state(directory()).message, failure.sentence);
        EXPECT_EQ(state(directory()).stage, failure.stage);
        EXPECT_EQ(files(), (QStringList{runFiles::events, runFiles::jobState}));
    }
}
