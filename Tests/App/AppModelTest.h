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
        RunAppMetadata record = recordOf(title, data.recording(QString(meeting) + u".wav"_s), meeting);
        record.settings.language = u"de"_s;
        const QString run = data.makeRun(name, record, status);
        DataDirectoryBuilder::setModified(run, modified);
        return run;
    }
    QString makeDraft(const char* id, const char* title, int modified, const char* status = "imported") {
        MeetingDraftMetadata draft;
        draft.title = title;
        draft.recordingStatus = status;
        draft.audioPath = data.recording(QString(id) + u".wav"_s);
        draft.startedAt = referenceSeconds(fixture.clock->now()) - 90;
        draft.chunks = {u"/chunk"_s};
        draft.settings.speakerIdentificationContext = u"Ada speaks first"_s;
        const QString directory = data.makeDraft(id, draft);
        DataDirectoryBuilder::setModified(directory, modified);
        return directory;
    }
    void select(AppModel& model, const char* id) { model.selectSidebarItem(SidebarItem::meeting(id)); }
    static QString status(AppModel& model) { return model.status().statusMessage(); }
    static MeetingListItem listed(AppModel& model, const char* id) { return model.library().find(id).value(); }

    DataDirectoryBuilder data;
    ModelFixture fixture{data.paths};
    const QString worker = data.paths.root + u"/corvane-worker"_s;
};

} // namespace corvane
