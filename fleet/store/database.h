// A connection to a database: prepared statements and their rows.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kxfleet {

/// A field of a row or a parameter of a statement; std::monostate is NULL.
using Field = std::variant<std::monostate, std::int64_t, double, std::string>;
using Row = std::vector<Field>;
using OnRow = std::function<void(const Row&)>;

/// A connection. All functions throw a KxInspect::Error whose reason holds the words of the engine.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    /// Runs one statement, prepared at its first use. Its parameters are $1, $2, ..., each of them once and in this order.
    virtual void run(const std::string& sql, const Row& parameters, const OnRow& onRow) = 0;
    /// What the engine calls whole numbers that it counts up by itself.
    virtual const char* identityType() const = 0;
    /// Begins a transaction that writes.
    virtual void begin() = 0;
    /// Lets only one connection migrate the store until the transaction ends.
    virtual void lockSchema() = 0;
    /// Whether the store has a table of that name.
    virtual bool hasTable(const std::string& name) = 0;
    virtual bool isEmpty() = 0; ///< there is no table at all
    /// What the engine itself finds wrong with the store; empty when nothing is.
    virtual std::vector<std::string> faults() = 0;

    void run(const std::string& sql, const Row& parameters = {}) {
        run(sql, parameters, [](const Row&) {});
    }
    std::vector<Row> rows(const std::string& sql, const Row& parameters = {});
    std::int64_t number(const std::string& sql, const Row& parameters = {}); ///< the first field of the only row
};

/// What is to happen to a store that does not exist.
enum class IfMissing { Create, Refuse };

/// Whether the name of a store is the URL of a PostgreSQL database: postgresql://...
bool isPostgresUrl(const std::string& name);

/// The name of a store for messages: a URL without password and parameters.
std::string shownName(const std::string& name);

/// @param name the path of an SQLite file or the URL of a PostgreSQL database; UTF-8
std::unique_ptr<Database> connect(const std::string& name, IfMissing ifMissing);

/// @{ The two engines.
std::unique_ptr<Database> connectSqlite(const std::string& path, IfMissing ifMissing);
std::unique_ptr<Database> connectPostgres(const std::string& url);
/// @}

/// A transaction; undone by the destructor unless it was committed.
class Transaction {
public:
    explicit Transaction(Database& database) : database_(database) { database_.begin(); }
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Database& database_;
    bool isOpen_ = true;
};

} // namespace kxfleet
