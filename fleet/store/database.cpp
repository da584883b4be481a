// What both engines have in common.
#include "fleet/store/database.h"

#include <KxInspect/Error.h>

namespace kxfleet {

std::vector<Row> Database::rows(const std::string& sql, const Row& parameters) {
    std::vector<Row> all;
    run(sql, parameters, [&](const Row& row) { all.push_back(row); });
    return all;
}

std::int64_t Database::number(const std::string& sql, const Row& parameters) {
    const std::vector<Row> all = rows(sql, parameters);
    const auto* const value = all.size() == 1 && !all[0].empty() ? std::get_if<std::int64_t>(&all[0][0]) : nullptr;
    if (value == nullptr) {
        throw KxInspect::Error(KxInspect::ErrorKind::Damaged, {"store", {}, {}}, "gives no number where one is needed");
    }
    return *value;
}

bool isPostgresUrl(const std::string& name) {
    return name.starts_with("postgresql://") || name.starts_with("postgres://");
}

std::string shownName(const std::string& name) {
    if (!isPostgresUrl(name)) {
        return name;
    }
    std::string shown = name.substr(0, name.find('?'));
    const std::size_t from = shown.find("://") + 3;
    const std::size_t at = shown.rfind('@');
    const std::size_t colon = shown.find(':', from);
    if (at != std::string::npos && colon < at) {
        shown.erase(colon, at - colon);
    }
    return shown;
}

std::unique_ptr<Database> connect(const std::string& name, IfMissing ifMissing) {
    return isPostgresUrl(name) ? connectPostgres(name) : connectSqlite(name, ifMissing);
}

Transaction::~Transaction() {
    if (isOpen_) {
        try {
            database_.run("ROLLBACK");
        } catch (const KxInspect::Error&) { // NOLINT(bugprone-empty-catch): the engine undoes it with the connection
        }
    }
}

void Transaction::commit() {
    database_.run("COMMIT");
    isOpen_ = false;
}

} // namespace kxfleet
