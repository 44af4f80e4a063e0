// Finding and launching the worker, and reading what it leaves.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Fakes/FakeProcessLauncher.h"
#include "Support/Fakes/FakeTokenStore.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Jobs/JobQueue.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Jobs/RunProgress.h"
#include "CorvaneCore/Jobs/WorkerEnvironment.h"
#include "CorvaneCore/Jobs/WorkerLocator.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <gmock/gmock.h>

using namespace corvane;

TEST(WorkerLocator, LooksInOrderAndStopsAtTheFirstHit) {
    QStringList asked;
    QStringList present;
    WorkerLocator locator{.environment = {},
                          .currentDirectory = u"/a/b/c"_s,
                          .bundleResourceDirectory = std::nullopt,
                          .fileExists = [&](const QString& path) {
                              asked.append(path);
                              return present.contains(path);
                          }};
    const auto resolve = [&] {
        asked.clear();
        return locator.resolve();
    };
    const QString tail = u".venv/bin/corvane-worker"_s;
    const QStringList fourOfC{u"/a/b/c/"_s + tail, u"/a/b/c/worker/"_s + tail, u"/a/worker/"_s + tail,
                              u"/worker/"_s + tail};
    EXPECT_FALSE(resolve());
    EXPECT_EQ(asked, fourOfC);
    present = QStringList(fourOfC[2]);
    EXPECT_EQ(resolve(), fourOfC[2]);
    EXPECT_EQ(asked.size(), 3);

    const QString bundled = u"/opt/corvane/worker/bin/corvane-worker"_s;
    locator.bundleResourceDirectory = u"/opt/corvane"_s;
    locator.environment = {{u"CORVANE_WORKER_PATH"_s, u"../odd//worker "_s}};
    present.clear();
    EXPECT_FALSE(resolve());
    EXPECT_EQ(asked, QStringList({u"../odd//worker "_s, bundled}) + fourOfC);
    present = QStringList{bundled, u"../odd//worker "_s};
    EXPECT_EQ(resolve(), u"../odd//worker "_s);
    locator.environment = {{u"OTHER"_s, u"x"_s}};
    EXPECT_EQ(resolve(), bundled);

    locator.bundleResourceDirectory.reset();
    present.clear();
    for (const char* shallow : {"/", "/a"}) {
        locator.currentDirectory = shallow;
        EXPECT_FALSE(resolve());
        EXPECT_EQ(asked.mid(2), QStringList({u"/worker/"_s + tail, u"/worker/"_s + tail}));
        EXPECT_FALSE(asked[0].startsWith(u"//"_s));
    }
}

TEST(WorkerLocator, AFileThatCannotBeRunIsAbsent) {
    const QTemporaryDir directory;
    const QString file = directory.filePath(u"worker"_s);
    writeFileAtomically(file, "#!/bin/sh\n");
    EXPECT_FALSE(isExecutableFile(file));
    EXPECT_FALSE(isExecutableFile(directory.path()));
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_TRUE(isExecutableFile(file));
}

TEST(WorkerCommandBuilder, GivesTheArgumentsWordByWord) {
    const WorkerCommandBuilder builder{u"/w"_s};
    ProcessArguments arguments{.audio = u"/a \"b\".wav"_s,
                               .runDirectory = u"/r"_s,
                               .numSpeakers = 3,
                               .diarizationEnabled = true,
                               .speakerCountMode = u"range"_s,
                               .minSpeakers = 5,
                               .maxSpeakers = -2,
                               .device = u"mps"_s,
                               .backend = u"whispermlx"_s,
                               .language = u"fr"_s};
    struct Case {
        const char *mode, *extra;
        bool diarizes = true;
    };
    for (const Case& c : std::vector<Case>{{"range", "--min-speakers|5|--max-speakers|-2"},
                                           {"fixed", "--num-speakers|3"},
                                           {"AUTO", "--num-speakers|3"},
                                           {"", "--num-speakers|3"},
                                           {"auto", "--auto-speakers"},
                                           {"auto", "--no-diarization", false}}) {
        arguments.speakerCountMode = c.mode;
        arguments.diarizationEnabled = c.diarizes;
        EXPECT_EQ(builder.processArguments(arguments).join(u'|'),
                  u"process|--audio|/a \"b\".wav|--out-dir|/r|--device|mps|--backend|whispermlx|--language|fr|"_s +
                      c.extra);
    }
    EXPECT_EQ(builder.speakerContextArguments(u"/r"_s, QString()).join(u'|'),
              u"speaker-context|--run-dir|/r|--context|"_s);
    EXPECT_EQ(builder.speakerProfileExtractArguments(u"/r"_s, u"S/0"_s, u"/o"_s).join(u'|'),
              u"speaker-profiles|extract|--run-dir|/r|--speaker|S/0|--out|/o"_s);
}

