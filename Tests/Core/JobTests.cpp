// Finding and launching the worker, and reading what it leaves.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Fakes/FakeProcessLauncher.h"
#include "Support/Fakes/FakeTokenStore.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

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
    QString present;
    WorkerLocator locator{.environment = {},
                          .currentDirectory = QStringLiteral("/a/b/c"),
                          .bundleResourceDirectory = std::nullopt,
                          .fileExists = [&](const QString& path) {
                              asked.append(path);
                              return path == present;
                          }};
    const auto resolve = [&] {
        asked.clear();
        return locator.resolve();
    };
    const QString tail = QStringLiteral(".venv/bin/corvane-worker");
    const QStringList fourOfC{QStringLiteral("/a/b/c/") + tail, QStringLiteral("/a/b/c/worker/") + tail,
                              QStringLiteral("/a/worker/") + tail, QStringLiteral("/worker/") + tail};
    EXPECT_FALSE(resolve());
    EXPECT_EQ(asked, fourOfC);
    present = fourOfC[2];
    EXPECT_EQ(resolve(), present);
    EXPECT_EQ(asked.size(), 3);

    const QString bundled = QStringLiteral("/opt/corvane/worker/bin/corvane-worker");
    locator.bundleResourceDirectory = QStringLiteral("/opt/corvane");
    locator.environment = {{QStringLiteral("CORVANE_WORKER_PATH"), QStringLiteral("../odd//worker ")}};
    present.clear();
    EXPECT_FALSE(resolve());
    EXPECT_EQ(asked, QStringList({QStringLiteral("../odd//worker "), bundled}) + fourOfC);
    locator.fileExists = [](const QString&) { return true; };
    EXPECT_EQ(resolve(), QStringLiteral("../odd//worker "));
    locator.environment = {{QStringLiteral("OTHER"), QStringLiteral("x")}};
    EXPECT_EQ(resolve(), bundled);

    locator.bundleResourceDirectory.reset();
    locator.fileExists = [&](const QString& path) {
        asked.append(path);
        return false;
    };
    for (const char* shallow : {"/", "/a"}) {
        locator.currentDirectory = QString::fromLatin1(shallow);
        EXPECT_FALSE(resolve());
        EXPECT_EQ(asked.mid(2), QStringList({QStringLiteral("/worker/") + tail, QStringLiteral("/worker/") + tail}));
        EXPECT_FALSE(asked[0].startsWith(QLatin1String("//")));
    }
}

TEST(WorkerLocator, AFileThatCannotBeRunIsAbsent) {
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("worker"));
    writeFileAtomically(file, "#!/bin/sh\n");
    EXPECT_FALSE(isExecutableFile(file));
    EXPECT_FALSE(isExecutableFile(directory.path()));
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_TRUE(isExecutableFile(file));
}

TEST(WorkerCommandBuilder, GivesTheArgumentsWordByWord) {
    const WorkerCommandBuilder builder{QStringLiteral("/w")};
    ProcessArguments arguments{.audio = QStringLiteral("/a \"b\".wav"),
                               .runDirectory = QStringLiteral("/r"),
                               .numSpeakers = 3,
                               .diarizationEnabled = true,
                               .speakerCountMode = QStringLiteral("range"),
                               .minSpeakers = 5,
                               .maxSpeakers = -2,
                               .device = QStringLiteral("mps"),
                               .backend = QStringLiteral("whispermlx"),
                               .language = QStringLiteral("fr")};
    const QStringList common{QStringLiteral("process"),    QStringLiteral("--audio"),   QStringLiteral("/a \"b\".wav"),
                             QStringLiteral("--out-dir"),  QStringLiteral("/r"),        QStringLiteral("--device"),
                             QStringLiteral("mps"),        QStringLiteral("--backend"), QStringLiteral("whispermlx"),
                             QStringLiteral("--language"), QStringLiteral("fr")};
    const auto extra = [&] {
        const QStringList words = builder.processArguments(arguments);
        EXPECT_EQ(words.mid(0, 11), common);
        return words.mid(11).join(QLatin1Char(' '));
    };
    EXPECT_EQ(extra(), QStringLiteral("--min-speakers 5 --max-speakers -2"));
    for (const char* unknown : {"fixed", "AUTO", ""}) {
        arguments.speakerCountMode = QString::fromLatin1(unknown);
        EXPECT_EQ(extra(), QStringLiteral("--num-speakers 3"));
    }
    arguments.speakerCountMode = QStringLiteral("auto");
    EXPECT_EQ(extra(), QStringLiteral("--auto-speakers"));
    arguments.diarizationEnabled = false;
    EXPECT_EQ(extra(), QStringLiteral("--no-diarization"));
    EXPECT_EQ(builder.speakerContextArguments(QStringLiteral("/r"), QString()).join(QLatin1Char('|')),
              QStringLiteral("speaker-context|--run-dir|/r|--context|"));
    EXPECT_EQ(builder.speakerProfileExtractArguments(QStringLiteral("/r"), QStringLiteral("S/0"), QStringLiteral("/o"))
                  .join(QLatin1Char('|')),
              QStringLiteral("speaker-profiles|extract|--run-dir|/r|--speaker|S/0|--out|/o"));
}

