// The speakers panel over the model: its cards, the menu of known people, and what the controls of a card set off.
// Owned by the meeting detail, on the main thread.
#pragma once

#include "CorvaneApp/Views/RowListModel.h"
#include "CorvaneApp/Views/SpeakerCard.h"
#include "CorvaneApp/Views/SpeakersPanelModel.h"

namespace corvane {

class AppModel;

class SpeakerReviewModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(corvane::SpeakersPanelModel* panel READ panel CONSTANT)
    Q_PROPERTY(QAbstractItemModel* cards READ cards CONSTANT)
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged)
    Q_PROPERTY(QVariantList profileMenu READ profileMenu NOTIFY profileMenuChanged)

public:
    // Borrows the model, which outlives it.
    explicit SpeakerReviewModel(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] SpeakersPanelModel* panel() { return &m_panel; }
    [[nodiscard]] QAbstractItemModel* cards() { return &m_cards; }
    [[nodiscard]] const QString& summary() const { return m_summary; }
    [[nodiscard]] QVariantList profileMenu() const { return variantList(m_menu); }

    // Takes what the model holds now.
    void refresh();

    Q_INVOKABLE void toggleExamples(const QString& speaker);
    // `action` is that of a button of the card's link row.
    Q_INVOKABLE void press(const QString& speaker, int action);
    Q_INVOKABLE void setName(const QString& speaker, const QString& name);
    // `item` counts in profileMenu.
    Q_INVOKABLE void chooseFromProfileMenu(const QString& speaker, int item);

Q_SIGNALS:
    void summaryChanged();
    void profileMenuChanged();

private:
    [[nodiscard]] const SpeakerCard* card(const QString& speaker) const;

    AppModel& m_model;
    SpeakersPanelModel m_panel;
    ValueListModel<SpeakerCard> m_cards;
    QString m_summary;
    std::vector<ProfileMenuItem> m_menu;
};

} // namespace corvane
