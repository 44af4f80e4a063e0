// The user defaults in one JSON object that can be read and edited by hand. A date is {"date":
// "2026-01-31T09:30:00.000Z"}, data are {"data": "base64"}; a value of any other shape is absent for every reader and
// kept by every write.
//
// Writers of several processes take turns by a lock on a file beside it. A file that is no JSON object is never
// destroyed: readers find nothing in it, and the first write moves it aside to `<name>.damaged` or a numbered name.
// Main thread.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"
#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"

#include <map>
#include <variant>

namespace corvane {

class FileUserDefaults final : public UserDefaults {
public:
    // $XDG_CONFIG_HOME/Corvane/defaults.json, else in ~/.config.
    [[nodiscard]] static QString productionPath();

    // Nothing is created before the first write.
    explicit FileUserDefaults(QString path);

    [[nodiscard]] std::optional<Value> object(const QString& key) const override;
    // A write that fails is told to the log and leaves the file as it was.
    void set(const QString& key, const Value& value) override;
    void remove(const QString& key) override;

private:
    using Entries = std::map<QString, std::variant<Value, JSONValue>>;
    struct Content {
        enum class State { missing, readable, damaged, unreadable };
        State state = State::missing;
        Entries entries;
    };

    [[nodiscard]] static Content load(const QString& path);
    void change(const QString& key, const std::optional<Value>& value);
    void refresh() const;

    QString m_path;
    // What was last read, believed for as long as the file's stamp says that it has not changed.
    mutable FileStamp m_stamp;
    mutable bool m_settled = false;
    mutable Entries m_entries;
};

} // namespace corvane
