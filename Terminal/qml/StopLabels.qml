import QtQml 2.15
import QtQuick 2.15

/// Where the names of stops go on a map: beside their stop, clear of lines, stops and each other.
/// Names that have no such place are left out until there is room at a closer zoom. Points are
/// pixels of the map, which may lie outside of what is seen.
QtObject {
    id: root

    readonly property int height: 20
    readonly property int widest: 180
    readonly property int padding: 4

    /// From the middle of a stop to its name, and the room that a line takes.
    readonly property int distance: 11
    readonly property int cell: 3
    readonly property int ofLine: -1

    readonly property FontMetrics metrics: FontMetrics {
        font.pixelSize: Theme.smallText
    }

    function widthOf(name) {
        return Math.min(root.widest, Math.ceil(root.metrics.advanceWidth(name)) + 2 * root.padding)
    }

    /// The places around a stop in the order of preference, as top left corners.
    function placesAround(width) {
        const right = root.distance
        const left = -width - root.distance
        const middle = -root.height / 2
        const places = []
        for (const y of [middle, middle - 8, middle + 8, -root.height - 4, 4, -root.height - 8, 8])
            places.push(Qt.point(right, y), Qt.point(left, y))
        for (const y of [-root.height - root.distance, root.distance])
            places.push(Qt.point(-width / 2, y), Qt.point(-width / 4, y),
                        Qt.point(-3 * width / 4, y))
        return places
    }

    /// Calls `visit` with the key of every cell of the rectangle until that returns false.
    function everyCell(x, y, width, height, visit) {
        for (let row = Math.floor(y / root.cell); row * root.cell < y + height; ++row) {
            for (let column = Math.floor(x / root.cell); column * root.cell < x + width; ++column) {
                if (!visit(row * 100000 + column))
                    return false
            }
        }
        return true
    }

    /// Cells that are taken before stay with whom they belong to.
    function take(taken, owner, x, y, width, height) {
        root.everyCell(x, y, width, height, key => {
            if (!taken.has(key))
                taken.set(key, owner)
            return true
        })
    }

    /// Takes the cells under the part of a line that lies in `area`.
    function takeLine(taken, from, to, area) {
        const steps = Math.ceil(Math.max(Math.abs(to.x - from.x), Math.abs(to.y - from.y))
                                / root.cell) + 1
        const box = Qt.rect(Math.min(from.x, to.x), Math.min(from.y, to.y),
                            Math.max(1, Math.abs(to.x - from.x)),
                            Math.max(1, Math.abs(to.y - from.y)))
        if (!root.isCovered(box, [area]))
            return
        for (let step = 0; step <= steps; ++step) {
            const x = from.x + (to.x - from.x) * step / steps
            const y = from.y + (to.y - from.y) * step / steps
            root.take(taken, root.ofLine, x - 3, y - 3, 6, 6)
        }
    }

    /// The places of the names of `stops`, maps of "number", "name" and "point", by number: a
    /// rectangle from the stop on. `lines` are lists of points, `marks` rectangles of vehicles,
    /// which move: a name goes where none is, if it can. Names of stops in `view` stay in it and
    /// out of `covered`; lines are looked at in `area`.
    function place(stops, lines, marks, area, view, covered) {
        const taken = new Map()
        for (const line of lines) {
            for (let i = 1; i < line.length; ++i)
                root.takeLine(taken, line[i - 1], line[i], area)
        }
        root.take(taken, root.ofLine, covered.x, covered.y, covered.width, covered.height)
        for (const stop of stops)
            root.take(taken, stop["number"], stop["point"].x - 7, stop["point"].y - 7, 14, 14)
        const placed = {}
        for (const stop of stops) {
            const number = stop["number"]
            const at = stop["point"]
            const width = root.widthOf(stop["name"])
            const isSeen = root.contains(view, Qt.rect(at.x, at.y, 0, 0))
            const free = root.placesAround(width)
                .map(corner => Qt.rect(at.x + corner.x, at.y + corner.y, width, root.height))
                .filter(place => (!isSeen || root.contains(view, place))
                        && root.everyCell(place.x, place.y, width, root.height,
                                          key => !taken.has(key) || taken.get(key) === number))
            if (stop["name"] === "" || free.length === 0)
                continue
            const found = free.find(place => !root.isCovered(place, marks)) || free[0]
            root.take(taken, number, found.x, found.y, width, root.height)
            placed[number] = Qt.rect(found.x - at.x, found.y - at.y, width, root.height)
        }
        return placed
    }

    function contains(outer, inner) {
        return inner.x >= outer.x && inner.x + inner.width <= outer.x + outer.width
               && inner.y >= outer.y && inner.y + inner.height <= outer.y + outer.height
    }

    function isCovered(place, marks) {
        return marks.some(mark => mark.x < place.x + place.width && place.x < mark.x + mark.width
                                  && mark.y < place.y + place.height
                                  && place.y < mark.y + mark.height)
    }
}
