// What the model leaves alone because another process records it.
#include "Support/Builders/DataDirectoryBuilder.h"
#include "Support/Builders/ModelFixture.h"
#include "Support/PrintQt.h"

#include <gmock/gmock.h>

using namespace corvane;

TEST(RecordingLockTest, ARecordingOfAnotherProcessIsLeftAlone) {
    const DataDirectoryBuilder data;
    MeetingDraftMetadata draft;
    draft.recordingStatus = recordingStatus::recording;
    const QString directory = data.makeDraft(QStringLiteral("D"), draft);
    ModelFixture fixture{data.paths};
    AppModel& model = fixture.start();
    model.selectSidebarItem(SidebarItem::meeting(QStringLiteral("D")));
    EXPECT_FALSE(RecordingLock::isHeld(directory));
    {
        const RecordingLock other(directory);
        EXPECT_TRUE(RecordingLock::isHeld(directory));
        model.resumeRecording();
        EXPECT_EQ(model.status().statusMessage(),
                  QStringLiteral("Failed to resume recording: this meeting is being recorded by another process"));
        EXPECT_FALSE(ModelFixture::resultOf(model.stopRecording()));
        EXPECT_EQ(model.status().statusMessage(),
                  QStringLiteral("Failed to stop recording: this meeting is being recorded by another process"));
    }
    EXPECT_TRUE(model.hasRecoverableRecording());
    // What cannot be resumed is not kept from others either.
    model.resumeRecording();
    EXPECT_FALSE(RecordingLock::isHeld(directory));
}
