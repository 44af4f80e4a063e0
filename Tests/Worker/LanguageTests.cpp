// What is asked of a language model, and what is left of its answers.
#include "Support/PrintQt.h"
#include "Worker/FakeOllama.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneWorker/Language/LanguageAnswer.h"
#include "CorvaneWorker/Language/MeetingDescription.h"
#include "CorvaneWorker/Language/OllamaModel.h"
#include "CorvaneWorker/Language/TranscriptParts.h"

#include <gmock/gmock.h>

using namespace corvane;
using namespace corvane::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const QString goodAnswer = uR"({"summary":"They plan the launch.","speakers":[
  {"speaker":"SPEAKER_00","short_label":"Project lead","context":"Leads.","notable_lines":["We launch on Monday"]}]})"_s;

std::vector<TranscriptSegment> talk() {
    return {{0, 2, u"Good morning. We launch"_s, u"SPEAKER_00"_s},
            {2, 3, u"on Monday!"_s, u"SPEAKER_00"_s},
            {3, 5, u"I’ll write the café’s invitation."_s, u"SPEAKER_01"_s},
            {5, 6, u"  "_s, u"SPEAKER_02"_s},
            {6, 9, u"会議は月曜日に始まります。"_s, u"SPEAKER_01"_s}};
}

LanguageSettings settingsFor(const FakeOllama& ollama, std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
    return {LanguageModelUse::Ollama, QUrl(ollama.endpoint()), u"qwen3:1.7b"_s, timeout, 4096};
}

LanguageQuestion question() {
    return {u"Describe it."_s, u"SPEAKER_00: hello"_s, answerSchema({u"SPEAKER_00"_s}), 0, 100};
}

std::string refusal(OllamaModel& model) {
    try {
        (void)model.answer(question());
    } catch (const LanguageError& error) {
        return error.text().toStdString();
    }
    return "no error";
}

TranscriptResult meeting(std::vector<TranscriptSegment> segments, const QString& language = u"en"_s) {
    TranscriptResult result;
    result.metadata = {{u"language"_s, language}};
    result.segments = std::move(segments);
    return result;
}

TranscriptLLMContext describe(const TranscriptResult& transcript, FakeOllama& ollama, double* progress = nullptr,
                              const QString& userContext = {}) {
    OllamaModel model(settingsFor(ollama));
    return describeMeeting(transcript, userContext, model, {2048, std::chrono::seconds(20)}, [progress](double now) {
        if (progress != nullptr) {
            EXPECT_GE(now, *progress);
            *progress = now;
        }
    });
}

// The text of a request's message, by its place.
QString said(const FakeOllama::Request& request, std::size_t message) {
    const auto& messages = *request.body.at(u"messages"_s).arrayValue();
    return *stringAt(*messages.at(message).objectValue(), u"content"_s);
}

} // namespace

TEST(Ollama, AnswersInEitherFormAndIsAskedAsItExpects) {
    for (const Manner manner : {Manner::stream, Manner::single, Manner::refuseThink}) {
        FakeOllama ollama;
        ollama.say(goodAnswer, manner);
        OllamaModel model(settingsFor(ollama));
        EXPECT_EQ(model.answer(question()), goodAnswer);
        const auto requests = ollama.requests();
        EXPECT_EQ(requests.front().target, "/api/chat");
        const JSONValue::Object& body = requests.front().body;
        EXPECT_EQ(body.at(u"think"_s), JSONValue(false));
        EXPECT_EQ(body.at(u"options"_s).objectValue()->at(u"num_ctx"_s), JSONValue(4096));
        EXPECT_EQ(body.at(u"format"_s).toQJson().toObject(), question().schema);
        EXPECT_EQ(said(requests.front(), 1), u"SPEAKER_00: hello"_s);
        EXPECT_EQ(requests.size(), manner == Manner::refuseThink ? 2U : 1U);
    }
}

