#pragma once

#include "PaperLayout.h"

#include <QImage>

namespace rivo::ticket
{

/// Dots of a print head of 8 dots per millimetre on paper of 58 mm.
constexpr int narrowPaper = 384;

/// The paper as the simulated printer prints it, black on white; as wide as asked for, and as long
/// as it needs. Texts that are too long go on in the next line; nothing is cut off. Needs a
/// QGuiApplication.
QImage draw(const PaperLayout& layout, int width = narrowPaper);

} // namespace rivo::ticket
