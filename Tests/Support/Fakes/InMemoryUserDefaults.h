// User defaults that live as long as the test. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/UserDefaults.h"

#include <map>

namespace corvane {

class InMemoryUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<Value> object(const QString& key) const override {
        const auto entry = m_values.find(key);
        return entry == m_values.end() ? std::nullopt : std::optional(entry->second);
    }
    void set(const QString& key, const Value& value) override {
        const auto* date = std::get_if<QDateTime>(&value);
        m_values.insert_or_assign(key, date ? Value(date->toUTC()) : value);
    }
    void remove(const QString& key) override { m_values.erase(key); }

private:
    std::map<QString, Value> m_values;
};

} // namespace corvane
