#include "platform/simulated/SimulatedDefaultsStore.h"

#include <utility>

namespace velmora {

std::optional<DefaultsValue> SimulatedDefaultsStore::get(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

Status SimulatedDefaultsStore::set(std::string_view key, DefaultsValue value) {
    values_.insert_or_assign(std::string(key), std::move(value));
    return keep();
}

Status SimulatedDefaultsStore::remove(std::string_view key) {
    if (const auto found = values_.find(key); found != values_.end()) {
        values_.erase(found);
    }
    return keep();
}

Status SimulatedDefaultsStore::keep() {
    if (refusal_) {
        report(*refusal_);
        return refusal_->status;
    }
    kept_ = taken_;
    kept_.insert(values_.begin(), values_.end());
    problems_.endThoseOfWriting();
    problems_.tell();
    return statusOk;
}

void SimulatedDefaultsStore::refuseWrites(const StoreProblem& problem) {
    refusal_ = problem;
}

void SimulatedDefaultsStore::allowWrites() {
    refusal_.reset();
}

void SimulatedDefaultsStore::offerCopy(const std::string& day, Values values) {
    offered_.emplace(day, std::move(values));
    report({.kind = StoreProblem::Kind::copyOffered, .file = "settings", .setAside = day});
}

Status SimulatedDefaultsStore::takeOfferedCopy() {
    if (!offered_ || refusal_) {
        constexpr Status none = -2; // as the system's code for what is not there
        return refusal_ ? refusal_->status : none;
    }
    const auto [day, values] = *std::exchange(offered_, std::nullopt);
    taken_ = values;
    keep();
    problems_.end(StoreProblem::Kind::copyOffered);
    report({.kind = StoreProblem::Kind::copyTaken, .file = "settings", .setAside = day});
    return statusOk;
}

void SimulatedDefaultsStore::report(const StoreProblem& problem) {
    problems_.add(problem);
    problems_.tell();
}

} // namespace velmora
