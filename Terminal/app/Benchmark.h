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

/// From the start of the process to the first frame that shows the grid and takes taps:
/// "start_to_grid_ms 412". Call with the window just shown.
QString start(const Screen& screen);

/// From a finger on a tile to the frame that shows the new line of the basket:
/// "tap_to_basket_ms median 12.1 p95 15.0 (50 taps)". Needs a tile that can be sold.
QString taps(const Screen& screen, Terminal& terminal);

/// From frame to frame while the grid scrolls from end to end and back:
/// "scroll_frame_ms median 6.2 p95 9.8 (2000 tiles, 400 frames)".
QString scrolling(const Screen& screen);

} // namespace benchmark

} // namespace rivo::terminal
