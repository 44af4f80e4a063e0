// The per-user key-value store of settings. It tells an absent key from a stored value and keeps a value's type: a
// reader of another type finds nothing. Nothing is cached between calls, so that a change by another process shows at
// the next read. Writes are on the disk when they return, and do not fail from the caller's point of view. Used on the
// main thread.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>
#include <variant>

namespace corvane {

class UserDefaults {
public:
    using Value = std::variant<bool, std::int64_t, QString, QDateTime, QByteArray>;

    virtual ~UserDefaults() = default;
    [[nodiscard]] virtual std::optional<Value> object(const QString& key) const = 0;
    virtual void set(const QString& key, const Value& value) = 0;
    virtual void remove(const QString& key) = 0;

    // The stored value if the key holds exactly this type.
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const { return typed<bool>(key); }
    [[nodiscard]] std::optional<std::int64_t> integer(const QString& key) const { return typed<std::int64_t>(key); }
    [[nodiscard]] std::optional<QString> string(const QString& key) const { return typed<QString>(key); }
    // UTC, to the millisecond.
    [[nodiscard]] std::optional<QDateTime> date(const QString& key) const { return typed<QDateTime>(key); }
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const { return typed<QByteArray>(key); }

private:
    template<typename T>
    [[nodiscard]] std::optional<T> typed(const QString& key) const {
        const auto value = object(key);
        const T* held = value ? std::get_if<T>(&*value) : nullptr;
        return held ? std::optional<T>(*held) : std::nullopt;
    }
};

} // namespace corvane