TEST(Ollama, WhateverGoesWrongIsToldInAFewWords) {
    const std::pair<Manner, const char*> cases[] = {
        {Manner::closeEarly, "closed in the middle"},
        {Manner::cutStream, "no whole answer came"},
        {Manner::webPage, "no whole answer came"},
        {Manner::failMidway, "runner process has terminated"},
        {Manner::serverError, "out of memory"},
        {Manner::redirect, "status 302"},
        {Manner::flood, "too large"},
        {Manner::endlessWords, "does not come to an end"},
    };
    for (const auto& [manner, words] : cases) {
        FakeOllama ollama;
        ollama.say(goodAnswer, manner);
        OllamaModel model(settingsFor(ollama));
        EXPECT_THAT(refusal(model), HasSubstr(words));
        EXPECT_EQ(ollama.requests().size(), 1U) << words; // a redirect is not followed
    }
    FakeOllama empty;
    empty.models.clear();
    OllamaModel missing(settingsFor(empty));
    EXPECT_EQ(refusal(missing), "the model “qwen3:1.7b” is not installed (ollama pull qwen3:1.7b)");
    LanguageSettings nobody = settingsFor(empty);
    nobody.endpoint.setPort(1);
    OllamaModel unreachable(nobody);
    EXPECT_EQ(refusal(unreachable), "http://127.0.0.1:1: nothing answers there");
}

TEST(Ollama, IsNotWaitedForLongerThanAllowed) {
    const std::pair<Manner, const char*> cases[] = {{Manner::silent, "no answer came in time"},
                                                    {Manner::stall, "no answer came in time"},
                                                    {Manner::trickle, "the answer took too long"}};
    for (const auto& [manner, words] : cases) {
        FakeOllama ollama;
        ollama.say(goodAnswer, manner);
        OllamaModel model(settingsFor(ollama, std::chrono::milliseconds(250)));
        EXPECT_THAT(refusal(model), HasSubstr(words));
    }
}

TEST(Ollama, AProxyOfTheEnvironmentHearsNothing) {
    FakeOllama ollama;
    FakeOllama proxy;
    ollama.say(goodAnswer);
    for (const char* name : {"no_proxy", "NO_PROXY"})
        qunsetenv(name);
    for (const char* name : {"http_proxy", "ALL_PROXY"})
        qputenv(name, proxy.endpoint().toUtf8());
    OllamaModel model(settingsFor(ollama));
    EXPECT_EQ(model.answer(question()), goodAnswer);
    for (const char* name : {"http_proxy", "ALL_PROXY"})
        qunsetenv(name);
    EXPECT_TRUE(proxy.requests().empty());
}

TEST(LanguageSettings, DefaultsStandInForWhatIsMissingAndNonsenseIsRefused) {
    const auto set = [](const QString& name, const char* value) { qputenv(name.toUtf8().constData(), value); };
    LanguageSettings settings = languageSettings(LanguageModelUse::Ollama);
    EXPECT_EQ(settings.endpoint, QUrl(u"http://127.0.0.1:11434"_s));
    EXPECT_EQ(settings.model, u"qwen3:1.7b"_s);
    EXPECT_EQ(settings.timeout, std::chrono::seconds(45));
    EXPECT_EQ(settings.contextTokens, 8192);
    EXPECT_EQ(languageSettings(LanguageModelUse::Off).use, LanguageModelUse::Off);

    set(workerEnvironment::ollamaEndpoint, "https://machine.example:8443/ollama/");
    EXPECT_EQ(languageSettings(LanguageModelUse::Ollama).endpoint.toString(), u"https://machine.example:8443/ollama"_s);
    const std::pair<QString, const char*> nonsense[] = {{workerEnvironment::llm, "yes"},
                                                        {workerEnvironment::ollamaEndpoint, "127.0.0.1:11434"},
                                                        {workerEnvironment::ollamaEndpoint, "file:///etc/passwd"},
                                                        {workerEnvironment::ollamaTimeout, "soon"},
                                                        {workerEnvironment::ollamaContextSize, "-5"}};
    for (const auto& [name, value] : nonsense) {
        set(name, value);
        EXPECT_THROW((void)languageSettings(LanguageModelUse::Ollama), LanguageError) << value;
        qunsetenv(name.toUtf8().constData());
    }
    set(workerEnvironment::llm, "off");
    EXPECT_EQ(languageSettings(LanguageModelUse::Ollama).use, LanguageModelUse::Off);
    qunsetenv(workerEnvironment::llm.toUtf8().constData());
}

