// What every part of the model is: an object on the main thread that holds the fields of one subject. A field has one
// writer; a change is announced before it takes effect and again after it, and a value equal to the present one changes
// nothing. Parts know neither the model nor each other.
#pragma once

#include <QObject>

#include <utility>

namespace corvane {

class ModelPart : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // Before a field changes. The part's own signal for the field follows when it has changed.
    void aboutToChange(const char* field);

protected:
    template<typename Part, typename T>
    void publish(T& field, T value, const char* name, void (Part::*changed)()) {
        if (field == value)
            return;
        Q_EMIT aboutToChange(name);
        field = std::move(value);
        Q_EMIT(static_cast<Part*>(this)->*changed)();
    }
};

} // namespace corvane