TEST(WorkerEnvironment, HoldsATokenOnlyIfThereIsOne) {
    const auto tokens = std::make_shared<FakeTokenStore>();
    const ProcessEnvironment without{{u"CORVANE_WORKER_LLM"_s, u"off"_s},
                                     {u"CORVANE_WORKER_OLLAMA_ENDPOINT"_s, u"http://127.0.0.1:11434"_s},
                                     {u"CORVANE_WORKER_OLLAMA_MODEL"_s, u"qwen3:1.7b"_s},
                                     {u"CORVANE_WORKER_OLLAMA_TIMEOUT"_s, u"45"_s},
                                     {u"CORVANE_WORKER_OLLAMA_NUM_CTX"_s, u"8192"_s}};
    tokens->saveNotionToken(u"never"_s);
    EXPECT_EQ((WorkerEnvironment{tokens, false}).values(), without);
    tokens->answer = [] { return QString(); };
    EXPECT_EQ((WorkerEnvironment{tokens, false}).values(), without);
    tokens->answer = nullptr;
    tokens->saveHuggingFaceToken(u"hf_x"_s);
    ProcessEnvironment with = without;
    with[u"CORVANE_WORKER_LLM"_s] = u"ollama"_s;
    with[u"HF_TOKEN"_s] = u"hf_x"_s;
    EXPECT_EQ((WorkerEnvironment{tokens, true}).values(), with);
    tokens->setFailure(TokenStoreError(1, u"The keyring is locked."_s));
    EXPECT_EQ((WorkerEnvironment{tokens, false}).values(), without);
}

