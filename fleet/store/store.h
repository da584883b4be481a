// The store of measured passes: added once, read as series.
#pragma once

#include "fleet/store/database.h"

#include <KxInspect/Interval.h>
#include <KxInspect/Limits.h>
#include <KxInspect/PassResult.h>
#include <KxInspect/PassSheet.h>

#include <optional>

namespace kxfleet {

enum class AddOutcome { Added, AlreadyThere };

/// What became of a pass, and what it lacks.
struct AddedPass {
    AddOutcome outcome = AddOutcome::Added;
    std::string key = {}; ///< see passKey()
    std::size_t wheels = 0;
    bool hasTime = false;
    bool hasVehicles = false; ///< every wheel belongs to a vehicle with a number
};

/// A wheel over its passes.
struct StoredWheel {
    std::string vehicle = {};
    std::int64_t axle = 0; ///< in its vehicle, from 1
    /// "left", "right"; "1", "2" of the recording where the settings give no side. That of the vehicle when its list leads:
    /// one that passed turned, its last vehicle first, had its left wheels on the right rail.
    std::string side = {};

    auto operator<=>(const StoredWheel&) const = default;
};

/// A value of a wheel in one pass.
struct StoredReading {
    StoredWheel wheel = {};
    std::string vehicleClass = {}; ///< empty where it is not known
    std::string station = {}; ///< empty where it was not given
    std::string trackSide = {}; ///< where the wheel ran; as StoredWheel::side, but of the track
    std::int64_t milliseconds = 0; ///< since 1970-01-01 00:00 UTC
    double value = 0.0; ///< in the unit of the measure; finite
    KxInspect::Interval interval = {}; ///< of 95 %
    std::optional<KxInspect::LimitVerdict> verdict = {}; ///< by the limits of the pass; absent without
};

/// What a store holds.
struct StoreInfo {
    std::int64_t schemaVersion = 0;
    std::int64_t passes = 0, withoutTime = 0, wheels = 0, axles = 0;
    std::optional<std::int64_t> first = {}, last = {}; ///< times, milliseconds as above
    std::vector<std::string> versions = {}; ///< of the library that measured, ascending
};

/// A measure and the name of its columns: "flangeHeight" is flange_height, flange_height_low, ...
std::string columnOf(const std::string& measure);

/// The measures that a store keeps of wheels or of axles, in the order of measureInfos().
std::vector<KxInspect::MeasureInfo> storedMeasures(KxInspect::MeasureOf of);

/// A store, open. All functions throw a KxInspect::Error where the engine refuses.
class Store {
public:
    /// @param name a path or a URL, see connect(); a store that is created or older is brought to kStoreVersion, but with
    /// IfMissing::Refuse one without tables is refused
    Store(const std::string& name, IfMissing ifMissing);

    /// Adds a pass with its wheels and axles in one transaction, or finds it there and changes nothing. Throws an Error
    /// Unsuitable for a pass without hashes of its recordings and for a time that is none.
    AddedPass add(const KxInspect::PassResult& pass);

    /// Calls `onReading` for every value of a measure of wheels in the order of time. Left out are passes without a time,
    /// wheels without a vehicle's number or axle, and values that were not measured. Of a pass that was measured more than
    /// once, that is of one time and station, the one that was added last counts.
    /// @param measure "diameter"; Throws an Error BadArgument for one that is not stored
    /// @param vehicle only this one; empty: all
    void series(const std::string& measure, const std::string& vehicle,
                const std::function<void(const StoredReading&)>& onReading);

    StoreInfo info();
    /// What is wrong with the store: findings of the engine, rows without a pass or a reason, passes without rows that
    /// they should have. Empty when nothing is.
    std::vector<std::string> faults();

    Database& database() { return *database_; }

private:
    Field reasonId(const std::string& text);
    void addMeasures(Row& row, const KxInspect::SheetRow& sheet, KxInspect::MeasureOf of);

    std::string name_;
    std::unique_ptr<Database> database_;
};

} // namespace kxfleet
