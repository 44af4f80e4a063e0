// Making a meeting of an existing audio or movie file.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Library/AudioImport.h"
#include "CorvaneCore/Library/FileNames.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMetaObject>
#include <QPointer>

namespace corvane {

QFuture<std::optional<QString>> AppModel::importAudioFile(const QString& chosen) {
    const QString source = QFileInfo(chosen).absoluteFilePath();
    try {
        m_paths.createDirectories();
    } catch (const FileError& error) {
        say(UserText::tr("Failed to import audio: %1").arg(error.text()));
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    const QString copy = uniqueImportedAudioURL(m_paths.recordings(), source);
    m_library.setImportProgress(0.0);
    const auto report = [library = QPointer(&m_library)](double fraction) {
        if (library)
            library->setImportProgress(fraction);
    };
    // The worker thread never touches the model: it posts to the main thread, where a model that is gone is skipped.
    const auto post = [context = QPointer<QObject>(this), report](double fraction) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), [context, report, fraction] {
            if (context)
                report(fraction);
        });
    };
    const auto step = [post, cancelled = m_importsCancelled](double fraction) {
        if (*cancelled)
            throw AudioImportError(UserText::tr("Cancelled"));
        post(fraction);
    };
    return inBackground([source, copy, step]() -> QString {
               try {
                   copyAudioFile(source, copy, step);
                   return {};
               } catch (const AudioImportError& error) {
                   return error.text();
               }
           })
        .then(this, [this, source, copy](const QString& error) { return finishImport(source, copy, error); });
}

void AppModel::cancelImports() {
    *m_importsCancelled = true;
    m_importsCancelled = std::make_shared<std::atomic<bool>>(false);
}

std::optional<QString> AppModel::finishImport(const QString& source, const QString& copy, const QString& copyError) {
    m_library.setImportProgress(std::nullopt);
    QString failure = copyError;
    const QString meetingID = uuidText(QUuid::createUuid());
    if (failure.isEmpty()) {
        MeetingDraftMetadata draft;
        draft.title = fileTitle(source);
        draft.audioPath = copy;
        draft.settings = m_diarizationDefaults.appliedTo({});
        draft.recordingStatus = recordingStatus::imported;
        try {
            writeMeetingDraft(draft, meetingID);
        } catch (const FileError& error) {
            failure = error.text();
        }
    }
    if (!failure.isEmpty()) {
        say(UserText::tr("Failed to import audio: %1").arg(failure));
        return std::nullopt;
    }
    reloadMeetings();
    if (const auto meeting = m_library.find(meetingID))
        selectMeeting(*meeting);
    say(UserText::tr("Imported %1").arg(lastPathComponent(source)));
    return meetingID;
}

} // namespace corvane
