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

// How the speaker stands to a known person.
struct SpeakerLinkRow {
    enum class State { none, identified, suggested };

    State state = State::none;
    QString iconName;
    QString text;
    std::vector<PanelButton> buttons;                        // identified: remove; suggested: accept, reject
    std::optional<SpeakerProfileMatchSuggestion> suggestion; // what the two answer

    friend bool operator==(const SpeakerLinkRow&, const SpeakerLinkRow&) = default;
};

// Not there while the speaker is identified: the person's name is the name.
struct SpeakerNameRow {
    QString label;
    QString placeholder;
    QString text; // as it was typed
    PanelButton profileMenu;

    friend bool operator==(const SpeakerNameRow&, const SpeakerNameRow&) = default;
};

// A section that opens; SpeakersPanelModel knows which ones are open.
struct SpeakerContextSection {
    QString title;
    std::vector<QString> texts; // the short label and the context, without the empty ones
    std::vector<QString> notableLines;

    friend bool operator==(const SpeakerContextSection&, const SpeakerContextSection&) = default;
};

struct SpeakerStatusLine {
    VoiceProfileUpdateMessage::Kind kind = VoiceProfileUpdateMessage::Kind::running;
    QString iconName; // empty while it is running: the view turns something
    QString text;

    friend bool operator==(const SpeakerStatusLine&, const SpeakerStatusLine&) = default;
};

// From top to bottom.
struct SpeakerCard {
    PanelButton playButton;
    QString title;
    QString speaker; // the raw label, by which every operation of the card is called
    QString durationText;
    SpeakerLinkRow link;
    std::optional<SpeakerNameRow> name;
    std::optional<SpeakerContextSection> context;
    std::optional<SpeakerStatusLine> status;

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
    enum class Kind { createProfile, divider, profile };

    Kind kind = Kind::divider;
    QString title;
    bool isEnabled = true;
    std::optional<SpeakerProfile> profile;

    friend bool operator==(const ProfileMenuItem&, const ProfileMenuItem&) = default;
};

// In the order of the profiles.
[[nodiscard]] std::vector<ProfileMenuItem> profileMenuItems(const std::vector<SpeakerProfileSummary>& profiles);

} // namespace corvane
