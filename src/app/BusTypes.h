// BusTypes.h: what travels over D-Bus besides Qt's own types.
#pragma once

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace velmora {

using TextMap = QMap<QString, QString>;        ///< a{ss}
using NumberMapByText = QMap<QString, double>; ///< a{sd}
using MapList = QList<QVariantMap>;            ///< aa{sv}

} // namespace velmora

Q_DECLARE_METATYPE(velmora::TextMap)
Q_DECLARE_METATYPE(velmora::NumberMapByText)
Q_DECLARE_METATYPE(velmora::MapList)
