#include "CorvaneApp/Views/Window/CallNoticePanel.h"

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneApp/Views/Window/ActiveScreen.h"
#include "CorvaneApp/Views/Window/Appearance.h"
#include "CorvaneApp/Views/Window/Compositing.h"
#include "CorvaneApp/Views/Window/PanelCallNotices.h"
#include "CorvaneApp/Views/Window/ViewEngine.h"

#include <QEvent>
#include <QQmlComponent>
#include <QScreen>

#include <iostream>
#include <utility>

namespace corvane {

CallNoticePanel::CallNoticePanel(CallNoticeContent content, CallNotices::AnswerHandler onAnswer,
                                 const DesktopPreferences& preferences)
    : m_content(std::move(content)), m_onAnswer(std::move(onAnswer)), m_engine(makeViewEngine()) {
    QScreen* const screen = activeScreen(); // that of the call
    QQmlComponent component(m_engine.get(), QUrl(QStringLiteral("qrc:/Corvane/CallNoticeWindow.qml")));
    QObject* made = component.createWithInitialProperties({
        {QStringLiteral("notice"), QVariant::fromValue<QObject*>(this)},
        {QStringLiteral("frame"), QRectF(callNoticeFrame(screen ? screen->availableGeometry() : QRect()))},
        {QStringLiteral("isComposited"), isComposited()},
        {QStringLiteral("isDark"), isDark(preferences)},
        {QStringLiteral("isMotionReduced"), preferences.isMotionReduced()},
    });
    m_window.reset(qobject_cast<QQuickWindow*>(made));
    if (!m_window) {
        delete made;
        std::cerr << "corvane: the question cannot be shown: " << component.errorString().toStdString() << std::endl;
        return;
    }
    if (screen)
        m_window->setScreen(screen);
    m_window->installEventFilter(this);
    m_window->show();
}

CallNoticePanel::~CallNoticePanel() {
    if (m_window)
        m_window->removeEventFilter(this);
}

QVariantList CallNoticePanel::buttons() const {
    std::vector<PanelButton> buttons;
    for (const CallNoticeButton& one : m_content.buttons) {
        PanelButton button;
        button.text = one.title;
        button.isProminent = one.answer == CallNoticeAnswer::record;
        if (button.isProminent)
            button.iconName = QStringLiteral("record.circle");
        button.action = static_cast<int>(one.answer);
        buttons.push_back(button);
    }
    return variantList(buttons);
}

// Never from within the view, which whoever is told may take down.
void CallNoticePanel::answer(int answer) {
    if (!m_onAnswer)
        return;
    QMetaObject::invokeMethod(
        this,
        [onAnswer = std::exchange(m_onAnswer, nullptr), answer] { onAnswer(static_cast<CallNoticeAnswer>(answer)); },
        Qt::QueuedConnection);
}

bool CallNoticePanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && m_window && m_window->isExposed())
        m_wasShown = true;
    else if (event->type() == QEvent::Close)
        answer(static_cast<int>(CallNoticeAnswer::closed));
    return QObject::eventFilter(watched, event);
}

} // namespace corvane
