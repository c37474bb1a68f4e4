#include "ui/Renderer.h"

#include <QByteArray>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

namespace velmora {

namespace {

/// How Mesa and others call what draws without a card; parts of GL_RENDERER.
constexpr std::array<std::string_view, 5> standIns{
    "llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SwiftShader"};

} // namespace

Renderer rendererFor(std::string_view name, double pixelsPerPoint) {
    const bool isCard = !name.empty() && std::ranges::none_of(standIns, [&](std::string_view one) {
        return name.find(one) != name.npos;
    });
    constexpr double rounding = 0.01;
    const bool isWhole = std::abs(pixelsPerPoint - std::round(pixelsPerPoint)) < rounding;
    return isCard && isWhole ? Renderer::graphicsCard : Renderer::processor;
}

bool hasGraphicsCard() {
    std::error_code ignored; // where drivers show their cards
    return std::filesystem::exists("/dev/dri", ignored) ||
           std::filesystem::exists("/dev/nvidiactl", ignored);
}

std::string graphicsName() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface)) {
        return {};
    }
    const auto word = [&](GLenum name) {
        const auto* const text = context.functions()->glGetString(name);
        return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
    };
    return word(GL_RENDERER) + ", " + word(GL_VERSION);
}

void drawWindowsBy(Renderer renderer) {
    if (isRendererForced()) {
        return;
    }
    QQuickWindow::setGraphicsApi(renderer == Renderer::graphicsCard
                                     ? QSGRendererInterface::OpenGL
                                     : QSGRendererInterface::Software);
}

bool isRendererForced() {
    return qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
           qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
}

} // namespace velmora
