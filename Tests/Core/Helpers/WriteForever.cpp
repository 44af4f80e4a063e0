// Performs every kind of write over and over in a data directory, until it is killed: WriteForever ROOT SOURCE. The
// number of a round is in each document; a line on standard output says that one begins.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Jobs/JobQueue.h"
#include "CorvaneCore/Library/AudioImport.h"
#include "CorvaneCore/Transcripts/TranscriptExportRewriter.h"

#include <QCoreApplication>

#include <cstdio>

using namespace corvane;

namespace {

// Instead of a process: only the documents of a launch count here.
class NoProcess final : public ProcessLauncher {
public:
    [[nodiscard]] std::shared_ptr<LaunchedProcess> launch(const ProcessRequest&, TerminationHandler) override {
        return nullptr;
    }
    [[nodiscard]] CommandResult run(const QString&, const QStringList&, const CommandCancellation&,
                                    const ProcessEnvironment&) override {
        return {};
    }
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const AppPaths paths(QString::fromLocal8Bit(argv[1]));
    const QString source = QString::fromLocal8Bit(argv[2]);
    const QString run = paths.runs() + u"/RUN"_s;
    // No two writers share a number, so that what a killed one has left can be told from the next one's.
    for (qint64 round = QCoreApplication::applicationPid() * 1'000'000;; ++round) {
        std::puts("round");
        std::fflush(stdout);
        const QString name = u"Round %1 "_s.arg(round).repeated(200);
        MeetingDraftMetadata draft;
        draft.title = name;
        writeMeetingDraft(draft, paths.meeting(u"M"_s));
        RunAppMetadata record;
        record.title = name;
        writeRunAppMetadata(record, run);
        const JobQueue queue(paths, {u"/worker/"_s + name}, std::make_shared<NoProcess>());
        (void)queue.launch({.audio = source,
                            .recordingID = QUuid(u"{0a1b2c3d-0000-4000-8000-00000000000f}"),
                            .settings = {},
                            .environment = {}});
        TranscriptExportRewriter().rewrite(run, {{u"SPEAKER_00"_s, name}}, {}, {});
        copyAudioFile(source, paths.recordings() + u"/copy.wav"_s, [](double) {});
    }
}
