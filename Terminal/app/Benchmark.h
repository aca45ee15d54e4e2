#pragma once

#include <Feed.h>

#include <QString>

namespace rivo::terminal
{

class Screen;
class Terminal;

/// What a driver waits for, measured in the running program.
namespace benchmark
{

/// `feed` with `tiles` products of its own kind: one per passenger type in zone after zone, with a
/// column for each type, so that nearly all tiles are for sale. Without products if it has none.
feed::Feed withTiles(feed::Feed feed, int tiles);

/// Milliseconds since the process was started, to the kernel's clock tick.
double processAge();

/// From the start of the process to the first frame that shows the grid and takes taps, and the
/// shares of it: "start_to_grid_ms 412 (program 40, feed 10, models 60, window 250, frame 52)".
/// Call with the window just shown. `marks` are the ages of the process when the program, the feed,
/// the models and the window were there.
QString start(const Screen& screen, const QVector<double>& marks);

/// From a finger on a tile to the frame that shows the new line of the basket:
/// "tap_to_basket_ms median 12.1 p95 15.0 (50 taps; journal and basket 4.0, frame 8.1)". Needs a
/// tile that can be sold.
QString taps(const Screen& screen, Terminal& terminal);

/// From frame to frame while the grid scrolls as fast as the fastest flick of a finger:
/// "flick_frame_ms median 6.2 p95 9.8 (2000 tiles, 400 frames)"; and from end to end and back in as
/// many frames, which is faster than a finger can: "scroll_frame_ms" likewise.
QStringList scrolling(const Screen& screen);

/// From another stop to the frame that shows what is sold
/// there: "NAME_ms median 6.2 p95 9.8 worst 9.9 (50 changes, 43 tiles; offers and tiles 1.0, frame
/// 5.2)".
QString stopChanges(const QString& name, const Screen& screen, Terminal& terminal);

/// The same from another trip, each time one of another route if there are several.
QString tripChanges(const QString& name, const Screen& screen, Terminal& terminal);

/// The same of a window of Qt Quick alone: "qt_quick_start_ms", "qt_quick_tap_ms",
/// "qt_quick_flick_frame_ms" and "qt_quick_scroll_frame_ms". Call it in a process of its own.
QStringList baseline(const QSize& size);

} // namespace benchmark

} // namespace rivo::terminal
