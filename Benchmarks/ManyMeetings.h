// A library of finished meetings, each with its run and its draft, as large as a benchmark asks for.
#pragma once

#include "Support/Builders/DataDirectoryBuilder.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace corvane {

inline void require(bool done, const char* what) {
    if (!done) {
        std::perror(what);
        std::exit(1);
    }
}

// 1 MB transcripts are hard links to one file, so that ten thousand meetings take no ten gigabytes.
inline void makeMeetings(const DataDirectoryBuilder& data, int count) {
    const QString shared = data.paths.root + QStringLiteral("/result.json");
    writeFileAtomically(shared, encodeTranscriptResult(speechResult(6000)));
    const QByteArray event = "{\"ts\":\"2026-03-02T14:05:33Z\",\"type\":\"job_started\",\"audio\":\"/x.wav\"}\n";
    const auto writePlainly = [](const QString& path, const QByteArray& content) {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "write");
    };
    for (int i = 0; i < count; ++i) {
        const QString id = uuidText(QUuid::createUuid());
        RunAppMetadata record;
        record.title = QStringLiteral("Weekly meeting %1").arg(i);
        record.audioPath = data.recording(id + QStringLiteral(".wav"));
        record.meetingID = id;
        MeetingDraftMetadata draft;
        draft.title = record.title;
        draft.audioPath = record.audioPath;
        const QString run = data.makeRun(uuidText(QUuid::createUuid()));
        createPrivateDirectory(data.paths.meeting(id));
        writePlainly(data.paths.meeting(id) + QStringLiteral("/metadata.json"), encodeMeetingDraft(draft));
        writePlainly(run + QStringLiteral("/app_metadata.json"), encodeRunAppMetadata(record));
        writePlainly(runFiles::in(run, runFiles::jobState),
                     encodeWorkerJobState({.status = QStringLiteral("completed"), .message = {}, .outputs = {}}));
        writePlainly(runFiles::in(run, runFiles::events), event.repeated(20));
        require(::link(QFile::encodeName(shared).constData(),
                       QFile::encodeName(runFiles::in(run, runFiles::result)).constData()) == 0,
                "link");
    }
}

} // namespace corvane
