#pragma once

#include <QString>

namespace rivo::terminal
{

/// Whether Qt Quick's raster renderer is the quicker one: without a graphics processor, OpenGL is
/// emulated by the processors. Never with EGL's platforms, which need OpenGL, or when
/// QT_QUICK_BACKEND is set, also to nothing, which is OpenGL. `devices`: the folder of the devices.
bool isRasterQuicker(const QString& platform, const QString& devices = QStringLiteral("/dev"));

} // namespace rivo::terminal
