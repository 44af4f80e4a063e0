#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneApp/Views/RowListModel.h"
#include "CorvaneApp/Views/SpeakerProfileEditing.h"
#include "CorvaneApp/Views/SpeakerProfileRows.h"

#include <gmock/gmock.h>

using namespace corvane;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

SpeakerProfileSummary person(const QString& name, int created, std::int64_t meetings, std::optional<int> seen) {
    SpeakerProfileSummary summary;
    summary.profile.id = QUuid::createUuid();
    summary.profile.displayName = name;
    summary.profile.createdAt = QDateTime::fromSecsSinceEpoch(created, Qt::UTC);
    summary.meetingCount = meetings;
    if (seen)
        summary.lastSeenAt = QDateTime::fromSecsSinceEpoch(*seen, Qt::UTC);
    return summary;
}

QStringList namesIn(SpeakerProfileSortMode mode, const std::vector<SpeakerProfileSummary>& people) {
    QStringList names;
    for (const auto& summary : sortedSpeakerProfiles(people, mode, QLocale(QLocale::English)))
        names.append(summary.profile.displayName);
    return names;
}

// A row over one stored person, and what it told in order.
struct EditedRow {
    SpeakerProfile stored{QUuid::createUuid(), u"Ada"_s, u"Chair"_s, true, {}, {}};
    bool isKnown = true;
    QStringList told;
    SpeakerProfileEditing row{stored, callbacks(), 20ms};

    SpeakerProfileEditing::Callbacks callbacks() {
        return {.stored = [this] { return isKnown ? std::optional(stored) : std::nullopt; },
                .onUpdate =
                    [this](const SpeakerProfile&, const QString& name, const QString& notes, bool enabled) {
                        told.append(name + u'|' + notes + (enabled ? u"|on"_s : u"|off"_s));
                        stored.displayName = name;
                        stored.notes = notes;
                        stored.enabled = enabled;
                    },
                .onToggle =
                    [this](const SpeakerProfile&, bool enabled) {
                        told.append(enabled ? u"on"_s : u"off"_s);
                        stored.enabled = enabled;
                    }};
    }
};

} // namespace

TEST(SpeakerProfileSorting, EveryOrderPutsTheUnheardAndTheEqualWhereTheyBelong) {
    // As the store gives them: by name.
    const std::vector people{person(u"ada"_s, 30, 2, 100), person(u"Bea"_s, 10, 0, std::nullopt),
                             person(u"Cyd"_s, 30, 2, 300), person(u"Dan"_s, 20, 5, 200)};
    using enum SpeakerProfileSortMode;
    EXPECT_THAT(namesIn(createdDescending, people), ElementsAre(u"ada"_s, u"Cyd"_s, u"Dan"_s, u"Bea"_s));
    EXPECT_THAT(namesIn(createdAscending, people), ElementsAre(u"Bea"_s, u"Dan"_s, u"ada"_s, u"Cyd"_s));
    EXPECT_THAT(namesIn(lastSeenDescending, people), ElementsAre(u"Cyd"_s, u"Dan"_s, u"ada"_s, u"Bea"_s));
    EXPECT_THAT(namesIn(lastSeenAscending, people), ElementsAre(u"ada"_s, u"Dan"_s, u"Cyd"_s, u"Bea"_s));
    EXPECT_THAT(namesIn(footprintDescending, {people[2], people[0], people[3], people[1]}),
                ElementsAre(u"Dan"_s, u"ada"_s, u"Cyd"_s, u"Bea"_s));
    EXPECT_THAT(namesIn(footprintAscending, {people[2], people[0], people[3], people[1]}),
                ElementsAre(u"Bea"_s, u"ada"_s, u"Cyd"_s, u"Dan"_s));
    for (const PickerChoice& choice : speakerProfileSortChoices())
        EXPECT_EQ(rawText(speakerProfileSortMode(choice.value).value()), choice.value);
}

TEST(SpeakerProfileRow, FiguresOfTheNeverHeardAndOfTheHeard) {
    const auto texts = [](const SpeakerProfileSummary& summary) {
        QStringList made;
        for (const SpeakerProfileFigure& figure : speakerProfileFigures(summary, QLocale(QLocale::German)))
            made.append(figure.text);
        return made;
    };
    EXPECT_THAT(texts(person(u"New"_s, 0, 0, std::nullopt)),
                ElementsAre(u"0"_s, u"0m 0s"_s, u"Never"_s, u"-"_s, u"0"_s));
    SpeakerProfileSummary heard = person(u"Ada"_s, 0, 1234, 0);
    heard.lastSeenAt = QDateTime(QDate(2026, 3, 9), QTime(16, 5, 59));
    heard.totalSpeechSeconds = 7259.999;
    heard.latestMatchScore = 0.876;
    heard.observationCount = 7;
    EXPECT_THAT(texts(heard), ElementsAre(u"1234"_s, u"120m 59s"_s, u"9. März 2026, 16:05"_s, u"0,88"_s, u"7"_s));
}

TEST(SpeakerProfileEditing, SavesAMomentAfterTheLastKeyAndNothingWithoutAName) {
    EditedRow edited;
    edited.row.setDisplayName(u"Ada L"_s);
    edited.row.setDisplayName(u" Ada Lovelace\n"_s);
    EXPECT_THAT(edited.told, IsEmpty());
    EXPECT_TRUE(loopUntil([&] { return !edited.told.isEmpty(); }));
    EXPECT_THAT(edited.told, ElementsAre(u"Ada Lovelace|Chair|on"_s));
    edited.row.setDisplayName(u" \t"_s);
    edited.row.setNotes(u"never stored"_s);
    edited.row.finish();
    EXPECT_EQ(edited.told.size(), 1);
}

TEST(SpeakerProfileEditing, AToggleGoesFirstAndWhatWaitsCarriesIt) {
    EditedRow edited;
    edited.row.setNotes(u"Chairwoman"_s);
    edited.row.toggle(false);
    edited.row.finish();
    EXPECT_THAT(edited.told, ElementsAre(u"off"_s, u"Ada|Chairwoman|off"_s));
}

TEST(SpeakerProfileEditing, ARowThatGoesUndoesNothingThatCameFromElsewhere) {
    EditedRow lookedAt;
    lookedAt.stored.displayName = u"Renamed elsewhere"_s;
    lookedAt.row.finish();
    EXPECT_THAT(lookedAt.told, IsEmpty());
    EditedRow deleted;
    deleted.row.setNotes(u"too late"_s);
    deleted.isKnown = false;
    deleted.row.toggle(false);
    deleted.row.finish();
    EXPECT_THAT(deleted.told, IsEmpty());
}

TEST(RowList, ARowThatGoesFarMovesAlone) {
    ValueListModel<PickerChoice> list([](const PickerChoice& choice) { return choice.value; });
    const auto rows = [](const QString& order) {
        std::vector<PickerChoice> made(static_cast<std::size_t>(order.size()));
        for (qsizetype i = 0; i < order.size(); ++i)
            made[static_cast<std::size_t>(i)].value = order[i];
        return made;
    };
    int moves = 0;
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, &list, [&] { ++moves; });
    list.update(rows(u"abcdefgh"_s));
    for (const auto& order : {u"bcdefgah"_s, u"abcdefgh"_s, u"hgfedcba"_s, u"xcba"_s, u"aybzcx"_s}) {
        moves = 0;
        list.update(rows(order));
        EXPECT_EQ(list.rows(), rows(order)) << order.toStdString();
        if (order.contains(u"cdefg")) {
            EXPECT_EQ(moves, 1) << order.toStdString();
        }
    }
}
