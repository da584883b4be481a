// The tables of a store. A new version is a further list in migrations(); those that were released never change.
#include "fleet/store/schema.h"

#include <KxInspect/Error.h>

#include <initializer_list>

namespace kxfleet {

namespace {

using KxInspect::Error;
using KxInspect::ErrorKind;

/// Value, interval, reason and verdict of a measure.
std::string measureColumns(const std::string& key) {
    return key + " REAL, " + key + "_low REAL, " + key + "_high REAL, " + key +
           "_reason BIGINT REFERENCES reason (id), " + key + "_verdict SMALLINT, ";
}

/// The tables of version 1, see docs/fleet.md.
std::vector<std::string> version1(const std::string& identity) {
    const auto columns = [](std::initializer_list<const char*> keys) {
        std::string all;
        for (const char* const key : keys) {
            all += measureColumns(key);
        }
        return all;
    };
    const std::string place = "pass BIGINT NOT NULL REFERENCES pass (id), number INTEGER NOT NULL, ";
    return {
        "CREATE TABLE schema_version (version BIGINT NOT NULL)",
        "CREATE TABLE reason (id " + identity + " PRIMARY KEY, text TEXT NOT NULL UNIQUE)",
        "CREATE TABLE pass (id " + identity +
            " PRIMARY KEY, key TEXT NOT NULL UNIQUE, station TEXT, line TEXT, track TEXT, direction TEXT, "
            "time_ms BIGINT, time TEXT, speed REAL, vehicle_order SMALLINT NOT NULL, version TEXT NOT NULL, verdict "
            "SMALLINT, warnings INTEGER NOT NULL)",
        "CREATE TABLE axle (" + place + "vehicle TEXT, axle INTEGER, " +
            columns({"back_to_back", "yaw", "diameter_difference_axle"}) + "PRIMARY KEY (pass, number))",
        "CREATE TABLE wheel (" + place + "vehicle TEXT, axle INTEGER, side TEXT NOT NULL, " +
            columns({"diameter", "flange_height", "flange_thickness", "flange_slope", "tread_hollow", "rim_width",
                     "roundness", "tread_deviation"}) +
            "verdict SMALLINT, PRIMARY KEY (pass, number, side))",
        "CREATE INDEX pass_time ON pass (time_ms)",
        "CREATE INDEX wheel_of_vehicle ON wheel (vehicle, axle, side, pass)",
        "INSERT INTO schema_version (version) VALUES (1)",
    };
}

/// What version 2 has in addition: limits differ by class.
std::vector<std::string> version2() {
    return {"ALTER TABLE wheel ADD COLUMN vehicle_class TEXT", "UPDATE schema_version SET version = 2"};
}

} // namespace

std::int64_t storeVersion(Database& database, const std::string& name) {
    if (!database.hasTable("schema_version")) {
        if (database.isEmpty()) {
            return 0;
        }
        throw Error(ErrorKind::Unsuitable, {"store", shownName(name), {}}, "is a database, but no store of passes");
    }
    const std::int64_t version = database.number("SELECT version FROM schema_version");
    if (version > kStoreVersion) {
        throw Error(ErrorKind::Unsuitable, {"store", shownName(name), {}},
                    "has version " + std::to_string(version) + " of the schema; this program knows versions up to " +
                        std::to_string(kStoreVersion) + " and changes nothing in it");
    }
    return version;
}

void migrate(Database& database, const std::string& name) {
    if (storeVersion(database, name) == kStoreVersion) {
        return;
    }
    Transaction transaction(database);
    database.lockSchema();
    // Asked again: another program may have been first.
    for (std::int64_t version = storeVersion(database, name); version < kStoreVersion; ++version) {
        for (const std::string& statement : version == 0 ? version1(database.identityType()) : version2()) {
            database.run(statement);
        }
    }
    transaction.commit();
}

} // namespace kxfleet
