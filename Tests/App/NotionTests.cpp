// Publishing to Notion as the model does it, against a service that remembers.
#include "App/AppModelTest.h"
#include "Support/Fakes/FakeHttpClient.h"

using namespace corvane;

namespace {

using WhenPageExists = AppModel::WhenPageExists;

const QString databaseID = QStringLiteral("0123456789abcdef0123456789ABCDEF");
const QString databaseURL = QStringLiteral(" https://www.notion.so/team/%1?v=1 ").arg(databaseID);

class NotionTest : public AppModelTest {
protected:
    NotionTest() {
        fixture.http = http;
        service.databases[databaseID.toLower()] = {.title = u"Meetings"_s,
                                                   .columns = {{u"Name"_s, u"title"_s},
                                                               {u"meeting_id"_s, u"rich_text"_s},
                                                               {u"Attendees"_s, u"multi_select"_s},
                                                               {u"summary"_s, u"rich_text"_s},
                                                               {u"Kind"_s, u"select"_s}}};
        fixture.tokens->saveNotionToken(service.token);
        for (const char* name : {"one", "two"}) {
            makeRun(name, name, name, name[0] == 'o' ? 200 : 100);
            data.write(QString::fromUtf8(name), runFiles::result, encodeTranscriptResult(speechResult(4)));
        }
        DataDirectoryBuilder::setModified(data.run(u"one"_s), 200);
        DataDirectoryBuilder::setModified(data.run(u"two"_s), 100);
    }
    AppModel& connected() {
        AppModel& model = fixture.start();
        select(model, "one");
        model.updateNotionDatabaseURL(databaseURL);
        EXPECT_TRUE(ModelFixture::resultOf(model.fetchNotionDatabaseTitle())) << status(model).toStdString();
        return model;
    }
    static bool sync(AppModel& model, WhenPageExists when = WhenPageExists::ask) {
        return ModelFixture::resultOf(model.syncSelectedMeetingToNotion(when));
    }
    static QString toast(AppModel& model) {
        const auto& shown = model.notion().notionToast();
        return shown ? (shown->isError ? u"! "_s : QString()) + shown->message : QString();
    }
    std::vector<bool> archived() const {
        std::vector<bool> all;
        for (const FakeNotionPage& page : service.pages)
            all.push_back(page.archived);
        return all;
    }

