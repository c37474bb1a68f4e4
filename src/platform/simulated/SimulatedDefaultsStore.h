// SimulatedDefaultsStore.h: settings that live as long as this object.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/StoreProblems.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// Threads: main.
class SimulatedDefaultsStore : public DefaultsStore {
public:
    using Values = std::map<std::string, DefaultsValue, std::less<>>;

    /// @param kept  what an earlier launch left
    explicit SimulatedDefaultsStore(Values kept = {}) : values_(kept), kept_(std::move(kept)) {}

    [[nodiscard]] std::optional<DefaultsValue> get(std::string_view key) const override;
    Status set(std::string_view key, DefaultsValue value) override;
    Status remove(std::string_view key) override;
    /// Takes back what `offerCopy` has given.
    Status takeOfferedCopy() override;
    [[nodiscard]] const std::vector<StoreProblem>& problems() const override {
        return problems_.all();
    }
    [[nodiscard]] Signal& problemsChanged() override { return problems_.changed(); }

    // -- as a test arranges it --

    /// From now on writes fail with the problem's status; values live until this object ends.
    void refuseWrites(const StoreProblem& problem);
    void allowWrites();
    /// The problem arises now, outside a write.
    void report(const StoreProblem& problem);
    /// The file was gone at the start, and there is a copy of that day.
    void offerCopy(const std::string& day, Values values);
    /// What a later launch would find: everything whose write succeeded.
    [[nodiscard]] const Values& kept() const { return kept_; }

private:
    /// Writes everything, as a store that catches up after a refusal does.
    Status keep();

    Values values_;
    Values kept_;
    std::optional<StoreProblem> refusal_;
    std::optional<std::pair<std::string, Values>> offered_; // its day and what it holds
    Values taken_; // of a copy; stays until the next launch
    StoreProblems problems_;
};

} // namespace velmora
