// PaletteWatch.h: whether the desktop gives this program dark windows.
#pragma once

#include <QObject>
#include <functional>

namespace velmora {

/// Threads: main. A program without windows is given light ones.
class PaletteWatch : public QObject {
    Q_OBJECT

public:
    /// @param changed  called when the colours may have become others
    explicit PaletteWatch(std::function<void()> changed);

    [[nodiscard]] bool isDark() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> changed_;
};

} // namespace velmora
