// An assistive technology as a test needs one: on the accessibility bus, in a process that is not Corvane's, it reads
// the tree that the application shows there, acts on what it finds, and remembers what the application announces. Main
// thread.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonObject>
#include <QObject>
#include <QStringList>

#include <vector>

namespace corvane {

class ScreenReader final : public QObject {
    Q_OBJECT

public:
    // Of the session bus, which leads to the bus of the accessibility.
    explicit ScreenReader(const QString& sessionBus);
    ~ScreenReader() override;

    [[nodiscard]] bool works() const { return m_works; }

    // The newest application, from its root: `path`, `role`, `name`, `description`, `states`, `interfaces` and
    // `children` of each element, and where it has them `actions`, `text` and `value`. Empty without an application.
    [[nodiscard]] QJsonObject tree();

    // On the element of this path. False if it does not say that it did so.
    [[nodiscard]] bool act(const QString& path, const QString& action);
    [[nodiscard]] bool focus(const QString& path);
    [[nodiscard]] bool write(const QString& path, const QString& text);

    // What has come as inserted or removed text since the last time.
    [[nodiscard]] QStringList takeChangedTexts();

public Q_SLOTS:
    void hearText(const QDBusMessage& event);

private:
    struct Element {
        QString path;
        std::size_t parent = 0;
        QJsonObject facts;
    };
    [[nodiscard]] QDBusMessage ask(const QString& service, const QString& path, const QString& interface,
                                   const QString& method, const QVariantList& arguments = {});
    [[nodiscard]] QDBusPendingCall askLater(const QString& path, const QString& interface, const QString& method,
                                            const QVariantList& arguments = {});
    [[nodiscard]] QString newestApplication();
    void describe(std::vector<Element>& elements, std::size_t from);
    void addContents(std::vector<Element>& elements);

    QDBusConnection m_bus;
    QString m_application;
    QStringList m_changedTexts;
    bool m_works = false;
};

} // namespace corvane
