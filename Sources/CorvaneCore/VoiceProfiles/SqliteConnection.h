// SQLite's C interface with owners for its two handles. No options are set: the connection has SQLite's defaults, so
// that another program which holds the file gives an error at once instead of a wait. One thread at a time.
#pragma once

#include "CorvaneContract/Error.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace corvane {

// text() names the case and holds SQLite's own message.
class StoreError : public Error {
public:
    enum class Kind { prepareFailed, executeFailed, openFailed };

    StoreError(Kind kind, const QString& message);
    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QString& message() const { return m_message; }

private:
    Kind m_kind;
    QString m_message;
};

// What a parameter can be. An absent text, like the null marker, is NULL. An integer beyond 32 bits ends the program.
using SqlValue = std::variant<QString, double, std::int64_t, bool, QByteArray, std::optional<QString>, std::nullptr_t>;

class SqliteStatement {
public:
    // Throws StoreError, prepareFailed.
    SqliteStatement(sqlite3* connection, const char* sql);

    void bind(std::initializer_list<SqlValue> parameters);
    // The result code of one step.
    [[nodiscard]] int step();
    // True while there is a row to read. Whatever else a step gives is the end of the rows.
    [[nodiscard]] bool nextRow();

    [[nodiscard]] QString text(int column) const; // NULL as ""
    // The same in UTF-8, not a copy: holds until the next step.
    [[nodiscard]] QByteArrayView textBytes(int column) const;
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] bool isNull(int column) const;
    // Not a copy: holds until the next step.
    [[nodiscard]] QByteArrayView blob(int column) const;
    [[nodiscard]] std::optional<double> optionalReal(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

class SqliteConnection {
public:
    // A missing file is created, for its owner alone. Throws StoreError, openFailed.
    explicit SqliteConnection(const QString& path);

    // Throws StoreError, prepareFailed.
    [[nodiscard]] SqliteStatement prepare(const char* sql) const { return {m_connection.get(), sql}; }
    // Runs a statement that gives no rows. Throws StoreError; executeFailed also if there was a row.
    void execute(const char* sql, std::initializer_list<SqlValue> parameters = {}) const;
    // Whether a query has a row. Throws StoreError also if it could not be run to an answer.
    [[nodiscard]] bool finds(const char* sql, std::initializer_list<SqlValue> parameters) const;
    // Rows that the last statement inserted, changed or deleted.
    [[nodiscard]] int changes() const;

private:
    struct Close {
        void operator()(sqlite3* connection) const;
    };
    std::unique_ptr<sqlite3, Close> m_connection;
};

} // namespace corvane