TEST(WorkerEnvironment, HoldsATokenOnlyIfThereIsOne) {
    const auto tokens = std::make_shared<FakeTokenStore>();
    const ProcessEnvironment without{
        {QStringLiteral("CORVANE_WORKER_LLM"), QStringLiteral("off")},
        {QStringLiteral("CORVANE_WORKER_OLLAMA_ENDPOINT"), QStringLiteral("http://127.0.0.1:11434")},
        {QStringLiteral("CORVANE_WORKER_OLLAMA_MODEL"), QStringLiteral("qwen3:1.7b")},
        {QStringLiteral("CORVANE_WORKER_OLLAMA_TIMEOUT"), QStringLiteral("45")},
        {QStringLiteral("CORVANE_WORKER_OLLAMA_NUM_CTX"), QStringLiteral("8192")}};
    tokens->saveNotionToken(QStringLiteral("never"));
    EXPECT_EQ((WorkerEnvironment{tokens, false}).values(), without);
    tokens->answer = [] { return QString(); };
    EXPECT_EQ((WorkerEnvironment{tokens, false}).values(), without);
    tokens->answer = nullptr;
    tokens->saveHuggingFaceToken(QStringLiteral("hf_x"));
    ProcessEnvironment with = without;
    with[QStringLiteral("CORVANE_WORKER_LLM")] = QStringLiteral("ollama");
    with[QStringLiteral("HF_TOKEN")] = QStringLiteral("hf_x");
    EXPECT_EQ((WorkerEnvironment{tokens, true}).values(), with);
    tokens->setFailure(TokenStoreError(1, QStringLiteral("The keyring is locked.")));
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
    [[nodiscard]] LaunchOrder order(const QString& audio = QStringLiteral("/x/meeting.wav")) const {
        return {.audio = audio,
                .recordingID = recordingID,
                .settings = {},
                .environment = {{QStringLiteral("CORVANE_WORKER_LLM"), QStringLiteral("off")}}};
    }
    [[nodiscard]] QByteArray content(const QString& file) const {
        return readFile(runFiles::in(runDirectory, file)).value_or("absent");
    }
    [[nodiscard]] QByteArray launchState() const {
        return "{\n  \"status\": \"running\",\n  \"message\": \"worker launch requested: " + QFile::encodeName(worker) +
               "\",\n  \"progress\": 0.0,\n  \"outputs\": {}\n}";
    }

    DataDirectoryBuilder data;
    const QUuid recordingID{QStringLiteral("0a1b2c3d-0000-4000-8000-00000000000f")};
    const QString runDirectory = data.run(QStringLiteral("0A1B2C3D-0000-4000-8000-00000000000F"));
    const QString worker = data.paths.root + QStringLiteral("/corvane-worker");
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
    EXPECT_EQ(request.arguments.join(QLatin1Char(' ')),
              QStringLiteral("process --audio /x/meeting.wav --out-dir %1 --device mps --backend whispermlx --language "
                             "fr --auto-speakers")
                  .arg(runDirectory));
    EXPECT_EQ(request.environment, order().environment);
    EXPECT_EQ(request.standardOutput, runFiles::in(runDirectory, runFiles::standardOutputLog));
    EXPECT_EQ(request.standardError, runFiles::in(runDirectory, runFiles::standardErrorLog));
}

