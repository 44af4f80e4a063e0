#include "App/WindowTest.h"

#include "CorvaneApp/Translations/Translations.h"
#include "CorvaneApp/Views/TrayMenu.h"

using namespace corvane;

namespace {

class TranslationTest : public WindowTest {
protected:
    void showIn(const QStringList& languages) {
        translations.emplace(languages);
        show();
    }
    // The texts on the screen that are not all to be seen: cut short, or beyond the edge of what they stand in.
    [[nodiscard]] QStringList cutTexts() const {
        QStringList cut;
        collect(*window().contentItem(), cut);
        return cut;
    }

    std::optional<Translations> translations;

private:
    void collect(const QQuickItem& parent, QStringList& cut) const {
        for (QQuickItem* child : parent.childItems()) {
            if (!child->isVisible() || child->opacity() <= 0)
                continue;
            const QString text = child->property("text").toString();
            if (child->inherits("QQuickText") && !text.isEmpty() &&
                (child->property("truncated").toBool() || isTooLarge(*child) || leavesItsPlace(*child)))
                cut.append(text);
            collect(*child, cut);
        }
    }
    static bool isTooLarge(const QQuickItem& text) {
        return text.property("contentWidth").toReal() > text.width() + 1 ||
               text.property("contentHeight").toReal() > text.height() + 1;
    }
    // To the side: downwards there is more to scroll.
    [[nodiscard]] bool leavesItsPlace(const QQuickItem& text) const {
        for (const QQuickItem* place = text.parentItem(); place; place = place->parentItem()) {
            const QRectF area = text.mapRectToItem(place, QRectF(0, 0, text.width(), text.height()));
            const bool bounds = place->clip() || place->inherits("QQuickAbstractButton") || !place->parentItem();
            if (bounds && (area.left() < -1 || area.right() > place->width() + 1))
                return true;
        }
        return false;
    }
};

} // namespace

TEST(Translations, TheFirstLanguageThatCorvaneSpeaksIsTaken) {
    EXPECT_EQ(translationFor({u"fr-CA"_s, u"fr-Latn-CA"_s, u"en"_s}), u"fr");
    EXPECT_EQ(translationFor({u"de-DE"_s, u"de"_s, u"fr-FR"_s}), u"fr");
    EXPECT_EQ(translationFor({u"en"_s, u"en-US"_s, u"fr"_s}), std::nullopt);
    EXPECT_EQ(translationFor({u"C"_s, u"fr"_s}), std::nullopt);
    EXPECT_EQ(translationFor({u"de-DE"_s, u"frr"_s}), std::nullopt);
    EXPECT_EQ(translationFor({}), std::nullopt);
}

TEST_F(TranslationTest, TheWindowIsInEnglishForThoseWhoReadEnglishFirst) {
    showIn({u"en-GB"_s, u"fr-FR"_s});
    EXPECT_NE(find(u"Speaker Profiles"_s), nullptr);
}

TEST_F(TranslationTest, TheWindowSpeaksFrenchAndTheFilesDoNot) {
    makeRun("run", "Weekly", "meeting-1", 1'700'000'000);
    showIn({u"fr-FR"_s, u"fr"_s});
    EXPECT_NE(find(u"Nouvel enregistrement"_s), nullptr);
    EXPECT_NE(find(u"Paramètres"_s), nullptr);
    EXPECT_FALSE(has(u"New Recording"_s));
    EXPECT_EQ(model->status().statusMessage(), u"Terminé");
    EXPECT_EQ(trayMenu(RecordingState::Kind::recording, Finishing::no).items.front().text, u"Arrêter l’enregistrement");

    model->startRecording(std::nullopt);
    EXPECT_EQ(model->status().statusMessage(), u"Enregistrement en cours");
    const auto draft = readMeetingDraft(data.paths.meeting(*model->recording().currentRecordingMeetingID()));
    ASSERT_TRUE(draft);
    EXPECT_TRUE(draft->title.startsWith(u"Meeting ")) << draft->title.toStdString();
    EXPECT_EQ(draft->recordingStatus, u"recording");
}

TEST_F(TranslationTest, NoFrenchTextIsCutShort) {
    makeRun("run", "Weekly", "meeting-1", 1'700'000'000);
    showIn({u"fr"_s});
    for (const QSize size : {QSize(1100, 760), window().minimumSize()}) {
        window().resize(size);
        for (const SidebarItem& item :
             {SidebarItem::meeting(u"meeting-1"_s), SidebarItem::speakerProfiles(), SidebarItem::settings()}) {
            model->selectSidebarItem(item);
            EXPECT_TRUE(loopUntil([this] { return cutTexts().isEmpty(); }))
                << size.width() << ", " << static_cast<int>(item.kind) << ": "
                << cutTexts().join(u" | "_s).toStdString();
        }
    }
    press(Qt::Key_F1);
    EXPECT_TRUE(loopUntil([this] { return has(u"Raccourcis clavier"_s) && cutTexts().isEmpty(); }))
        << cutTexts().join(u" | "_s).toStdString();
}
