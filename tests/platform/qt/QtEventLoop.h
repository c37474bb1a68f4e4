// QtEventLoop.h: a Qt application without windows, whose event loop a test turns.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>
#include <functional>

namespace velmora {

class QtEventLoop {
public:
    /// Handles events until the condition holds; false when it did not in long enough.
    bool runUntil(const std::function<bool()>& condition) {
        const QDeadlineTimer patience(std::chrono::seconds{20});
        QTimer wake; // ends the wait when nothing else does
        wake.start(std::chrono::milliseconds{50});
        while (!condition() && !patience.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return condition();
    }

private:
    int argumentCount_ = 1;
    char name_[1] = "";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
};

} // namespace velmora
