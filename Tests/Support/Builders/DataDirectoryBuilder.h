// Makes meetings, runs and recordings in a temporary data directory, as the application and the worker leave them.
#pragma once

#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Library/AppPaths.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace corvane {

class DataDirectoryBuilder {
public:
    DataDirectoryBuilder() { paths.createDirectories(); }

    [[nodiscard]] QString run(const QString& name) const { return paths.runs() + u'/' + name; }
    [[nodiscard]] QString recording(const QString& name) const { return paths.recordings() + u'/' + name; }

    // A run that has only the documents that are given afterwards.
    QString makeRun(const QString& name) const {
        createPrivateDirectory(run(name));
        return run(name);
    }
    QString makeRun(const QString& name, const RunAppMetadata& record, const QString& status = u"completed"_s) const {
        makeRun(name);
        writeRunAppMetadata(record, run(name));
        writeState(name, status);
        return run(name);
    }
    void writeState(const QString& run, const QString& status) const {
        write(run, runFiles::jobState, encodeWorkerJobState({.status = status, .message = {}, .outputs = {}}));
    }
    void write(const QString& runName, const QString& file, const QByteArray& content) const {
        writeFileAtomically(runFiles::in(run(runName), file), content);
    }
    QString makeDraft(const QString& id, const MeetingDraftMetadata& draft) const {
        writeMeetingDraft(draft, paths.meeting(id));
        return paths.meeting(id);
    }

    // Seconds since 1970; the directory's own time is what a meeting is sorted by.
    static void setModified(const QString& path, std::int64_t seconds, std::int64_t nanoseconds = 0) {
        const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        if (::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) != 0)
            throw std::runtime_error("utimensat");
    }
    // Until the stamps of all that was written so far are trusted.
    static void settle(const FileTree& files, const QString& lastWritten) {
        while (!isSettled(files.stamp(lastWritten), files.settledBefore()))
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }

private:
    QTemporaryDir m_directory;

public:
    const AppPaths paths{m_directory.filePath(u"Corvane"_s)};
};

[[nodiscard]] inline RunAppMetadata recordOf(const QString& title, const QString& audio = {},
                                             std::optional<QString> meeting = {}) {
    RunAppMetadata record;
    record.title = title;
    record.audioPath = audio;
    record.meetingID = std::move(meeting);
    return record;
}

// A result of `segments` segments of speech between two speakers, with times and texts such as a worker gives.
[[nodiscard]] inline TranscriptResult speechResult(int segments) {
    static const char* const texts[] = {
        "Thanks, everyone. Shall we begin with the figures of the last quarter, as we said on Monday?",
        "Yes. I have them here; the second table isn't final yet – Zoë still waits for two numbers.",
        "Then let's \"park\" that one, and come back to it at about a quarter to eleven.", "Fine with me."};
    TranscriptResult result;
    result.metadata = {{u"audio"_s, u"/data/recordings/meeting.wav"_s}, {u"model"_s, u"large"_s}};
    result.speakers = {{.speaker = u"SPEAKER_00"_s, .duration = 1834.25, .examples = {}},
                       {.speaker = u"SPEAKER_01"_s, .duration = 902.125, .examples = {}}};
    for (int i = 0; i < segments; ++i)
        result.segments.push_back({.start = i * 2.37,
                                   .end = i * 2.37 + 2.11,
                                   .text = QString::fromUtf8(texts[i % 4]),
                                   .speaker = result.speakers[static_cast<std::size_t>(i / 3 % 2)].speaker});
    return result;
}

} // namespace corvane