TEST(SpokenLines, AreFoundAsTheyWereSaidAndOnlyWithTheirSpeaker) {
    const SpokenLines spoken(talk());
    EXPECT_THAT(spoken.labels(), ElementsAre(u"SPEAKER_00"_s, u"SPEAKER_01"_s));
    EXPECT_EQ(spoken.find(u"SPEAKER_00"_s, u"we launch, on monday."_s), u"We launch on Monday!"_s);
    EXPECT_EQ(spoken.find(u"SPEAKER_01"_s, u"\"Ill write the cafe\u0301's invitation\""_s),
              u"I’ll write the café’s invitation."_s);
    EXPECT_EQ(spoken.find(u"SPEAKER_01"_s, u"月曜日に始まります"_s), u"月曜日に始まります。"_s);
    for (const QString& invented : {u"We launch on Tuesday"_s, u"e launch on Mon"_s, u"Monday"_s, u""_s,
                                    u"I’ll write the café’s invitation."_s, u"invitation. 会議は月曜日"_s})
        EXPECT_EQ(spoken.find(u"SPEAKER_00"_s, invented), std::nullopt) << invented.toStdString();
    EXPECT_EQ(spoken.find(u"SPEAKER_07"_s, u"We launch on Monday"_s), std::nullopt);
}

TEST(LanguageAnswer, WhatAModelMadeUpIsLeftOut) {
    const SpokenLines spoken(talk());
    const QString liar = uR"(<think>{"summary":1} Hm.</think>Here you are:
```json
{"summary": "  Two \u0007people\n\n\tplan.  ", "speakers": [
  {"speaker": "Bob", "short_label": "Boss", "context": "", "notable_lines": []},
  {"speaker": "SPEAKER_01", "short_label": "", "context": "", "notable_lines": ["We launch on Monday"]},
  {"speaker": "SPEAKER_00", "short_label": "Lead", "context": "Leads\nall.",
   "notable_lines": ["good morning", "Good morning!", "We launch on Friday", "We launch on Monday"]},
  {"speaker": "SPEAKER_00", "short_label": "Twin", "context": "", "notable_lines": null}]}
```)"_s;
    const LanguageAnswer answer = readAnswer(liar, spoken.labels(), spoken);
    EXPECT_EQ(answer.summary, u"Two people\nplan."_s);
    EXPECT_THAT(answer.speakers,
                ElementsAre(TranscriptSpeakerContext{
                    u"SPEAKER_00"_s, u"Lead"_s, u"Leads all."_s, {u"Good morning."_s, u"We launch on Monday!"_s}}));

    const QString chatter = uR"({"summary": "%1", "speakers": [{"speaker": "SPEAKER_01", "short_label": "%1"}]})"_s.arg(
        u"word 👩‍👩‍👧 "_s.repeated(900));
    const LanguageAnswer cut = readAnswer(chatter, spoken.labels(), spoken);
    EXPECT_LE(cut.summary.size(), 2000);
    EXPECT_LE(cut.speakers.at(0).shortLabel.size(), 48);
    EXPECT_TRUE(cut.speakers.at(0).shortLabel.endsWith(u"…"_s));

    for (const QString& broken :
         {u""_s, u"{}"_s, u"Sorry, I cannot."_s, u"<think>{\"summary\":\"x\",\"speakers\":[]}</think>"_s,
          u"{\"summary\":\"x\",\"speakers\":[{\"speaker\":1}]}"_s, u"{\"summary\":[\"x\"],\"speakers\":[]}"_s,
          u"{\"summary\":\"x\",\"speakers\":{}}"_s, u"{\"summary\":\" \\n\",\"speakers\":[]}"_s, goodAnswer.chopped(9)})
        EXPECT_THROW((void)readAnswer(broken, spoken.labels(), spoken), AnswerFormError) << broken.toStdString();
}

