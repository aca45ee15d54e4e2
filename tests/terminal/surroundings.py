#!/usr/bin/python3
"""What is around a terminal on a vehicle, for scripts/parts-soak.sh: a receiver of satellites at a
pseudo terminal, and a server of VehiclePositions.

    surroundings.py FOLDER VEHICLES

The receiver is FOLDER/receiver and writes RMC once a second. The server's port is in FOLDER/port.
All vehicles move from second to second. FOLDER/requests gets a letter for each request.
"""

import functools
import http.server
import math
import os
import struct
import sys
import threading
import time

CENTRE = (54.50, 11.22)  # of the sample feed coast-line


def varint(number):
    parts = bytearray()
    while number > 0x7F:
        parts.append(number & 0x7F | 0x80)
        number >>= 7
    parts.append(number)
    return bytes(parts)


def number(field, value):
    return varint(field << 3) + varint(value)


def single(field, value):
    return varint(field << 3 | 5) + struct.pack("<f", value)


def block(field, content):
    return varint(field << 3 | 2) + varint(len(content)) + content


def vehicle(which, now):
    angle = (which * 7 + now * 0.02) % (2 * math.pi)
    distance = 0.01 + which % 97 * 0.001
    name = str(10000 + which).encode()
    place = (single(1, CENTRE[0] + distance * math.sin(angle))
             + single(2, CENTRE[1] + distance * math.cos(angle))
             + single(3, (which + int(now)) % 360) + single(5, 8.0))
    position = (block(2, place) + number(4, 2) + number(5, int(now))
                + block(8, block(1, name) + block(2, name)))
    return block(2, block(1, name) + block(4, position))


def message(vehicles, now):
    head = block(1, block(1, b"2.0") + number(2, 0) + number(3, int(now)))
    return head + b"".join(vehicle(which, now) for which in range(vehicles))


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def __init__(self, vehicles, requests, *others):
        self.vehicles = vehicles
        self.requests = requests
        super().__init__(*others)

    def do_GET(self):
        body = message(self.vehicles, time.time())
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)
        with open(self.requests, "a", encoding="ascii") as requests:
            requests.write(".")

    def log_message(self, *_):
        pass


def degrees(value, digits, letters):
    whole = int(abs(value))
    minutes = (abs(value) - whole) * 60
    return f"{whole:0{digits}d}{minutes:07.4f},{letters[0] if value >= 0 else letters[1]}"


def rmc(now):
    angle = now * 0.001
    north = degrees(CENTRE[0] + 0.01 * math.sin(angle), 2, "NS")
    east = degrees(CENTRE[1] + 0.01 * math.cos(angle), 3, "EW")
    utc = time.gmtime(now)
    line = (f"GPRMC,{time.strftime('%H%M%S', utc)}.00,A,{north},{east},12.0,90.0,"
            f"{time.strftime('%d%m%y', utc)},,,A")
    return f"${line}*{functools.reduce(lambda a, b: a ^ b, line.encode()):02X}\r\n".encode()


def receive(folder):
    master, slave = os.openpty()
    os.symlink(os.ttyname(slave), os.path.join(folder, "receiver"))
    while True:
        os.write(master, rmc(time.time()))
        time.sleep(1)


def main():
    folder, vehicles = sys.argv[1], int(sys.argv[2])
    threading.Thread(target=receive, args=[folder], daemon=True).start()
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0),
                                             functools.partial(Handler, vehicles,
                                                               os.path.join(folder, "requests")))
    with open(os.path.join(folder, "port"), "w", encoding="ascii") as port:
        port.write(f"port {server.server_port}\n")
    server.serve_forever()


main()
