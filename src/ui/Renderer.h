// Renderer.h: who draws the windows.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

enum class Renderer { processor, graphicsCard };

/// Who draws best where OpenGL calls what it draws with so. Programs that stand in for a graphics
/// card take five times as much of the processor for these windows as Qt's own drawing by it, and a
/// hundred mebibytes more. A card draws what lies between two pixels on both: where a point is no
/// whole number of them, the processor's outlines and symbols are sharper.
/// @param name            begins with GL_RENDERER; empty = none that works
/// @param pixelsPerPoint  of the windows
/// Threads: any.
[[nodiscard]] Renderer rendererFor(std::string_view name, double pixelsPerPoint);

/// Where there is none, loading the libraries that would ask is for nothing. Threads: any.
[[nodiscard]] bool hasGraphicsCard();

/// What OpenGL draws with here, and its driver's version; empty where nothing can be drawn with it.
/// Loads the driver, which may fail in any way.
/// Threads: main, with a QGuiApplication.
[[nodiscard]] std::string graphicsName();

/// To be called once, before the first window is made. Whoever sets Qt's own variables
/// (QT_QUICK_BACKEND, QSG_RHI_BACKEND) decides otherwise.
/// Threads: main.
void drawWindowsBy(Renderer renderer);
/// Whether those variables decide.
[[nodiscard]] bool isRendererForced();

} // namespace velmora
