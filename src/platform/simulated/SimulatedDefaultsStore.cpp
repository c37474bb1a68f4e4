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
    kept_ = values_;
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

void SimulatedDefaultsStore::report(const StoreProblem& problem) {
    problems_.add(problem);
    problems_.tell();
}

} // namespace velmora
