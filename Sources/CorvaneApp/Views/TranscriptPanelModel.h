// The transcript panel: its rows, which one is being played, and the button that copies all of them and says so for a
// moment. Owned by the view, on the main thread.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneCore/Transcripts/SpeakerReview.h"

#include <QAbstractListModel>
#include <QTimer>

#include <functional>
#include <vector>

namespace corvane {

// Whether there is a sound file to play from.
enum class MeetingAudio { absent, present };

// The button by which a turn is played; in the accent colour and underlined while it is enabled.
[[nodiscard]] PanelButton timestampButton(const TranscriptDisplayGroup& turn, MeetingAudio audio);

// A row per speaker turn. What a row shows is made when it is asked for: a long meeting has thousands, a screen few.
class TranscriptRowsModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { startSeconds = Qt::UserRole, turnTimestamp, timestampHelp, canPlay, speakerName, turnText };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void setTurns(std::vector<TranscriptDisplayGroup> turns);
    void setNames(SpeakerNames names);
    void setAudio(MeetingAudio audio);
    [[nodiscard]] const std::vector<TranscriptDisplayGroup>& turns() const { return m_turns; }
    [[nodiscard]] const SpeakerNames& names() const { return m_names; }
    // The row in which a time lies, or the last one begun before it; -1 before the first.
    [[nodiscard]] int rowAt(double seconds) const;

private:
    void changed(std::initializer_list<int> roles);

    std::vector<TranscriptDisplayGroup> m_turns;
    SpeakerNames m_names;
    MeetingAudio m_audio = MeetingAudio::absent;
};

class TranscriptPanelModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QAbstractItemModel* rows READ rowsModel CONSTANT)
    Q_PROPERTY(bool transcriptCopied READ transcriptCopied NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(QString copyIconName READ copyIconName NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(QString copyAccessibilityLabel READ copyAccessibilityLabel NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(bool canCopy READ canCopy NOTIFY canCopyChanged)
    Q_PROPERTY(int playedRow READ playedRow NOTIFY playedRowChanged)

public:
    // Replaces what is on the clipboard, which belongs to the view toolkit.
    using PutOnClipboard = std::function<void(const QString& text)>;

    explicit TranscriptPanelModel(PutOnClipboard putOnClipboard, QObject* parent = nullptr);

    [[nodiscard]] static QString title();

    // Each to be called whenever its subject has changed. Another result begins with another list.
    void showResult(const TranscriptResult& result);
    void clear(); // gives back the memory of the rows
    void showNames(const SpeakerNames& names) { m_rows.setNames(names); }
    void showAudio(MeetingAudio audio) { m_rows.setAudio(audio); }
    // Marks the turn that is heard; none for a negative time.
    void showPlayed(double seconds);
    [[nodiscard]] TranscriptRowsModel& rows() { return m_rows; }
    [[nodiscard]] int playedRow() const { return m_playedRow; } // -1 for none

    // Copies the turns with the names on screen. Does nothing if nothing was said.
    Q_INVOKABLE void copyTranscript();
    Q_INVOKABLE void copyTurn(int row);
    // True from a copy until 1.2 seconds after the last one.
    [[nodiscard]] bool transcriptCopied() const { return m_copied.isActive(); }
    [[nodiscard]] QString copyIconName() const;
    [[nodiscard]] QString copyAccessibilityLabel() const;
    // Also if all segments are blank.
    [[nodiscard]] bool canCopy() const { return m_canCopy; }

Q_SIGNALS:
    void canCopyChanged();
    void playedRowChanged();
    void transcriptCopiedChanged();

private:
    [[nodiscard]] QAbstractItemModel* rowsModel() { return &m_rows; }
    void setCanCopy(bool can);
    void setPlayedRow(int row);

    PutOnClipboard m_putOnClipboard;
    TranscriptRowsModel m_rows;
    bool m_canCopy = false;
    int m_playedRow = -1;
    QTimer m_copied;
};

} // namespace corvane
