// The speakers panel as values: its summary, one card per speaker, and the menu by which a voice gets a profile. Pure
// functions of what the model holds; the view draws the result and decides nothing.
#pragma once

#include "CorvaneApp/Model/SpeakerReviewPart.h"
#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

#include <QLocale>

#include <optional>
#include <vector>

namespace corvane {

// What the buttons of a card's link row are for; the number in PanelButton::action.
enum class SpeakerAction { none, removeProfileTag, acceptSuggestion, rejectSuggestion };

// How the speaker stands to a known person.
struct SpeakerLinkRow {
    Q_GADGET
    Q_PROPERTY(bool isShown READ isShown)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QVariantList buttons READ buttonList)

public:
    enum class State { none, identified, suggested };

    State state = State::none;
    QString iconName;
    QString text;
    std::vector<PanelButton> buttons;                        // identified: remove; suggested: accept, reject
    std::optional<SpeakerProfileMatchSuggestion> suggestion; // what the two answer

    [[nodiscard]] bool isShown() const { return state != State::none; }
    [[nodiscard]] QVariantList buttonList() const { return variantList(buttons); }
    friend bool operator==(const SpeakerLinkRow&, const SpeakerLinkRow&) = default;
};

// Not there while the speaker is identified: the person's name is the name.
struct SpeakerNameRow {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString placeholder MEMBER placeholder)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(corvane::PanelButton profileMenu MEMBER profileMenu)

public:
    QString label;
    QString placeholder;
    QString text; // as it was typed
    PanelButton profileMenu;

    friend bool operator==(const SpeakerNameRow&, const SpeakerNameRow&) = default;
};

// A section that opens; SpeakersPanelModel knows which ones are open.
struct SpeakerContextSection {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QStringList texts READ textList)
    Q_PROPERTY(QStringList notableLines READ notableLineList)

public:
    QString title;
    std::vector<QString> texts; // the short label and the context, without the empty ones
    std::vector<QString> notableLines;

    [[nodiscard]] QStringList textList() const { return {texts.begin(), texts.end()}; }
    [[nodiscard]] QStringList notableLineList() const { return {notableLines.begin(), notableLines.end()}; }
    friend bool operator==(const SpeakerContextSection&, const SpeakerContextSection&) = default;
};

struct SpeakerStatusLine {
    Q_GADGET
    Q_PROPERTY(bool isRunning READ isRunning)
    Q_PROPERTY(bool isFailure READ isFailure)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString text MEMBER text)

public:
    VoiceProfileUpdateMessage::Kind kind = VoiceProfileUpdateMessage::Kind::running;
    QString iconName; // empty while it is running: the view turns something
    QString text;

    [[nodiscard]] bool isRunning() const { return kind == VoiceProfileUpdateMessage::Kind::running; }
    [[nodiscard]] bool isFailure() const { return kind == VoiceProfileUpdateMessage::Kind::failure; }
    friend bool operator==(const SpeakerStatusLine&, const SpeakerStatusLine&) = default;
};

// From top to bottom.
struct SpeakerCard {
    Q_GADGET
    Q_PROPERTY(corvane::PanelButton playButton MEMBER playButton)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString speaker MEMBER speaker)
    Q_PROPERTY(QString durationText MEMBER durationText)
    Q_PROPERTY(corvane::SpeakerLinkRow link MEMBER link)
    Q_PROPERTY(QVariant name READ nameValue)
    Q_PROPERTY(QVariant context READ contextValue)
    Q_PROPERTY(QVariant status READ statusValue)

public:
    PanelButton playButton;
    QString title;
    QString speaker; // the raw label, by which every operation of the card is called
    QString durationText;
    SpeakerLinkRow link;
    std::optional<SpeakerNameRow> name;
    std::optional<SpeakerContextSection> context;
    std::optional<SpeakerStatusLine> status;

    // Invalid where there is none.
    [[nodiscard]] QVariant nameValue() const { return name ? QVariant::fromValue(*name) : QVariant(); }
    [[nodiscard]] QVariant contextValue() const { return context ? QVariant::fromValue(*context) : QVariant(); }
    [[nodiscard]] QVariant statusValue() const { return status ? QVariant::fromValue(*status) : QVariant(); }
    friend bool operator==(const SpeakerCard&, const SpeakerCard&) = default;
};

// What the cards depend on beside the result; refers to the model and does not outlive the call.
struct SpeakerCardsState {
    const SpeakerNames& speakerMappings;
    const SpeakerProfileAssignments& speakerProfileAssignments;
    const SpeakerProfileMatches& speakerProfileMatches;
    const VoiceProfileUpdateMessages& voiceProfileUpdateMessages;
    std::optional<QString> playingSpeakerExamplesFor;
    bool hasAudio = false;
    bool isRunShown = false;
    bool isUpdatingVoiceProfile = false;
    QLocale locale; // the user's; scores are written in it
};

// In the order of the result.
[[nodiscard]] std::vector<SpeakerCard> speakerCards(const TranscriptResult& result, const SpeakerCardsState& state);

// What stands above the cards; nothing is drawn for an empty text.
[[nodiscard]] QString speakerSummary(const TranscriptResult& result);

struct ProfileMenuItem {
    Q_GADGET
    Q_PROPERTY(bool isDivider READ isDivider)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(bool isEnabled MEMBER isEnabled)

public:
    enum class Kind { createProfile, divider, profile };

    Kind kind = Kind::divider;
    QString title;
    bool isEnabled = true;
    std::optional<SpeakerProfile> profile;

    [[nodiscard]] bool isDivider() const { return kind == Kind::divider; }
    friend bool operator==(const ProfileMenuItem&, const ProfileMenuItem&) = default;
};

// In the order of the profiles.
[[nodiscard]] std::vector<ProfileMenuItem> profileMenuItems(const std::vector<SpeakerProfileSummary>& profiles);

} // namespace corvane
