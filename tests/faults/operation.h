// An operation of the library that is tried with faults.
#pragma once

#include "support/bitDigest.h"

#include <KxMath/KxMath.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace faults {

/// A digest of objects of the core and of bytes.
class Digest : public testing_support::BitDigest {
public:
    using BitDigest::add;

    void add(const KxMath::KxPointXY& p) { addAll({p.x, p.y}); }
    void add(const KxMath::KxPointXYZ& p) { addAll({p.x, p.y, p.z}); }
    void add(const KxMath::KxPointXYZRGB& p) { addAll({p.x, p.y, p.z}); }
    void add(const KxMath::KxLine& line) { addAll({line.k, line.b}); }
    void add(const QPoint& p) {
        add(p.x());
        add(p.y());
    }
    void add(const KxMath::HistoCell& cell) {
        add(cell.mean);
        add(cell.taken);
    }
    void add(const KxMath::KxProfileZ& profile) {
        add(profile.points);
        add(profile.z);
    }
    void add(const std::string& bytes) {
        for (const char c : bytes) {
            add(static_cast<int>(c));
        }
    }
    template <typename T>
    void add(const QList<T>& list) {
        add(static_cast<int>(list.size()));
        for (const T& element : list) {
            add(element);
        }
    }
    void addAll(std::initializer_list<float> values) {
        for (const float value : values) {
            add(value);
        }
    }
};

/// The objects of one operation.
struct Trial {
    std::function<void()> prepare; ///< gives the objects their input, new ones as well as those of a failed operation
    std::function<bool()> run; ///< false: the operation reports a failure
    std::function<std::uint64_t()> digest; ///< of the objects
};

struct Operation {
    std::string name;
    std::function<Trial(bool isShared)> make; ///< whether other objects share the lists of the input
    bool hidesFailedWrites = false; ///< as its header says
};

/// An operation on a `State`: a type with a field `isShared` and the functions prepare() and addTo(Digest&). `act` gets
/// it and returns nothing, or whether the operation reports success.
template <typename State, typename Act>
Operation operation(const char* name, Act act) {
    return {name, [act](bool isShared) {
                const auto state = std::make_shared<State>();
                state->isShared = isShared;
                const auto run = [state, act] {
                    if constexpr (std::is_void_v<std::invoke_result_t<Act, State&>>) {
                        act(*state);
                        return true;
                    } else {
                        return act(*state);
                    }
                };
                const auto digest = [state] {
                    Digest result;
                    state->addTo(result);
                    return result.value();
                };
                return Trial{[state] { state->prepare(); }, run, digest};
            }};
}

/// The tables.
/// @{
std::vector<Operation> profileOperations();
std::vector<Operation> cloudOperations();
std::vector<Operation> gridOperations();
std::vector<Operation> railwayOperations();
std::vector<Operation> fileOperations();
std::vector<Operation> inspectOperations();
/// @}

} // namespace faults
