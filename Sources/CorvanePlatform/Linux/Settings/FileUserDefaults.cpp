#include "CorvanePlatform/Linux/Settings/FileUserDefaults.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"
#include "CorvanePlatform/Linux/Processes/Spawn.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace corvane {

namespace {

const QString dateKey = QStringLiteral("date");
const QString dataKey = QStringLiteral("data");

std::optional<UserDefaults::Value> tagged(const JSONValue::Object& object) {
    if (object.size() != 1)
        return std::nullopt;
    if (const auto text = stringAt(object, dateKey)) {
        const QDateTime date = QDateTime::fromString(*text, Qt::ISODateWithMs);
        // Without a zone it would mean another time in every place.
        if (date.isValid() && date.timeSpec() != Qt::LocalTime)
            return date.toUTC();
    }
    if (const auto text = stringAt(object, dataKey)) {
        const auto data = QByteArray::fromBase64Encoding(text->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (data)
            return *data;
    }
    return std::nullopt;
}

// Nothing if the value is of another type: the reader has no question to ask beforehand.
template<typename T>
std::optional<T> attempt(JsonView view, T (JsonView::*read)() const) {
    try {
        return (view.*read)();
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

std::variant<UserDefaults::Value, JSONValue> decode(JsonView view) {
    if (const auto value = attempt(view, &JsonView::boolean))
        return UserDefaults::Value(*value);
    if (const auto value = attempt(view, &JsonView::integer))
        return UserDefaults::Value(*value);
    if (const auto value = attempt(view, &JsonView::string))
        return UserDefaults::Value(*value);
    JSONValue other = view.free();
    if (const auto* object = other.objectValue()) {
        if (auto value = tagged(*object))
            return *std::move(value);
    }
    return other;
}

QJsonValue encode(const UserDefaults::Value& value) {
    if (const auto* date = std::get_if<QDateTime>(&value))
        return QJsonObject{{dateKey, date->toUTC().toString(Qt::ISODateWithMs)}};
    if (const auto* data = std::get_if<QByteArray>(&value))
        return QJsonObject{{dataKey, QString::fromLatin1(data->toBase64())}};
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return QJsonValue(static_cast<qint64>(*integer));
    if (const auto* boolean = std::get_if<bool>(&value))
        return QJsonValue(*boolean);
    // Half of a surrogate pair has no form in UTF-8 and would make the whole file unreadable.
    return QString::fromUtf8(std::get<QString>(value).toUtf8());
}

[[noreturn]] void failWithErrno(const QString& path) {
    throw FileError(UserText::tr("%1: %2").arg(QFileInfo(path).fileName(), systemErrorText(errno)));
}

// Held until the result goes. It lies beside the file, which is replaced at every write.
UniqueFd lock(const QString& path) {
    const QString lockPath = path + QStringLiteral(".lock");
    UniqueFd fd(::open(QFile::encodeName(lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!fd)
        failWithErrno(lockPath);
    while (::flock(fd.get(), LOCK_EX) != 0) {
        if (errno != EINTR)
            failWithErrno(lockPath);
    }
    return fd;
}

void moveAside(const QString& path) {
    const QString first = path + QStringLiteral(".damaged");
    QString aside = first;
    // RENAME_NOREPLACE, so that nothing is ever lost that was moved aside before.
    for (int number = 2;; ++number) {
        if (::renameat2(AT_FDCWD, QFile::encodeName(path).constData(), AT_FDCWD, QFile::encodeName(aside).constData(),
                        RENAME_NOREPLACE) == 0)
            break;
        if (errno != EEXIST)
            failWithErrno(path);
        aside = first + QString::number(number);
    }
    qWarning("The settings in %s could not be read. They are kept as %s.", qUtf8Printable(path), qUtf8Printable(aside));
}

} // namespace

QString FileUserDefaults::productionPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Corvane/defaults.json");
}

FileUserDefaults::FileUserDefaults(QString path) : m_path(std::move(path)) {}

FileUserDefaults::Content FileUserDefaults::load(const QString& path) {
    using State = Content::State;
    const auto bytes = readFile(path);
    if (!bytes)
        return {LinuxFileTree().stamp(path).kind == FileStamp::Kind::missing ? State::missing : State::unreadable, {}};
    try {
        return {State::readable, JsonDocument(*bytes).root().object().map(decode)};
    } catch (const JsonError&) {
        return {State::damaged, {}};
    }
}

void FileUserDefaults::refresh() const {
    const LinuxFileTree files;
    const std::int64_t settledBefore = files.settledBefore();
    const FileStamp stamp = files.stamp(m_path);
    if (m_settled && stamp == m_stamp)
        return;
    Content content = load(m_path);
    m_entries = std::move(content.entries);
    m_stamp = stamp;
    m_settled = isSettled(stamp, settledBefore) && content.state != Content::State::unreadable;
}

std::optional<UserDefaults::Value> FileUserDefaults::object(const QString& key) const {
    refresh();
    const auto entry = m_entries.find(key);
    const Value* value = entry != m_entries.end() ? std::get_if<Value>(&entry->second) : nullptr;
    return value ? std::optional(*value) : std::nullopt;
}

void FileUserDefaults::change(const QString& key, const std::optional<Value>& value) {
    createPrivateDirectory(QFileInfo(m_path).absolutePath());
    const UniqueFd turn = lock(m_path);
    Content content = load(m_path);
    // It may be whole: whatever keeps it from being read now, it must not be replaced.
    if (content.state == Content::State::unreadable)
        throw FileError(UserText::tr("%1: cannot be read").arg(QFileInfo(m_path).fileName()));
    if (value)
        content.entries.insert_or_assign(key, *value);
    else if (content.entries.erase(key) == 0)
        return;
    if (content.state == Content::State::damaged)
        moveAside(m_path);
    QJsonObject object;
    for (const auto& [name, entry] : content.entries) {
        const Value* typed = std::get_if<Value>(&entry);
        object.insert(name, typed ? encode(*typed) : std::get<JSONValue>(entry).toQJson());
    }
    writeFileAtomically(m_path, prettyJson(object));
}

void FileUserDefaults::set(const QString& key, const Value& value) {
    try {
        change(key, value);
    } catch (const FileError& error) {
        qWarning("The setting %s was not saved: %s", qUtf8Printable(key), error.what());
    }
}

void FileUserDefaults::remove(const QString& key) {
    try {
        change(key, std::nullopt);
    } catch (const FileError& error) {
        qWarning("The setting %s was not removed: %s", qUtf8Printable(key), error.what());
    }
}

} // namespace corvane