namespace {

class JobQueueTest : public testing::Test {
protected:
    JobQueueTest() {
        writeFileAtomically(worker, "#!/bin/sh\n");
        QFile::setPermissions(worker, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    [[nodiscard]] JobQueue queue(std::shared_ptr<ProcessLauncher> launcher) const {
        return {data.paths, {worker}, std::move(launcher)};
    }
    [[nodiscard]] LaunchOrder order(const QString& audio = u"/x/meeting.wav"_s) const {
        return {.audio = audio,
                .recordingID = recordingID,
                .settings = {},
                .environment = {{u"CORVANE_WORKER_LLM"_s, u"off"_s}}};
    }
    [[nodiscard]] QByteArray content(const QString& file) const {
        return readFile(runFiles::in(runDirectory, file)).value_or("absent");
    }
    [[nodiscard]] QByteArray launchState() const {
        return "{\n  \"status\": \"running\",\n  \"message\": \"worker launch requested: " + QFile::encodeName(worker) +
               "\",\n  \"progress\": 0.0,\n  \"outputs\": {}\n}";
    }

    DataDirectoryBuilder data;
    const QUuid recordingID{u"0a1b2c3d-0000-4000-8000-00000000000f"_s};
    const QString runDirectory = data.run(u"0A1B2C3D-0000-4000-8000-00000000000F"_s);
    const QString worker = data.paths.root + u"/corvane-worker"_s;
    const QByteArray failedWith3 = "{\n  \"status\": \"failed\",\n  \"message\": \"worker exited with status 3; see "
                                   "worker.stderr.log\",\n  \"progress\": 0.0,\n  \"outputs\": {}\n}";
};

} // namespace

TEST_F(JobQueueTest, WritesTheLaunchDocumentsToTheByteAndStartsTheWorker) {
    const auto launcher = std::make_shared<FakeProcessLauncher>();
    for (int launch = 0; launch < 2; ++launch) {
        const ProcessingRun run = queue(launcher).launch(order());
        EXPECT_EQ(run.runDirectory, runDirectory);
        EXPECT_TRUE(run.process->isRunning());
        EXPECT_EQ(content(runFiles::jobState), launchState());
        EXPECT_EQ(content(runAppMetadataFile), "{\n  \"title\": \"meeting\",\n  \"audio_path\": \"/x/meeting.wav\"\n}");
        EXPECT_EQ(content(runFiles::standardOutputLog), "");
        EXPECT_EQ(content(runFiles::standardErrorLog), "");
        // What a second launch of the same recording has to replace.
        for (const QString& file :
             {runFiles::jobState, runAppMetadataFile, runFiles::standardErrorLog, runFiles::standardOutputLog})
            writeFileAtomically(runFiles::in(runDirectory, file), "old");
    }
    ASSERT_EQ(launcher->launched().size(), 2U);
    const ProcessRequest request = launcher->launched().back();
    EXPECT_EQ(request.executable, worker);
    EXPECT_EQ(request.arguments.join(u' '),
              u"process --audio /x/meeting.wav --out-dir %1 --device mps --backend whispermlx --language "
              "fr --auto-speakers"_s.arg(runDirectory));
    EXPECT_EQ(request.environment, order().environment);
    EXPECT_EQ(request.standardOutput, runFiles::in(runDirectory, runFiles::standardOutputLog));
    EXPECT_EQ(request.standardError, runFiles::in(runDirectory, runFiles::standardErrorLog));
}

TEST(LaunchDocuments, EscapeDoubleQuotesAndNothingElse) {
    const std::pair<const char*, const char*> cases[] = {
        {"a\"b", "a\\\"b"}, {"a\\b", "a\\b"}, {"Zoë a\nb.c", "Zoë a\nb.c"}};
    for (const auto& [title, written] : cases)
        EXPECT_EQ(launchMetadataText(u"/x/%1.wav"_s.arg(title)),
                  u"{\n  \"title\": \"%1\",\n  \"audio_path\": \"/x/%1.wav\"\n}"_s.arg(written).toUtf8());
    EXPECT_EQ(decodeRunAppMetadata(launchMetadataText(u"/x/a\"b.wav"_s)).title, u"a\"b"_s);
    EXPECT_THAT(launchMetadataText(u"/x/no extension"_s).toStdString(), testing::HasSubstr("\"no extension\""));
    EXPECT_THAT(launchStateText(u"/w\"\\"_s).toStdString(), testing::HasSubstr("requested: /w\"\\\","));
}

TEST_F(JobQueueTest, NotesATerminationOnlyWhereNoStateIs) {
    const auto launcher = std::make_shared<FakeProcessLauncher>();
    const auto endNewRun = [&](std::int32_t status, const std::function<void()>& before) {
        (void)queue(launcher).launch(order());
        before();
        launcher->endProcess(launcher->launched().size() - 1, status);
        return content(runFiles::jobState);
    };
    const auto removeState = [&] { ASSERT_TRUE(QFile::remove(runFiles::in(runDirectory, runFiles::jobState))); };
    EXPECT_EQ(endNewRun(3, [] {}), launchState());
    EXPECT_EQ(endNewRun(3, removeState), failedWith3);
    EXPECT_EQ(endNewRun(0, removeState), "absent");
    EXPECT_EQ(endNewRun(137, removeState), QByteArray(failedWith3).replace("status 3;", "status 137;"));
    EXPECT_EQ(endNewRun(3, [&] { ASSERT_TRUE(QDir(runDirectory).removeRecursively()); }), "absent");
    EXPECT_FALSE(QFile::exists(runDirectory));
}

TEST_F(JobQueueTest, ALaunchThatFailsKeepsWhatWasWritten) {
    const auto launcher = std::make_shared<LinuxProcessLauncher>();
    ASSERT_TRUE(QFile::remove(worker));
    EXPECT_THROW((void)queue(launcher).launch(order()), LaunchError);
    EXPECT_EQ(content(runFiles::jobState), launchState());
    EXPECT_NE(content(runAppMetadataFile), "absent");
    // A log file in whose place something else stands.
    const QString log = runFiles::in(runDirectory, runFiles::standardErrorLog);
    ASSERT_TRUE(QFile::remove(log) && QDir().mkdir(log));
    EXPECT_THROW((void)queue(launcher).launch(order()), LaunchError);
    ASSERT_TRUE(QDir(runDirectory).removeRecursively());
    writeFileAtomically(runDirectory, "a file in the way");
    EXPECT_THROW((void)queue(launcher).launch(order()), FileError);
}

TEST(JobEventReader, ReadsLinesThatEndWithALineFeedAlone) {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(u"R"_s);
    const auto types = [&](const QByteArray& content) {
        data.write(u"R"_s, runFiles::events, content);
        QStringList result;
        for (const WorkerJobEvent& event : JobEventReader().read(run))
            result.append(event.type);
        return result.join(u' ');
    };
    EXPECT_EQ(types("{\"type\":\"a\"}\n\n[1]\n{\"type\":\"a\"}\n{\"type\":\"b\"}"), u"a a b"_s);
    EXPECT_EQ(types("{\"type\":\"a\"}\n{\"type\":\"b\"}\r\n{\"type\":\"c\"}\r\n"), u"a"_s);
    EXPECT_EQ(types("{\"type\":\"a\"}\r\n"), u"a"_s);
    EXPECT_EQ(types("\n\n\n"), QString());
    EXPECT_EQ(types("{\"type\":\"a\"}\n{\"type\":\"b\", \"te"), u"a"_s);
    EXPECT_EQ(types("{\"type\":\"a\"}\n\xc3"), QString());
    EXPECT_TRUE(JobEventReader().read(u"/nowhere"_s).empty());
}

TEST(JobStateReader, FindsTheLatestRun) {
    const DataDirectoryBuilder data;
    const LinuxFileTree files;
    const auto latest = [&] { return JobStateReader().latestRun(data.paths.runs(), files); };
    writeFileAtomically(data.run(u"file"_s), "x");
    EXPECT_FALSE(latest());
    for (const char* name : {"a", "b", "c", ".hidden"})
        DataDirectoryBuilder::setModified(data.makeRun(name), name[0] == '.' ? 900 : 100);
    const std::vector<QString> listed = files.list(data.paths.runs()).value();
    const auto first = std::find_if(listed.begin(), listed.end(), [](const QString& n) { return n.size() == 1; });
    EXPECT_EQ(latest(), data.run(*first)) << "of equal times the first listed";
    DataDirectoryBuilder::setModified(data.run(u"b"_s), 200);
    EXPECT_EQ(latest(), data.run(u"b"_s));
    EXPECT_FALSE(JobStateReader().latestRun(u"/nowhere"_s, files));
}

TEST(RunProgress, IsWorkedOutFromEventsStateAndLength) {
    const QDateTime start = *parseInternetDateTime(u"2026-03-02T14:00:00Z"_s);
    const auto line = [&](const char* type, double seconds, const JSONValue::Object& details = {}) {
        return encodeWorkerJobEvent(type, start.addMSecs(std::llround(seconds * 1000)), details);
    };
    const QByteArray started = line("job_started", 0);
    const auto text = [](const char* key, const char* value) { return JSONValue::Object{{key, QString(value)}}; };
    const auto part = [](double value) { return JSONValue::Object{{u"progress"_s, value}}; };
    struct Case {
        const char* what;
        QByteArray events;
        const char* status; // "" for no state; its progress is 0.25
        std::optional<double> length;
        double now;
        std::optional<double> elapsed, transcription;
        double estimate;
        const char* llm;
    };
    const std::optional<double> none;
    const std::vector<Case> cases{
        {"no events", "", "running", 100, 50, none, none, 0.25, ""},
        {"nothing at all", "", "", 100, 50, none, none, 0, ""},
        {"half", started, "running", 100, 50, 50, none, 0.5, ""},
        {"long over", started, "running", 100, 500, 500, none, 0.98, ""},
        {"long over, ended", started, "failed", 100, 500, 500, none, 1, ""},
        {"no state", started, "", 100, 500, 500, none, 1, ""},
        {"completed", started + line("completed", 60) + line("failed", 70), "completed", 100, 500, 60, none, 0.6, ""},
        {"cancelled", line("cancelled", 20) + started, "cancelled", 100, 500, 20, none, 0.2, ""},
        {"no length", started, "running", none, 50, 50, none, 0.25, ""},
        {"length of nothing", started, "running", 0, 50, 50, none, 0.25, ""},
        {"clock went back", started, "running", 100, -50, -50, none, 0, ""},
        {"start without a time", "{\"type\":\"job_started\"}\n" + started, "running", 100, 50, none, none, 0.25, ""},
        {"transcribed", started + line("asr_progress", 10, part(0.99)) + line("asr_progress", 20.5, part(1)), "running",
         100, 50, 50, 20.5, 0.5, ""},
        {"not quite", started + line("asr_progress", 10, part(0.99)) + line("asr_progress", 20, text("progress", "1")),
         "running", 100, 50, 50, none, 0.5, ""},
        {"llm recovered", line("llm_failed", 1, text("error", "e")) + line("llm_completed", 2, text("model", "m")), "",
         none, 0, none, none, 0, "Speaker context generated with m."},
        {"llm lost", line("llm_completed", 1) + line("llm_failed", 2, text("error", "e")), "", none, 0, none, none, 0,
         "Using transcript snippets. Ollama unavailable: e"},
        {"llm odd", line("llm_completed", 1, {{u"model"_s, 5}}) + line("llm_failed", 2), "", none, 0, none, none, 0,
         "Speaker context generated with local model."},
        {"llm number", line("llm_failed", 2, {{u"error"_s, 5}}), "", none, 0, none, none, 0, ""},
        {"llm skipped", line("llm_skipped", 1), "", none, 0, none, none, 0, "Using transcript snippets."}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<WorkerJobEvent> events;
        JobEventReader::forEachOf(c.events, [&](const WorkerJobEvent& event) {
            events.push_back(event);
            return JobEventReader::Next::goOn;
        });
        std::optional<WorkerJobState> state;
        if (*c.status != '\0')
            state = WorkerJobState{c.status, {}, 0.25, {}};
        const RunProgress progress =
            RunProgress::from(events, state, c.length, start.addMSecs(std::llround(c.now * 1000)));
        EXPECT_EQ(progress.elapsed, c.elapsed);
        EXPECT_EQ(progress.transcriptionElapsed, c.transcription);
        EXPECT_EQ(progress.audioDuration, c.length);
        EXPECT_DOUBLE_EQ(progress.estimatedProgress, c.estimate);
        EXPECT_EQ(progress.llmMessage.value_or(QString()), c.llm);
    }
}
