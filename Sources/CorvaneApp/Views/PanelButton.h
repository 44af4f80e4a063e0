// A control of a panel as the view is to draw it. Texts that are empty are not drawn. Plain value.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <vector>

namespace corvane {

struct PanelButton {
    Q_GADGET
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString helpText MEMBER helpText)
    Q_PROPERTY(QString accessibilityLabel MEMBER accessibilityLabel)
    Q_PROPERTY(bool isEnabled MEMBER isEnabled)
    Q_PROPERTY(bool isProminent MEMBER isProminent)
    Q_PROPERTY(int action MEMBER action)

public:
    QString text;
    QString iconName; // of a symbol; the view has a picture for each
    QString helpText;
    QString accessibilityLabel;
    bool isEnabled = true;
    bool isProminent = false;
    int action = 0; // what the panel's model is told when it is pressed; a number of that model's own

    friend bool operator==(const PanelButton&, const PanelButton&) = default;
};

// Values as the view language takes a list.
template<typename Value>
[[nodiscard]] QVariantList variantList(const std::vector<Value>& values) {
    QVariantList list;
    list.reserve(static_cast<qsizetype>(values.size()));
    for (const Value& value : values)
        list.append(QVariant::fromValue(value));
    return list;
}

} // namespace corvane
