// The tables of a store and their versions.
#pragma once

#include "fleet/store/database.h"

#include <cstdint>

namespace kxfleet {

/// The version of the schema that this program writes.
inline constexpr std::int64_t kStoreVersion = 2;

/// The version of a store, 0 for one without tables. Throws an Error for a database that is no store, and for a store that
/// is newer than this program.
std::int64_t storeVersion(Database& database, const std::string& name);

/// Brings a store to kStoreVersion in one transaction.
/// @param name of the store, for messages
void migrate(Database& database, const std::string& name);

} // namespace kxfleet
