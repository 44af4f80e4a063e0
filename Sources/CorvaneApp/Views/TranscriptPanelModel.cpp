#include "CorvaneApp/Views/TranscriptPanelModel.h"

#include "CorvaneApp/Views/PanelText.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane {

using namespace std::chrono_literals;

PanelButton timestampButton(const TranscriptDisplayGroup& turn, MeetingAudio audio) {
    PanelButton button;
    button.text = timestampText(turn.start);
    button.helpText = PanelText::tr("Play meeting from %1").arg(button.text);
    button.isEnabled = audio == MeetingAudio::present;
    return button;
}

int TranscriptRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_turns.size());
}

QVariant TranscriptRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount({}))
        return {};
    const TranscriptDisplayGroup& turn = m_turns[static_cast<std::size_t>(index.row())];
    switch (role) {
    case startSeconds:
        return turn.start;
    case turnTimestamp:
        return timestampButton(turn, m_audio).text;
    case timestampHelp:
        return timestampButton(turn, m_audio).helpText;
    case canPlay:
        return timestampButton(turn, m_audio).isEnabled;
    case speakerName:
        return displayName(turn.speaker, m_names);
    case turnText:
        return turn.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptRowsModel::roleNames() const {
    return {{startSeconds, "startSeconds"}, {turnTimestamp, "timestampText"}, {timestampHelp, "timestampHelp"},
            {canPlay, "canPlay"},           {speakerName, "speakerName"},     {turnText, "turnText"}};
}

void TranscriptRowsModel::setTurns(std::vector<TranscriptDisplayGroup> turns) {
    if (turns == m_turns)
        return;
    beginResetModel();
    m_turns = std::move(turns);
    m_turns.shrink_to_fit();
    endResetModel();
}

void TranscriptRowsModel::setNames(SpeakerNames names) {
    if (names == m_names)
        return;
    m_names = std::move(names);
    changed({speakerName});
}

void TranscriptRowsModel::setAudio(MeetingAudio audio) {
    if (audio == m_audio)
        return;
    m_audio = audio;
    changed({canPlay});
}

int TranscriptRowsModel::rowAt(double seconds) const {
    const auto next =
        std::upper_bound(m_turns.begin(), m_turns.end(), seconds,
                         [](double time, const TranscriptDisplayGroup& turn) { return time < turn.start; });
    return static_cast<int>(std::distance(m_turns.begin(), next)) - 1;
}

void TranscriptRowsModel::changed(std::initializer_list<int> roles) {
    if (!m_turns.empty())
        Q_EMIT dataChanged(index(0), index(rowCount({}) - 1), roles);
}

TranscriptPanelModel::TranscriptPanelModel(PutOnClipboard putOnClipboard, QObject* parent)
    : QObject(parent), m_putOnClipboard(std::move(putOnClipboard)) {
    m_copied.setSingleShot(true);
    m_copied.setInterval(1200ms);
    connect(&m_copied, &QTimer::timeout, this, &TranscriptPanelModel::transcriptCopiedChanged);
}

QString TranscriptPanelModel::title() {
    return PanelText::tr("Transcript");
}

void TranscriptPanelModel::showResult(const TranscriptResult& result) {
    m_rows.setTurns(groupedTranscript(result.segments));
    setCanCopy(!result.segments.empty());
}

void TranscriptPanelModel::clear() {
    m_rows.setTurns({});
    setCanCopy(false);
    setPlayedRow(-1);
}

void TranscriptPanelModel::showPlayed(double seconds) {
    setPlayedRow(seconds < 0 ? -1 : m_rows.rowAt(seconds));
}

void TranscriptPanelModel::copyTranscript() {
    const QString text = transcriptClipboardText(m_rows.turns(), m_rows.names());
    if (text.isEmpty())
        return;
    m_putOnClipboard(text);
    const bool wasCopied = transcriptCopied();
    m_copied.start();
    if (!wasCopied)
        Q_EMIT transcriptCopiedChanged();
}

void TranscriptPanelModel::copyTurn(int row) {
    const auto& turns = m_rows.turns();
    if (row >= 0 && static_cast<std::size_t>(row) < turns.size())
        m_putOnClipboard(transcriptClipboardText({turns[static_cast<std::size_t>(row)]}, m_rows.names()));
}

QString TranscriptPanelModel::copyIconName() const {
    return transcriptCopied() ? QStringLiteral("checkmark") : QStringLiteral("doc.on.doc");
}

QString TranscriptPanelModel::copyAccessibilityLabel() const {
    return transcriptCopied() ? PanelText::tr("Transcript copied") : PanelText::tr("Copy transcript");
}

void TranscriptPanelModel::setCanCopy(bool can) {
    if (m_canCopy == can)
        return;
    m_canCopy = can;
    Q_EMIT canCopyChanged();
}

void TranscriptPanelModel::setPlayedRow(int row) {
    if (m_playedRow == row)
        return;
    m_playedRow = row;
    Q_EMIT playedRowChanged();
}

} // namespace corvane