TEST(TranscriptParts, FitAndHoldEverything) {
    std::vector<TranscriptSegment> segments;
    for (int turn = 0; turn < 300; ++turn)
        segments.push_back({0, 0, u"number %1 said this."_s.arg(turn), turn % 2 ? u"B"_s : u"A"_s});
    segments.push_back({0, 0, u"endless talk "_s.repeated(400) + u"漢字👩"_s.repeated(200), u"A"_s});
    const auto parts = transcriptParts(segments, 200);
    QString all;
    for (const QString& part : parts) {
        EXPECT_LE(estimatedTokens(part), 200);
        EXPECT_THAT(part.toStdString(), testing::MatchesRegex("^[AB]: (.|\n)*\n$"));
        all += part;
    }
    EXPECT_THAT(all.toStdString(), HasSubstr("B: number 299 said this."));
    const auto letters = [](QString text) { return text.remove(u"A: "_s).remove(u"B: "_s).remove(u' ').remove(u'\n'); };
    QString spoken;
    for (const auto& segment : segments)
        spoken += segment.text;
    EXPECT_EQ(letters(all), letters(spoken));
}

TEST(MeetingDescription, AsksOnceInTheLanguageOfTheMeetingWithWhatIsKnown) {
    FakeOllama ollama;
    ollama.say(goodAnswer);
    TranscriptResult transcript = meeting(talk(), u"fr"_s);
    transcript.speakerNames = {{u"SPEAKER_01"_s, u"Ann"_s}};
    double progress = 0;
    const auto description = describe(transcript, ollama, &progress, u"The weekly of the café."_s);
    EXPECT_EQ(progress, 1.0);
    EXPECT_EQ(description.provider, u"ollama"_s);
    EXPECT_EQ(description.model, u"qwen3:1.7b"_s);
    EXPECT_EQ(description.summary, u"They plan the launch."_s);
    ASSERT_EQ(description.speakerContext.size(), 1U);
    EXPECT_THAT(description.speakerContext[0].notableLines, ElementsAre(u"We launch on Monday!"_s));
    ASSERT_EQ(ollama.requests().size(), 1U);
    const std::string instructions = said(ollama.requests()[0], 0).toStdString();
    for (const char* words : {"SPEAKER_00, SPEAKER_01 (is Ann)", "French", "The weekly of the café."})
        EXPECT_THAT(instructions, HasSubstr(words));
    EXPECT_EQ(said(ollama.requests()[0], 1), transcriptParts(talk(), 2000).front());
}

TEST(MeetingDescription, ALongMeetingIsReadInPartsThatFit) {
    std::vector<TranscriptSegment> segments = talk();
    for (int turn = 0; turn < 600; ++turn)
        segments.push_back({0, 0, u"I have one more remark, which is remark number %1."_s.arg(turn),
                            turn % 2 ? u"SPEAKER_01"_s : u"SPEAKER_00"_s});
    FakeOllama ollama;
    ollama.say(goodAnswer);
    double progress = 0;
    const auto description = describe(meeting(segments), ollama, &progress);
    EXPECT_EQ(progress, 1.0);
    EXPECT_THAT(description.speakerContext.at(0).notableLines, ElementsAre(u"We launch on Monday!"_s));
    const auto requests = ollama.requests();
    EXPECT_GT(requests.size(), 10U);
    for (const auto& request : requests)
        EXPECT_LE(estimatedTokens(said(request, 0)) + estimatedTokens(said(request, 1)) +
                      *numberAt(*request.body.at(u"options"_s).objectValue(), u"num_predict"_s),
                  2048);
    EXPECT_THAT(said(requests.back(), 1).toStdString(), HasSubstr("They plan the launch."));
    EXPECT_THAT(said(requests.back(), 0).toStdString(), HasSubstr("Describe the whole meeting"));
}

TEST(MeetingDescription, ABrokenAnswerIsAskedForOnceMore) {
    FakeOllama ollama;
    ollama.say(goodAnswer.chopped(5));
    ollama.say(goodAnswer);
    EXPECT_EQ(describe(meeting(talk()), ollama).summary, u"They plan the launch."_s);
    const auto temperature = [&](std::size_t request) {
        return *numberAt(*ollama.requests()[request].body.at(u"options"_s).objectValue(), u"temperature"_s);
    };
    EXPECT_NE(temperature(0), temperature(1)); // or the same answer would come again
    ollama.say(u"no"_s);
    EXPECT_THROW((void)describe(meeting(talk()), ollama), AnswerFormError);
    EXPECT_EQ(ollama.requests().size(), 4U);
    ollama.say({}, Manner::serverError);
    EXPECT_THROW((void)describe(meeting(talk()), ollama), LanguageError);
    EXPECT_EQ(ollama.requests().size(), 5U);
}
