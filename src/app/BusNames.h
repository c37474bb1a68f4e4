// BusNames.h: where the program is found on the session's D-Bus.
#pragma once

#include <QString>

namespace velmora {

inline const QString busService = QStringLiteral("app.velmora.Velmora");
inline const QString mixerPath = QStringLiteral("/app/velmora/Velmora/Mixer");
inline const QString mixerInterface = QStringLiteral("app.velmora.Mixer1");

} // namespace velmora
