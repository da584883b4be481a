// SQLite.
#include "fleet/store/database.h"

#include <KxInspect/Error.h>

#include <sqlite3.h>

#include <map>

namespace kxfleet {

namespace {

using KxInspect::Error;
using KxInspect::ErrorKind;

constexpr int kBusyMilliseconds = 60000; // another program may be writing

ErrorKind kindOf(int code) {
    switch (code & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return ErrorKind::Damaged;
    case SQLITE_FULL:
    case SQLITE_READONLY:
        return ErrorKind::Unwritable;
    default:
        return ErrorKind::Unreadable;
    }
}

struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};

class SqliteDatabase final : public Database {
public:
    SqliteDatabase(std::string path, IfMissing ifMissing) : path_(std::move(path)) {
        sqlite3* opened = nullptr;
        const int flags = SQLITE_OPEN_READWRITE | (ifMissing == IfMissing::Create ? SQLITE_OPEN_CREATE : 0);
        const int code = sqlite3_open_v2(path_.c_str(), &opened, flags, nullptr);
        connection_.reset(opened);
        check(code);
        sqlite3_extended_result_codes(opened, 1);
        sqlite3_busy_timeout(opened, kBusyMilliseconds);
        rows("PRAGMA foreign_keys = ON");
        rows("SELECT count(*) FROM sqlite_master"); // a file of another kind is refused before anything is written
        if (ifMissing == IfMissing::Create) {
            rows("PRAGMA journal_mode = WAL");
        }
        rows("PRAGMA synchronous = FULL");
        rows("PRAGMA cache_size = -131072"); // KiB at most: series jump from row to row
    }

    using Database::run;

    void run(const std::string& sql, const Row& parameters, const OnRow& onRow) override {
        sqlite3_stmt* const statement = prepared(sql);
        const struct Reset {
            sqlite3_stmt* statement;
            ~Reset() {
                sqlite3_reset(statement);
                sqlite3_clear_bindings(statement);
            }
        } reset{statement};
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            check(bind(statement, static_cast<int>(i) + 1, parameters[i]));
        }
        int code = 0;
        while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
            onRow(rowOf(statement));
        }
        if (code != SQLITE_DONE) {
            check(code);
        }
    }

    const char* identityType() const override { return "INTEGER"; }
    void begin() override { run("BEGIN IMMEDIATE"); }
    void lockSchema() override {} // begin() keeps other writers out
    bool hasTable(const std::string& name) override {
        return number("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = $1", {name}) > 0;
    }
    bool isEmpty() override { return number("SELECT count(*) FROM sqlite_master") == 0; }
    std::vector<std::string> faults() override {
        std::vector<std::string> found;
        run("PRAGMA integrity_check", {}, [&](const Row& row) {
            const auto* const text = std::get_if<std::string>(row.data());
            if (text != nullptr && *text != "ok") {
                found.push_back(*text);
            }
        });
        return found;
    }

private:
    static int bind(sqlite3_stmt* statement, int place, const Field& field) {
        if (const auto* const whole = std::get_if<std::int64_t>(&field)) {
            return sqlite3_bind_int64(statement, place, *whole);
        }
        if (const auto* const real = std::get_if<double>(&field)) {
            return sqlite3_bind_double(statement, place, *real);
        }
        if (const auto* const text = std::get_if<std::string>(&field)) {
            return sqlite3_bind_text64(statement, place, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        }
        return sqlite3_bind_null(statement, place);
    }

    static Row rowOf(sqlite3_stmt* statement) {
        Row row;
        const int columns = sqlite3_column_count(statement);
        for (int i = 0; i < columns; ++i) {
            switch (sqlite3_column_type(statement, i)) {
            case SQLITE_INTEGER:
                row.emplace_back(std::int64_t{sqlite3_column_int64(statement, i)});
                break;
            case SQLITE_FLOAT:
                row.emplace_back(sqlite3_column_double(statement, i));
                break;
            case SQLITE_NULL:
                row.emplace_back();
                break;
            default: {
                const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
                const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
                row.emplace_back(text != nullptr ? std::string(text, bytes) : std::string());
            }
            }
        }
        return row;
    }

    sqlite3_stmt* prepared(const std::string& sql) {
        auto& statement = statements_[sql];
        if (!statement) {
            sqlite3_stmt* made = nullptr;
            const int code = sqlite3_prepare_v2(connection_.get(), sql.c_str(), -1, &made, nullptr);
            statement.reset(made);
            check(code);
        }
        return statement.get();
    }

    void check(int code) const {
        if (code != SQLITE_OK) {
            const char* const why = connection_ ? sqlite3_errmsg(connection_.get()) : sqlite3_errstr(code);
            throw Error(kindOf(code), {"store", path_, {}}, std::string("is refused by SQLite: ") + why);
        }
    }

    std::string path_;
    std::unique_ptr<sqlite3, Close> connection_;
    std::map<std::string, std::unique_ptr<sqlite3_stmt, Finalize>> statements_; // before the connection they go
};

} // namespace

std::unique_ptr<Database> connectSqlite(const std::string& path, IfMissing ifMissing) {
    return std::make_unique<SqliteDatabase>(path, ifMissing);
}

} // namespace kxfleet