    FakeNotionService service;
    std::shared_ptr<FakeHttpClient> http = std::make_shared<FakeHttpClient>(service);
};

TEST_F(NotionTest, ADatabaseIsReadAndBlankChoicesAreFilled) {
    AppModel& model = fixture.start();
    EXPECT_FALSE(ModelFixture::resultOf(model.fetchNotionDatabaseTitle()));
    EXPECT_EQ(status(model), u"Enter a Notion database URL");
    model.updateNotionDatabaseURL(u"no id"_s);
    EXPECT_FALSE(ModelFixture::resultOf(model.fetchNotionDatabaseTitle()));
    EXPECT_EQ(status(model), u"Failed to fetch Notion database: Invalid Notion database URL");
    model.updateNotionDatabaseURL(databaseURL);
    model.notion().updateNotionSummaryPropertyName(u"kind"_s);
    EXPECT_TRUE(ModelFixture::resultOf(model.fetchNotionDatabaseTitle()));
    EXPECT_EQ(status(model), u"Notion database ready");
    EXPECT_FALSE(model.notion().isFetchingNotionDatabase());
    QStringList columns;
    for (const NotionPropertyOption& property : model.notion().notionDatabaseProperties())
        columns.append(property.name);
    EXPECT_EQ(columns.join(QLatin1Char(',')), u"Attendees,Kind,meeting_id,Name,summary");

    AppModel& again = fixture.start(); // what was chosen is kept, the columns are not
    EXPECT_EQ(again.notion().notionDatabaseTitle(), u"Meetings");
    EXPECT_EQ(again.notion().notionMeetingIDPropertyName(), u"meeting_id");
    EXPECT_EQ(again.notion().notionParticipantsPropertyName(), u"Attendees");
    EXPECT_EQ(again.notion().notionSummaryPropertyName(), u"kind");
    EXPECT_TRUE(again.notion().notionDatabaseProperties().empty());
    EXPECT_TRUE(ModelFixture::until([&] { return again.notion().hasNotionToken(); }));
    EXPECT_FALSE(sync(again));
    EXPECT_EQ(toast(again),
              u"! Notion sync failed: Mapped Notion column Kind must be rich text or multi-select, not select");
    EXPECT_TRUE(service.pages.empty());
    again.updateNotionDatabaseURL(u"elsewhere"_s);
    EXPECT_TRUE(again.notion().notionDatabaseTitle().isEmpty());
    EXPECT_EQ(again.notion().notionSummaryPropertyName(), u"kind");

    EXPECT_TRUE(ModelFixture::resultOf(again.deleteNotionToken()));
    EXPECT_EQ(status(again), u"Notion disconnected");
    EXPECT_FALSE(ModelFixture::resultOf(again.fetchNotionDatabaseTitle()));
    EXPECT_EQ(status(again), u"Connect Notion first");
    EXPECT_TRUE(ModelFixture::resultOf(again.saveNotionToken(u" secret \n"_s)));
    EXPECT_EQ(status(again), u"Notion connected");
}

TEST_F(NotionTest, ASecondPressAsksAndEachAnswerIsKept) {
    AppModel& model = connected();
    model.updateSpeakerName(u"SPEAKER_00"_s, u"Ada"_s);
    ASSERT_TRUE(sync(model)) << status(model).toStdString();
    EXPECT_EQ(toast(model), u"Synced to Notion");
    ASSERT_EQ(service.pages.size(), 1U);
    EXPECT_EQ(service.pages[0].text(u"Name"_s), u"one");
    EXPECT_EQ(service.pages[0].text(u"meeting_id"_s), u"one");
    const QString first = model.notion().selectedNotionPageURL();
    EXPECT_FALSE(first.isEmpty());
    EXPECT_TRUE(model.openSelectedNotionPage());
    EXPECT_EQ(fixture.workspace->opened, QStringList(first));

    EXPECT_FALSE(sync(model));
    EXPECT_EQ(status(model), u"Notion page already exists");
    EXPECT_EQ(toast(model), u"Synced to Notion") << "the alert speaks instead";
    EXPECT_EQ(model.notion().pendingNotionReplacementPages().size(), 1U);
    EXPECT_TRUE(sync(model, WhenPageExists::createNew));
    EXPECT_TRUE(model.notion().pendingNotionReplacementPages().empty());
    EXPECT_NE(model.notion().selectedNotionPageURL(), first);
    EXPECT_TRUE(sync(model, WhenPageExists::replace));
    EXPECT_EQ(archived(), (std::vector<bool>{true, true, false}));

    // Where the search sees nothing the page of before is still known.
    model.notion().updateNotionMeetingIDPropertyName({});
    service.pages.back().properties.clear();
    service.pages.back().blocks.clear();
    EXPECT_FALSE(sync(model));
    ASSERT_EQ(model.notion().pendingNotionReplacementPages().size(), 1U);
    EXPECT_EQ(model.notion().pendingNotionReplacementPages()[0].title, u"Existing synced page");
    select(model, "two");
    EXPECT_TRUE(model.notion().selectedNotionPageURL().isEmpty());
    EXPECT_FALSE(model.openSelectedNotionPage());
    select(model, "one");
    EXPECT_FALSE(model.notion().selectedNotionPageURL().isEmpty());
}

TEST_F(NotionTest, WhatIsPublishedIsWhatWasOnScreen) {
    AppModel& model = connected();
    model.renameSelectedRun(u"First meeting"_s);
    http->hold();
    auto done = model.syncSelectedMeetingToNotion(WhenPageExists::ask);
    EXPECT_TRUE(ModelFixture::until([&] { return status(model) == u"Syncing to Notion"; }));
    EXPECT_TRUE(model.notion().isSyncingNotion());
    select(model, "two");
    EXPECT_TRUE(model.deleteMeeting(listed(model, "one"), false));
    http->release();
    EXPECT_TRUE(ModelFixture::resultOf(done));
    ASSERT_EQ(service.pages.size(), 1U);
    EXPECT_EQ(service.pages[0].text(u"Name"_s), u"First meeting");
    EXPECT_EQ(service.pages[0].text(u"meeting_id"_s), u"one");

    http->hold();
    const auto sent = http->requests.size();
    auto dropped = model.syncSelectedMeetingToNotion(WhenPageExists::ask);
    EXPECT_TRUE(ModelFixture::until([&] { return http->requests.size() > sent; }));
    fixture.stop(); // in the middle
    http->release();
    QCoreApplication::processEvents();
    EXPECT_TRUE(dropped.isCanceled());
    EXPECT_EQ(service.pages.size(), 1U);
}

TEST_F(NotionTest, WhatKeepsAMeetingFromBeingPublishedIsTold) {
    AppModel& model = fixture.start();
    select(model, "one");
    EXPECT_FALSE(sync(model));
    EXPECT_EQ(toast(model), u"! Choose a Notion database");
    model.updateNotionDatabaseURL(databaseURL);
    model.notion().updateNotionMeetingIDPropertyName(u"gone"_s);
    EXPECT_FALSE(sync(model));
    EXPECT_EQ(status(model), u"Notion sync failed: Mapped Notion column not found: gone");
    EXPECT_FALSE(model.notion().isSyncingNotion());
    service.token = u"another"_s;
    EXPECT_FALSE(sync(model));
    EXPECT_THAT(status(model).toStdString(), testing::StartsWith("Notion sync failed: "));
    fixture.tokens->deleteNotionToken();
    std::vector<bool> syncing;
    QObject::connect(&model.notion(), &NotionPart::isSyncingNotionChanged, &model,
                     [&] { syncing.push_back(model.notion().isSyncingNotion()); });
    EXPECT_FALSE(sync(model));
    EXPECT_EQ(syncing, (std::vector<bool>{true, false})) << "no second press while the token is read";
    EXPECT_EQ(toast(model), u"! Connect Notion first");
    fixture.tokens->setFailure(TokenStoreError(3, u"Locked."_s));
    EXPECT_FALSE(sync(model));
    EXPECT_EQ(toast(model), u"! Failed to read Notion token: Locked.");
    EXPECT_FALSE(ModelFixture::resultOf(model.fetchNotionDatabaseTitle()));
    EXPECT_EQ(status(model), u"Failed to read Notion token: Locked.");
    EXPECT_FALSE(model.notion().isFetchingNotionDatabase());
    QFile::remove(runFiles::in(data.run(u"one"_s), runFiles::result));
    model.refreshRun();
    EXPECT_FALSE(sync(model));
    EXPECT_EQ(toast(model), u"! No transcript to sync");
    const QUuid shown = model.notion().notionToast()->id;
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(ModelFixture::until([&] { return !model.notion().notionToast() || clock.elapsed() > 6000; }));
    EXPECT_GE(clock.elapsed(), 3900) << "the last one keeps its whole time";
    EXPECT_FALSE(model.notion().notionToast()) << shown.toString().toStdString();
}

} // namespace
