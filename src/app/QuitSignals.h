// QuitSignals.h: lets a terminal's or a session's request to end arrive on the main thread.
#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace velmora {

/// Turns SIGINT, SIGTERM and SIGHUP into one call on the main thread, so that a mix is stopped and
/// muted applications are heard again before the program ends. One object at a time: signal
/// handlers belong to the process. They are handled rather than blocked, because launched
/// applications would inherit a blocked signal. Threads: main.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    std::function<void()> quit_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace velmora
