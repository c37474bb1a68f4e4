// StoreProblems.h: what is wrong with a store now, for whoever implements one.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/Signal.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velmora {

/// The list behind `DefaultsStore::problems`. Threads: main.
class StoreProblems {
public:
    [[nodiscard]] const std::vector<StoreProblem>& all() const { return all_; }
    [[nodiscard]] Signal& changed() { return changed_; }

    /// Of the problems of writing there is one of each kind, with what the last attempt said.
    void add(StoreProblem problem) {
        const auto known = std::ranges::find_if(all_, [&](const StoreProblem& one) {
            return one == problem || (one.kind == problem.kind && endsWithAWrite(one));
        });
        if (known == all_.end()) {
            all_.push_back(std::move(problem));
        } else if (*known != problem) {
            *known = std::move(problem);
        } else {
            return;
        }
        untold_ = true;
    }

    void end(StoreProblem::Kind kind) {
        if (std::erase_if(all_, [kind](const auto& problem) { return problem.kind == kind; }) > 0) {
            untold_ = true;
        }
    }

    /// Everything is stored: what was wrong with writing is over.
    void endThoseOfWriting() {
        if (std::erase_if(all_, endsWithAWrite) > 0) {
            untold_ = true;
        }
    }

    /// Tells the observers if the list changed since the last time. Apart from the changes, so that
    /// an observer meets a store that has finished what it was doing.
    void tell() {
        if (std::exchange(untold_, false)) {
            changed_.emit();
        }
    }

private:
    static bool endsWithAWrite(const StoreProblem& problem) {
        return problem.kind == StoreProblem::Kind::unwritable ||
               problem.kind == StoreProblem::Kind::full ||
               problem.kind == StoreProblem::Kind::inUse;
    }

    std::vector<StoreProblem> all_;
    bool untold_ = false;
    Signal changed_;
};

} // namespace velmora
