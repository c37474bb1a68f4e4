// Signal.h: tells observers that something changed.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velmora {

/// A list of observers of one object. The object publishes plain values; an observer reads them
/// when it is told.
///
/// Threads: main. Observers may connect and disconnect while they are being told; one that
/// connects meanwhile is told from the next time on.
class Signal {
    using Observer = std::function<void()>;
    using Observers = std::vector<std::shared_ptr<Observer>>;

public:
    /// Disconnects when destroyed; may outlive the signal.
    class Connection {
    public:
        Connection() = default;
        Connection(std::weak_ptr<Observers> observers, std::shared_ptr<Observer> observer)
            : observers_(std::move(observers)), observer_(std::move(observer)) {}
        Connection(Connection&&) noexcept = default;
        Connection& operator=(Connection&& other) noexcept {
            disconnect();
            observers_ = std::move(other.observers_);
            observer_ = std::move(other.observer_);
            return *this;
        }
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;
        ~Connection() { disconnect(); }

        void disconnect() {
            if (const auto observers = observers_.lock()) {
                std::erase(*observers, observer_);
            }
            if (observer_) {
                *observer_ = nullptr;
            }
            observer_.reset();
        }

    private:
        std::weak_ptr<Observers> observers_;
        std::shared_ptr<Observer> observer_;
    };

    [[nodiscard]] Connection connect(Observer observer) {
        auto shared = std::make_shared<Observer>(std::move(observer));
        observers_->push_back(shared);
        return {observers_, std::move(shared)};
    }

    void emit() const {
        const Observers snapshot = *observers_;
        for (const auto& observer : snapshot) {
            // An observer told earlier in this round may have disconnected this one.
            if (const Observer call = *observer) {
                call();
            }
        }
    }

private:
    std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
};

} // namespace velmora
