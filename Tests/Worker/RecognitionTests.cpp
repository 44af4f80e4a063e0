// Which recogniser is chosen and what is made of its answers; no model is loaded here.
#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Recognition/EngineChoice.h"
#include "CorvaneWorker/Recognition/NetworkEngine.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace corvane;
using testing::ElementsAre;

namespace {

class Models : public testing::Test {
protected:
    void SetUp() override { qputenv("CORVANE_WORKER_MODELS", places().toUtf8()); }
    void TearDown() override { qunsetenv("CORVANE_WORKER_MODELS"); }

    // A directory of files that are there and no more.
    QString make(const QString& name, const QStringList& files) {
        const QString directory = m_directory.filePath(name);
        createPrivateDirectory(directory);
        for (const QString& file : files)
            writeFileAtomically(directory + u'/' + file, "x");
        return directory;
    }

    [[nodiscard]] QString places() const {
        return m_directory.filePath(u"mine"_s) + u':' + m_directory.filePath(u"ours"_s);
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

TEST_F(Models, AreToldByTheNamesOfTheirFiles) {
    using Kind = RecognitionModel::Kind;
    const struct {
        QString name;
        QStringList files;
        Kind kind;
        QStringList languages;
    } cases[] = {
        {u"moonshine-base-en"_s, {u"encoder_model.onnx"_s, u"decoder_model_merged.onnx"_s}, Kind::Moonshine, {u"en"_s}},
        {u"whisper-small"_s, {u"small-encoder.onnx"_s, u"small-decoder.int8.onnx"_s}, Kind::Whisper, {}},
        {u"whisper-tiny.en"_s, {u"tiny.en-encoder.onnx"_s, u"tiny.en-decoder.onnx"_s}, Kind::Whisper, {u"en"_s}},
        {u"zipformer-fr-2023"_s,
         {u"encoder-e1.onnx"_s, u"decoder-e1.onnx"_s, u"joiner-e1.onnx"_s},
         Kind::Transducer,
         {u"fr"_s}},
        {u"nemo-parakeet-ctc-en"_s, {u"model.int8.onnx"_s}, Kind::NemoCtc, {u"en"_s}},
        {u"nemo-canary-en-fr-de"_s, {u"encoder.onnx"_s, u"decoder.onnx"_s}, Kind::Canary, {u"en"_s, u"fr"_s, u"de"_s}},
        {u"sense-voice-zh-en"_s, {u"model.onnx"_s, u"model.int8.onnx"_s}, Kind::SenseVoice, {u"zh"_s, u"en"_s}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name.toStdString());
        const auto model = describeModel(make(one.name, one.files + QStringList{u"small-tokens.txt"_s}));
        ASSERT_TRUE(model);
        EXPECT_EQ(model->kind, one.kind);
        EXPECT_EQ(model->languages, one.languages);
        EXPECT_EQ(model->knows(u"fr"_s), one.languages.isEmpty() || one.languages.contains(u"fr"_s));
    }
    EXPECT_TRUE(describeModel(make(u"sense-voice-zh-en"_s, {}))->model.endsWith(u"model.int8.onnx"_s));
    EXPECT_FALSE(describeModel(make(u"whisper-without-tokens"_s, {u"a-encoder.onnx"_s, u"a-decoder.onnx"_s})));
    EXPECT_FALSE(describeModel(make(u"something"_s, {u"model.onnx"_s, u"tokens.txt"_s})));
    EXPECT_FALSE(describeModel(u"/nowhere"_s));
}

TEST_F(Models, OfTheUserComeFirstAndHideThoseOfTheSameName) {
    const QStringList files{u"encoder_model.onnx"_s, u"decoder_model_merged.onnx"_s, u"tokens.txt"_s};
    make(u"ours/recognition/alpha-en"_s, files);
    make(u"ours/recognition/shared-en"_s, files);
    const QString mine = make(u"mine/recognition/shared-en"_s, files);
    make(u"mine/recognition/no-model"_s, {});
    QStringList names;
    for (const auto& model : installedNetworks())
        names << model.name;
    EXPECT_THAT(names.mid(0, 2), ElementsAre(u"shared-en"_s, u"alpha-en"_s));
    EXPECT_EQ(installedNetworks().front().encoder, mine + u"/encoder_model.onnx"_s);
    try {
        (void)chooseEngine(u"xx"_s);
        FAIL();
    } catch (const WorkerError& error) {
        EXPECT_THAT(error.text().toStdString(), testing::HasSubstr("no speech model for “xx”"));
        EXPECT_THAT(error.text().toStdString(), testing::HasSubstr("/mine/recognition"));
    }
}

TEST(Languages, HaveManyNames) {
    for (const char* english : {"en", "EN", "en-US", "en_GB", "English", " en "})
        EXPECT_EQ(languageCode(QString::fromLatin1(english)), u"en"_s) << english;
    EXPECT_EQ(languageCode(u"French"_s), u"fr"_s);
    EXPECT_EQ(languageCode(u"fr-CA"_s), u"fr"_s);
    EXPECT_EQ(languageCode(u"auto"_s), QString());
    EXPECT_EQ(languageCode(u"eno"_s), u"eno"_s);
}

TEST(NetworkWords, ShareTheTimeByTheirLength) {
    const auto words = spreadWords(u" Yes,\n we  understand. "_s, 10.0, 12.0);
    ASSERT_EQ(words.size(), 3U);
    EXPECT_EQ(words[2].text, u"understand."_s);
    EXPECT_DOUBLE_EQ(words.front().start, 10.0);
    EXPECT_DOUBLE_EQ(words.back().end, 12.0);
    EXPECT_DOUBLE_EQ(words[0].end, words[1].start);
    EXPECT_GT(words[2].end - words[2].start, 2 * (words[1].end - words[1].start));
    EXPECT_TRUE(spreadWords(u"  "_s, 0, 1).empty());
}

TEST(NetworkWords, AreKeptOnceWhereTheNetworkLoops) {
    EXPECT_EQ(withoutLoops(u"so the point the point the point the point is"_s), u"so the point is"_s);
    EXPECT_EQ(withoutLoops(u"Well well well well well well."_s), u"Well well."_s);
    EXPECT_EQ(withoutLoops(u"no no no it is is fine"_s), u"no no no it is is fine"_s);
}
