"use strict";

// Everything from the office is text: it becomes content of text nodes and attributes, never markup.

const pause = 5000; // milliseconds between two questions
const longestSilence = 300000; // milliseconds until a place is stale
const kinds = ["product", "route", "vehicle", "driver"];
const svgNames = "http://www.w3.org/2000/svg";
let shown = kinds[0];
let fleet = null;
let ways = []; // {route, places}

const element = id => document.getElementById(id);

// "2026-03-29 14:05:09", in the time of the browser.
function timeText(time) {
    if (time === null)
        return "";
    const at = new Date(time);
    const local = new Date(at.getTime() - at.getTimezoneOffset() * 60000);
    return local.toISOString().slice(0, 19).replace("T", " ");
}

// A row of cells: texts, or {text, name, title} with the name of a class.
function row(cells) {
    const line = document.createElement("tr");
    for (const cell of cells) {
        const field = document.createElement("td");
        field.textContent = cell.text ?? cell;
        field.className = cell.name ?? "";
        field.title = cell.title ?? "";
        line.append(field);
    }
    return line;
}

const number = text => ({text: String(text), name: "number"});

// What the worst of the devices says; the others in words that the pointer shows.
function deviceCell(devices) {
    const worst = devices.reduce((found, device) => device.level > found.level ? device : found, {level: 0});
    return {
        text: worst.level === 0 ? (devices.length > 0 ? "ready" : "") : `${worst.name}: ${worst.text}`,
        name: worst.level >= 3 ? "bad" : "",
        title: devices.map(device => `${device.name}: ${device.text}`).join("\n")};
}

function showVehicles() {
    element("vehicle-count").textContent = fleet.vehicleCount;
    element("vehicles").replaceChildren(...fleet.vehicles.map(vehicle => row([
        vehicle.name, timeText(vehicle.last), number(vehicle.records),
        {text: String(vehicle.faults), name: vehicle.faults > 0 ? "number bad" : "number"},
        deviceCell(vehicle.devices)])));
}

function showSums() {
    element("key").textContent = shown[0].toUpperCase() + shown.slice(1);
    for (const button of element("tabs").children)
        button.setAttribute("aria-pressed", button.dataset.kind === shown);
    element("lines").replaceChildren(...fleet.sums[shown].map(line => row([
        line.key, number(line.tickets), number(line.sold), number(line.card), number(line.reversed),
        number(line.total), line.currency])));
}

function showFaults() {
    element("fault-count").textContent = fleet.faultCount;
    element("faults").replaceChildren(...fleet.faults.map(fault => row([
        timeText(fault.last), fault.topic, fault.kind, number(fault.number < 0 ? "" : fault.number),
        number(fault.times), fault.reason])));
}

function shape(name, attributes, text = "") {
    const made = document.createElementNS(svgNames, name);
    for (const [key, value] of Object.entries(attributes))
        made.setAttribute(key, value);
    made.textContent = text;
    return made;
}

// From degrees to the view box of the map, with all places in it; one place is in the middle.
function projection(places) {
    const {width, height} = element("map").viewBox.baseVal;
    const margin = 60;
    const middle = places.reduce((sum, place) => sum + place.latitude, 0) / places.length;
    const narrow = Math.max(0.01, Math.cos(middle * Math.PI / 180));
    const least = of => places.reduce((found, place) => Math.min(found, of(place)), Infinity);
    const most = of => places.reduce((found, place) => Math.max(found, of(place)), -Infinity);
    const x = place => place.longitude * narrow;
    const y = place => -place.latitude;
    const [left, right, top, bottom] = [least(x), most(x), least(y), most(y)];
    const scale = Math.min((width - 2 * margin) / Math.max(right - left, 0.002),
        (height - 2 * margin) / Math.max(bottom - top, 0.002));
    return place => ({
        x: width / 2 + (x(place) - (left + right) / 2) * scale,
        y: height / 2 + (y(place) - (top + bottom) / 2) * scale});
}

function withinMap(point) {
    const {width, height} = element("map").viewBox.baseVal;
    const edge = 20;
    const within = (value, most) => Math.min(Math.max(value, edge), most - edge);
    return {x: within(point.x, width), y: within(point.y, height)};
}

function isStale(vehicle) {
    return new Date(fleet.at) - new Date(vehicle.position.at) > longestSilence;
}

// An arrow to the direction of travel, a circle without one.
function vehicleShape(vehicle, at) {
    const name = `vehicle${vehicle.alive ? "" : " away"}${isStale(vehicle) ? " stale" : ""}`;
    const group = shape("g", {transform: `translate(${at.x} ${at.y})`});
    group.append(shape("title", {}, `${vehicle.name}, ${timeText(vehicle.position.at)}`));
    group.append(vehicle.position.direction === null ? shape("circle", {class: name, r: 10})
        : shape("path", {class: name, d: "M0 -16 L11 12 L0 6 L-11 12 Z",
            transform: `rotate(${vehicle.position.direction})`}));
    group.append(shape("text", {x: 21, y: 10}, vehicle.name.split("/")[1]));
    return group;
}

// The pointer shows the name of the route.
function wayShape(way, at) {
    const points = way.places.map(at).map(point => `${point.x.toFixed(1)},${point.y.toFixed(1)}`);
    const line = shape("polyline", {class: "way", points: points.join(" ")});
    line.append(shape("title", {}, way.route));
    return line;
}

function showMap() {
    const placed = fleet.vehicles.filter(vehicle => vehicle.position);
    const isEmpty = placed.length === 0 && ways.length === 0;
    element("map").toggleAttribute("hidden", isEmpty);
    element("legend").hidden = isEmpty;
    element("way-key").hidden = ways.length === 0;
    element("nowhere").hidden = placed.length > 0;
    // A vehicle beyond the routes is at the edge: one wrong place does not make all others small.
    const at = projection(ways.length > 0 ? ways.flatMap(way => way.places) : placed.map(vehicle => vehicle.position));
    element("map").replaceChildren(...ways.map(way => wayShape(way, at)),
        ...placed.map(vehicle => vehicleShape(vehicle, withinMap(at(vehicle.position)))));
}

function show() {
    element("day").textContent = fleet.day;
    showVehicles();
    showSums();
    showFaults();
    showMap();
}

function report(text, isBad) {
    element("state").textContent = text;
    element("state").className = isBad ? "bad" : "";
}

async function askForWays() {
    try {
        const lines = await (await fetch("routes.json")).json();
        ways = lines.map(({route, points}) => ({
            route,
            places: points.flatMap((latitude, at) => at % 2 === 0 ? [{latitude, longitude: points[at + 1]}] : [])}));
    } catch {
        setTimeout(askForWays, pause);
    }
}

async function ask() {
    try {
        const answer = await fetch("fleet.json");
        const found = await answer.json();
        if (!answer.ok)
            throw new Error(found.problem);
        fleet = found;
        show();
        report(`As of ${timeText(fleet.at)}`, false);
    } catch (problem) {
        report(`Not up to date: ${problem.message}`, true);
    }
    setTimeout(ask, pause);
}

for (const kind of kinds) {
    const button = document.createElement("button");
    button.textContent = `By ${kind}`;
    button.dataset.kind = kind;
    button.addEventListener("click", () => {
        shown = kind;
        if (fleet !== null)
            showSums();
    });
    element("tabs").append(button);
}
askForWays().then(ask);
