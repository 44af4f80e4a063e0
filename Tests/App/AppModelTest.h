// A model over a data directory that is still empty, and a worker that can be launched but does nothing.
#pragma once

#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/PrintQt.h"

#include <gmock/gmock.h>

namespace corvane {

class AppModelTest : public testing::Test {
protected:
    AppModelTest() {
        writeFileAtomically(worker, "#!/bin/sh\n");
        QFile::setPermissions(worker, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        fixture.worker = worker;
    }
    QString makeRun(const char* name, const char* title, const char* meeting, int modified,
                    const char* status = "completed") {
        RunAppMetadata record;
        record.title = QString::fromUtf8(title);
        record.meetingID = QString::fromUtf8(meeting);
        record.audioPath = data.recording(QString::fromUtf8(meeting) + QStringLiteral(".wav"));
        record.settings.language = QStringLiteral("de");
        const QString run = data.makeRun(QString::fromUtf8(name), record, QString::fromUtf8(status));
        DataDirectoryBuilder::setModified(run, modified);
        return run;
    }
    QString makeDraft(const char* id, const char* title, int modified, const char* status = "imported") {
        MeetingDraftMetadata draft;
        draft.title = QString::fromUtf8(title);
        draft.recordingStatus = QString::fromUtf8(status);
        draft.audioPath = data.recording(QString::fromUtf8(id) + QStringLiteral(".wav"));
        draft.startedAt = referenceSeconds(fixture.clock->now()) - 90;
        draft.chunks = {QStringLiteral("/chunk")};
        draft.settings.speakerIdentificationContext = QStringLiteral("Ada speaks first");
        const QString directory = data.makeDraft(QString::fromUtf8(id), draft);
        DataDirectoryBuilder::setModified(directory, modified);
        return directory;
    }
    void select(AppModel& model, const char* id) {
        model.selectSidebarItem(SidebarItem::meeting(QString::fromUtf8(id)));
    }
    static QString status(AppModel& model) { return model.status().statusMessage(); }
    static MeetingListItem listed(AppModel& model, const char* id) {
        return model.library().find(QString::fromUtf8(id)).value();
    }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const QString worker = data.paths.root + QStringLiteral("/corvane-worker");
};

} // namespace corvane