TEST(LaunchDocuments, EscapeDoubleQuotesAndNothingElse) {
    EXPECT_EQ(launchMetadataText(QStringLiteral("/x/a\"b.wav")),
              R"({
  "title": "a\"b",
  "audio_path": "/x/a\"b.wav"
})");
    EXPECT_EQ(decodeRunAppMetadata(launchMetadataText(QStringLiteral("/x/a\"b.wav"))).title, QStringLiteral("a\"b"));
    EXPECT_EQ(launchMetadataText(QStringLiteral("/x/a\\b.wav")),
              "{\n  \"title\": \"a\\b\",\n  \"audio_path\": \"/x/a\\b.wav\"\n}");
    EXPECT_THAT(launchMetadataText(QStringLiteral("/x/Zoë no extension")).toStdString(),
                testing::HasSubstr("\"Zoë no extension\""));
    EXPECT_EQ(launchMetadataText(QStringLiteral("/x/a\nb.c.wav")),
              "{\n  \"title\": \"a\nb.c\",\n  \"audio_path\": \"/x/a\nb.c.wav\"\n}");
    EXPECT_THAT(launchStateText(QStringLiteral("/w\"\\")).toStdString(), testing::HasSubstr("requested: /w\"\\\","));
}

TEST_F(JobQueueTest, NotesATerminationOnlyWhereNoStateIs) {
    const auto launcher = std::make_shared<FakeProcessLauncher>();
    const auto endNewRun = [&](std::int32_t status, const std::function<void()>& before) {
        static_cast<void>(queue(launcher).launch(order()));
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

TEST_F(JobQueueTest, ARealWorkerThatEndsWithoutAStateIsNotedAfterTheQueueIsGone) {
    const auto launch = [&](const QByteArray& script) {
        QFile::remove(worker);
        writeFileAtomically(worker, "#!/bin/sh\n" + script);
        QFile::setPermissions(worker, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        return queue(std::make_shared<LinuxProcessLauncher>()).launch(order()).process;
    };
    launch("echo said; echo wrong >&2; rm \"$5/job_state.json\"; exit 3\n");
    EXPECT_TRUE(waitFor([&] { return content(runFiles::jobState) == failedWith3; }));
    EXPECT_EQ(content(runFiles::standardOutputLog), "said\n");
    EXPECT_EQ(content(runFiles::standardErrorLog), "wrong\n");
    launch("rm \"$5/job_state.json\"; kill -9 $$\n");
    EXPECT_TRUE(waitFor([&] { return content(runFiles::jobState).contains("exited with status 137;"); }));
    const auto silent = launch("exit 3\n");
    EXPECT_TRUE(waitFor([&] { return !silent->isRunning(); }));
    EXPECT_EQ(content(runFiles::jobState), launchState());
}

TEST_F(JobQueueTest, ALaunchThatFailsKeepsWhatWasWritten) {
    const auto launcher = std::make_shared<LinuxProcessLauncher>();
    ASSERT_TRUE(QFile::remove(worker));
    EXPECT_THROW(static_cast<void>(queue(launcher).launch(order())), LaunchError);
    EXPECT_EQ(content(runFiles::jobState), launchState());
    EXPECT_NE(content(runAppMetadataFile), "absent");
    // A log file in whose place something else stands.
    const QString log = runFiles::in(runDirectory, runFiles::standardErrorLog);
    ASSERT_TRUE(QFile::remove(log) && QDir().mkdir(log));
    EXPECT_THROW(static_cast<void>(queue(launcher).launch(order())), LaunchError);
    ASSERT_TRUE(QDir(runDirectory).removeRecursively());
    writeFileAtomically(runDirectory, "a file in the way");
    EXPECT_THROW(static_cast<void>(queue(launcher).launch(order())), FileError);
}

TEST(JobEventReader, ReadsLinesThatEndWithALineFeedAlone) {
    const DataDirectoryBuilder data;
    const QString run = data.makeRun(QStringLiteral("R"));
    const auto types = [&](const QByteArray& content) {
        data.write(QStringLiteral("R"), runFiles::events, content);
        QStringList result;
        for (const WorkerJobEvent& event : JobEventReader().read(run))
            result.append(event.type);
        return result.join(QLatin1Char(' '));
    };
    EXPECT_EQ(types("{\"type\":\"a\"}\n\n[1]\n{\"type\":\"a\"}\n{\"type\":\"b\"}"), QStringLiteral("a a b"));
    EXPECT_EQ(types("{\"type\":\"a\"}\n{\"type\":\"b\"}\r\n{\"type\":\"c\"}\r\n"), QStringLiteral("a"));
    EXPECT_EQ(types("{\"type\":\"a\"}\r\n"), QStringLiteral("a"));
    EXPECT_EQ(types("\n\n\n"), QString());
    EXPECT_EQ(types("{\"type\":\"a\"}\n{\"type\":\"b\", \"te"), QStringLiteral("a"));
    EXPECT_EQ(types("{\"type\":\"a\"}\n\xc3"), QString());
    EXPECT_TRUE(JobEventReader().read(QStringLiteral("/nowhere")).empty());
}

TEST(JobStateReader, FindsTheLatestRun) {
    const DataDirectoryBuilder data;
    const LinuxFileTree files;
    const auto latest = [&] { return JobStateReader().latestRun(data.paths.runs(), files); };
    writeFileAtomically(data.run(QStringLiteral("file")), "x");
    EXPECT_FALSE(latest());
    for (const char* name : {"a", "b", "c", ".hidden"})
        DataDirectoryBuilder::setModified(data.makeRun(QString::fromLatin1(name)), name[0] == '.' ? 900 : 100);
    const std::vector<QString> listed = files.list(data.paths.runs()).value();
    const auto first = std::find_if(listed.begin(), listed.end(), [](const QString& n) { return n.size() == 1; });
    EXPECT_EQ(latest(), data.run(*first)) << "of equal times the first listed";
    DataDirectoryBuilder::setModified(data.run(QStringLiteral("b")), 200);
    EXPECT_EQ(latest(), data.run(QStringLiteral("b")));
    EXPECT_FALSE(JobStateReader().latestRun(QStringLiteral("/nowhere"), files));
}

TEST(RunProgress, IsWorkedOutFromEventsStateAndLength) {
    const QDateTime start = *parseInternetDateTime(QStringLiteral("2026-03-02T14:00:00Z"));
    const auto line = [&](const char* type, double seconds, const JSONValue::Object& details = {}) {
        return encodeWorkerJobEvent(QString::fromLatin1(type), start.addMSecs(std::llround(seconds * 1000)), details);
    };
    const QByteArray started = line("job_started", 0);
    const auto text = [](const char* key, const char* value) {
        return JSONValue::Object{{QString::fromLatin1(key), QString::fromUtf8(value)}};
    };
    const auto part = [](double value) { return JSONValue::Object{{QStringLiteral("progress"), value}}; };
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
        {"llm odd", line("llm_completed", 1, {{QStringLiteral("model"), 5}}) + line("llm_failed", 2), "", none, 0, none,
         none, 0, "Speaker context generated with local model."},
        {"llm number", line("llm_failed", 2, {{QStringLiteral("error"), 5}}), "", none, 0, none, none, 0, ""},
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
            state = WorkerJobState{QString::fromLatin1(c.status), {}, 0.25, {}};
        const RunProgress progress =
            RunProgress::from(events, state, c.length, start.addMSecs(std::llround(c.now * 1000)));
        EXPECT_EQ(progress.elapsed, c.elapsed);
        EXPECT_EQ(progress.transcriptionElapsed, c.transcription);
        EXPECT_EQ(progress.audioDuration, c.length);
        EXPECT_DOUBLE_EQ(progress.estimatedProgress, c.estimate);
        EXPECT_EQ(progress.llmMessage.value_or(QString()), QString::fromLatin1(c.llm));
    }
}
