#include "CorvaneApp/Views/SpeakerCard.h"

#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Transcripts/SpeakerReview.h"

namespace corvane {

namespace {

PanelButton playButton(const TranscriptSpeaker& speaker, const SpeakerCardsState& state) {
    const bool isPlaying = state.playingSpeakerExamplesFor == speaker.speaker;
    PanelButton button;
    button.iconName = isPlaying ? QStringLiteral("pause.circle.fill") : QStringLiteral("play.circle");
    button.accessibilityLabel =
        (isPlaying ? PanelText::tr("Pause examples for %1") : PanelText::tr("Play examples for %1"))
            .arg(speaker.speaker);
    button.isEnabled = state.hasAudio && !speaker.examples.empty();
    return button;
}

SpeakerLinkRow identifiedRow(const SpeakerProfileAssignment& assignment) {
    PanelButton remove;
    remove.action = static_cast<int>(SpeakerAction::removeProfileTag);
    remove.iconName = QStringLiteral("xmark.circle.fill");
    remove.helpText = PanelText::tr("Remove profile tag");
    return {.state = SpeakerLinkRow::State::identified,
            .iconName = QStringLiteral("person.crop.circle.badge.checkmark"),
            .text = PanelText::tr("Identified as %1").arg(assignment.displayName),
            .buttons = {remove},
            .suggestion = std::nullopt};
}

SpeakerLinkRow suggestedRow(const SpeakerProfileMatchSuggestion& suggestion, const QLocale& locale) {
    PanelButton accept;
    accept.action = static_cast<int>(SpeakerAction::acceptSuggestion);
    accept.text = PanelText::tr("Accept");
    PanelButton reject;
    reject.action = static_cast<int>(SpeakerAction::rejectSuggestion);
    reject.text = PanelText::tr("Reject");
    return {
        .state = SpeakerLinkRow::State::suggested,
        .iconName = QStringLiteral("person.crop.circle.badge.questionmark"),
        .text =
            PanelText::tr("Suggested %1 · %2").arg(suggestion.displayName, locale.toString(suggestion.score, 'f', 2)),
        .buttons = {accept, reject},
        .suggestion = suggestion};
}

SpeakerLinkRow linkRow(const QString& speaker, const SpeakerCardsState& state) {
    const auto assignment = state.speakerProfileAssignments.find(speaker);
    if (assignment != state.speakerProfileAssignments.end())
        return identifiedRow(assignment->second);
    const auto suggestion = suggestedProfileMatch(speaker, state.speakerProfileMatches);
    return suggestion ? suggestedRow(*suggestion, state.locale) : SpeakerLinkRow{};
}

std::optional<SpeakerNameRow> nameRow(const QString& speaker, const SpeakerCardsState& state) {
    if (state.speakerProfileAssignments.contains(speaker))
        return std::nullopt;
    SpeakerNameRow row;
    row.label = PanelText::tr("Name");
    row.placeholder = PanelText::tr("Add speaker name");
    const auto name = state.speakerMappings.find(speaker);
    if (name != state.speakerMappings.end())
        row.text = name->second;
    row.profileMenu.text = PanelText::tr("Profiles");
    row.profileMenu.iconName = QStringLiteral("person.crop.circle.badge.plus");
    row.profileMenu.helpText = PanelText::tr("Create or attach a voice profile");
    row.profileMenu.isEnabled = state.isRunShown && !state.isUpdatingVoiceProfile;
    return row;
}

std::optional<SpeakerContextSection> contextSection(const QString& speaker, const TranscriptResult& result) {
    const auto context = speakerContext(speaker, result);
    if (!context)
        return std::nullopt;
    SpeakerContextSection section;
    section.title = context->shortLabel.isEmpty() ? PanelText::tr("Speaker context") : context->shortLabel;
    for (const QString& text : {context->shortLabel, context->context}) {
        if (!text.isEmpty())
            section.texts.push_back(text);
    }
    section.notableLines = deduplicatedNotableLines(*context);
    return section;
}

QString statusIcon(VoiceProfileUpdateMessage::Kind kind) {
    switch (kind) {
    case VoiceProfileUpdateMessage::Kind::success:
        return QStringLiteral("checkmark.circle.fill");
    case VoiceProfileUpdateMessage::Kind::failure:
        return QStringLiteral("exclamationmark.triangle.fill");
    case VoiceProfileUpdateMessage::Kind::running:
        break;
    }
    return {};
}

std::optional<SpeakerStatusLine> statusLine(const QString& speaker, const VoiceProfileUpdateMessages& messages) {
    const auto message = messages.find(speaker);
    if (message == messages.end())
        return std::nullopt;
    return SpeakerStatusLine{
        .kind = message->second.kind, .iconName = statusIcon(message->second.kind), .text = message->second.text};
}

} // namespace

std::vector<SpeakerCard> speakerCards(const TranscriptResult& result, const SpeakerCardsState& state) {
    std::vector<SpeakerCard> cards;
    cards.reserve(result.speakers.size());
    for (const TranscriptSpeaker& speaker : result.speakers)
        cards.push_back({.playButton = playButton(speaker, state),
                         .title = displayName(speaker.speaker, state.speakerMappings),
                         .speaker = speaker.speaker,
                         .durationText = formatDuration(speaker.duration),
                         .link = linkRow(speaker.speaker, state),
                         .name = nameRow(speaker.speaker, state),
                         .context = contextSection(speaker.speaker, result),
                         .status = statusLine(speaker.speaker, state.voiceProfileUpdateMessages)});
    return cards;
}

QString speakerSummary(const TranscriptResult& result) {
    return result.llm ? result.llm->summary : QString();
}

std::vector<ProfileMenuItem> profileMenuItems(const std::vector<SpeakerProfileSummary>& profiles) {
    std::vector<ProfileMenuItem> items{{.kind = ProfileMenuItem::Kind::createProfile,
                                        .title = PanelText::tr("Create Profile From This Voice"),
                                        .isEnabled = true,
                                        .profile = std::nullopt}};
    if (!profiles.empty())
        items.emplace_back();
    for (const SpeakerProfileSummary& summary : profiles)
        items.push_back({.kind = ProfileMenuItem::Kind::profile,
                         .title = summary.profile.displayName,
                         .isEnabled = summary.profile.enabled,
                         .profile = summary.profile});
    return items;
}

} // namespace corvane
