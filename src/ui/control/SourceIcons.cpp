#include "ui/control/SourceIcons.h"

#include "platform/Applications.h"

#include <QUrl>

namespace velmora {

QString applicationIcon(const Applications& applications, std::string_view bundleID) {
    const auto icon = applications.icon(bundleID);
    return icon && !icon->empty() ? applicationIconUrl(*icon) : QString();
}

QString applicationIconUrl(const std::string& icon) {
    return QStringLiteral("image://application/") +
           QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(icon)));
}

QString deviceSymbol(const AudioDevices& devices, AudioObjectID device) {
    const bool hasNoPlug = devices.transport(device).value_or(Transport::other) != Transport::other;
    return hasNoPlug ? QStringLiteral("waveform") : QStringLiteral("mic");
}

} // namespace velmora
