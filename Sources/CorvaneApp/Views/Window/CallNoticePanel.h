// One question in its panel. Made and destroyed by whoever asked; main thread.
#pragma once

#include "CorvaneCore/Interfaces/CallNotice.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariant>

namespace corvane {

class DesktopPreferences;

class CallNoticePanel final : public QObject, public CallNotice {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT)
    Q_PROPERTY(QVariantList buttons READ buttons CONSTANT)

public:
    // Shows the panel. One that cannot be made says why on standard error.
    CallNoticePanel(CallNoticeContent content, CallNotices::AnswerHandler onAnswer,
                    const DesktopPreferences& preferences);
    ~CallNoticePanel() override;

    [[nodiscard]] bool wasShown() const override { return m_wasShown; }
    [[nodiscard]] QQuickWindow* window() const { return m_window.get(); }

    [[nodiscard]] QString title() const { return m_content.title; }
    [[nodiscard]] QString subtitle() const { return m_content.subtitle; }
    [[nodiscard]] QVariantList buttons() const;
    // The first answer counts; it is told from the main loop.
    Q_INVOKABLE void answer(int answer);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CallNoticeContent m_content;
    CallNotices::AnswerHandler m_onAnswer;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    bool m_wasShown = false;
};

} // namespace corvane
