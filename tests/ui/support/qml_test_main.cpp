// The main function of every program that tests QML: no screen, no graphics card, no desktop.

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

QtMessageHandler printMessage = nullptr;

/// What Qt says about a file of QML is a fault of ours, whoever finds it.
void hear(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    printMessage(type, context, message);
    if (type != QtDebugMsg && type != QtInfoMsg && message.contains(".qml")) {
        ADD_FAILURE() << message.toStdString();
    }
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir runtimeFolder; // made for this user only, as the platform demands
    qputenv("XDG_RUNTIME_DIR", QDir::toNativeSeparators(runtimeFolder.path()).toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_QPA_PLATFORMTHEME", "");
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0"); // draw as soon as events are processed
    qunsetenv("DISPLAY");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    const QApplication application(argc, argv);
    QAccessible::setActive(true);
    printMessage = qInstallMessageHandler(hear);
    return RUN_ALL_TESTS();
}
