#pragma once

#include "CodePage.h"

#include <PaperLayout.h>

#include <QByteArray>
#include <QImage>

namespace rivo::printer
{

/// How a printer prints.
struct EscPosFormat
{
    CodePage codePage{QStringLiteral("PC437")};
    int columns = 32;       ///< letters of the normal font on a line
    int dotsPerLine = 384;  ///< a multiple of 8
    QImage logo;            ///< above every paper; null = none
    bool cut = true;        ///< there is a cutter; otherwise the paper is fed to the tear bar
    bool nativeCode = true; ///< the printer draws QR codes
};

/// What a printer has to get to print a paper: from its initialisation to the cut. Blocks with
/// letters that the code page lacks are sent as pictures; these need a QGuiApplication.
QByteArray encode(const ticket::PaperLayout& layout, const EscPosFormat& format);

/// Feeds the paper to the cutter and cuts it.
QByteArray cut();

/// Opens the cash drawer.
QByteArray drawerPulse();

/// A picture as raster graphics, black where it is dark, at most `dotsPerLine` wide; in the middle
/// if it is narrower. No bytes in it can be taken for a command of the real-time kind.
QByteArray encodePicture(const QImage& picture, int dotsPerLine);

} // namespace rivo::printer
