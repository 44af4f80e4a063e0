#include "CorvaneCore/VoiceProfiles/SqliteConnection.h"

#include "CorvaneContract/Text/UserText.h"

#include <QFile>

#include <sqlite3.h>

#include <limits>

namespace corvane {

namespace {

QString kindText(StoreError::Kind kind) {
    switch (kind) {
    case StoreError::Kind::prepareFailed:
        return UserText::tr("prepareFailed");
    case StoreError::Kind::executeFailed:
        return UserText::tr("executeFailed");
    case StoreError::Kind::openFailed:
        break;
    }
    return UserText::tr("openFailed");
}

QString messageOf(sqlite3* connection) {
    const char* message = connection ? sqlite3_errmsg(connection) : nullptr;
    return message ? QString::fromUtf8(message) : UserText::tr("unknown sqlite error");
}

// SQLite copies what is bound, so that a parameter need not outlive the call.
const sqlite3_destructor_type copyIt = SQLITE_TRANSIENT;

// Of a store with many voices half the time of a query is a system call and a copy for each page; a mapping saves both.
// It can only be set before SQLite's first use in the process; later it is refused, and pages are read one by one.
void readThroughMapping() {
    constexpr sqlite3_int64 most = 1LL << 30; // bytes of the file; what lies behind is read as ever
    [[maybe_unused]] static const int result = sqlite3_config(SQLITE_CONFIG_MMAP_SIZE, most, most);
}

struct Binder {
    sqlite3_stmt* statement;
    int position;

    void operator()(const QString& value) const {
        sqlite3_bind_text(statement, position, value.toUtf8().constData(), -1, copyIt);
    }
    void operator()(double value) const { sqlite3_bind_double(statement, position, value); }
    void operator()(std::int64_t value) const {
        if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
            qFatal("a number of the voice store needs more than 32 bits");
        sqlite3_bind_int(statement, position, static_cast<int>(value));
    }
    void operator()(bool value) const { sqlite3_bind_int(statement, position, value ? 1 : 0); }
    void operator()(const QByteArray& value) const {
        sqlite3_bind_blob(statement, position, value.constData(), static_cast<int>(value.size()), copyIt);
    }
    void operator()(const std::optional<QString>& value) const {
        if (value)
            (*this)(*value);
        else
            (*this)(nullptr);
    }
    void operator()(std::nullptr_t) const { sqlite3_bind_null(statement, position); }
};

} // namespace

StoreError::StoreError(Kind kind, const QString& message)
    : Error(UserText::tr("%1: %2").arg(kindText(kind), message)), m_kind(kind), m_message(message) {}

SqliteStatement::SqliteStatement(sqlite3* connection, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr) != SQLITE_OK)
        throw StoreError(StoreError::Kind::prepareFailed, messageOf(connection));
    m_statement.reset(statement);
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void SqliteStatement::bind(std::initializer_list<SqlValue> parameters) {
    int position = 0;
    for (const SqlValue& parameter : parameters)
        std::visit(Binder{m_statement.get(), ++position}, parameter);
}

int SqliteStatement::step() {
    return sqlite3_step(m_statement.get());
}

bool SqliteStatement::nextRow() {
    return step() == SQLITE_ROW;
}

QString SqliteStatement::text(int column) const {
    return QString::fromUtf8(textBytes(column));
}

QByteArrayView SqliteStatement::textBytes(int column) const {
    return {reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column))};
}

double SqliteStatement::real(int column) const {
    return sqlite3_column_double(m_statement.get(), column);
}

std::int64_t SqliteStatement::integer(int column) const {
    return sqlite3_column_int(m_statement.get(), column);
}

bool SqliteStatement::isNull(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

QByteArrayView SqliteStatement::blob(int column) const {
    // In this order: asking for the bytes may move what is not a blob.
    const auto* data = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    return {data, data ? sqlite3_column_bytes(m_statement.get(), column) : 0};
}

std::optional<double> SqliteStatement::optionalReal(int column) const {
    return isNull(column) ? std::nullopt : std::optional(real(column));
}

SqliteConnection::SqliteConnection(const QString& path) {
    // SQLite would make the file readable by everyone. One that is there already is left as it is.
    if (QFile file(path); file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        file.close();
    readThroughMapping();
    sqlite3* connection = nullptr;
    const int result = sqlite3_open(path.toUtf8().constData(), &connection);
    m_connection.reset(connection); // there even after a failure, to be asked why
    if (result != SQLITE_OK)
        throw StoreError(StoreError::Kind::openFailed, messageOf(connection));
}

void SqliteConnection::Close::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

void SqliteConnection::execute(const char* sql, std::initializer_list<SqlValue> parameters) const {
    SqliteStatement statement = prepare(sql);
    statement.bind(parameters);
    if (statement.step() != SQLITE_DONE)
        throw StoreError(StoreError::Kind::executeFailed, messageOf(m_connection.get()));
}

bool SqliteConnection::finds(const char* sql, std::initializer_list<SqlValue> parameters) const {
    SqliteStatement statement = prepare(sql);
    statement.bind(parameters);
    const int result = statement.step();
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        throw StoreError(StoreError::Kind::executeFailed, messageOf(m_connection.get()));
    return result == SQLITE_ROW;
}

int SqliteConnection::changes() const {
    return sqlite3_changes(m_connection.get());
}

} // namespace corvane
