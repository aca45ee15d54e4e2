#!/usr/bin/env python3
"""A bad network between vehicles and broker: delays what passes, stops for a while, cuts connections in the
middle of a message.

usage: bad_network.py LISTEN CONNECT SECONDS SEED

Passes connections to port LISTEN of the loopback on to port CONNECT. After SECONDS it delays and cuts nothing
more. Prints what it did when it gets SIGTERM.
"""
import asyncio
import random
import signal
import sys

MEAN_BYTES = 40000  # between two cuts of a connection
MOST_DELAY = 0.3  # seconds
STALL = 3.0


class Network:
    def __init__(self, port, seconds, seed):
        self.port, self.random = port, random.Random(seed)
        self.is_bad = seconds > 0
        self.connections = self.delayed = self.stalled = self.cut = 0
        asyncio.get_running_loop().call_later(seconds, self.become_good)

    def become_good(self):
        self.is_bad = False

    async def hold(self):
        """One of three packets is late, one of a hundred very late."""
        chance = self.random.random()
        if chance < 0.01:
            self.stalled += 1
            await asyncio.sleep(STALL)
        elif chance < 0.33:
            self.delayed += 1
            await asyncio.sleep(self.random.uniform(0, MOST_DELAY))

    async def pass_on(self, reader, writer, left):
        """Until one side ends, or so many bytes have passed."""
        while data := await reader.read(4096):
            if self.is_bad:
                await self.hold()
                if len(data) > left:
                    writer.write(data[:int(left)])
                    self.cut += 1
                    return
                left -= len(data)
            writer.write(data)
            await writer.drain()

    async def connect(self, reader, writer):
        self.connections += 1
        writers = [writer]
        try:
            far_reader, far_writer = await asyncio.open_connection("127.0.0.1", self.port)
            writers.append(far_writer)
            ways = [asyncio.create_task(self.pass_on(*way, self.random.expovariate(1 / MEAN_BYTES)))
                    for way in ((reader, far_writer), (far_reader, writer))]
            await asyncio.wait(ways, return_when=asyncio.FIRST_COMPLETED)
            for way in ways:
                way.cancel()
            await asyncio.gather(*ways, return_exceptions=True)
        except OSError:
            pass  # the broker is away
        for each in writers:
            each.transport.abort()


async def main():
    listen, connect, seconds, seed = map(int, sys.argv[1:])
    network = Network(connect, seconds, seed)
    end = asyncio.Event()
    asyncio.get_running_loop().add_signal_handler(signal.SIGTERM, end.set)
    async with await asyncio.start_server(network.connect, "127.0.0.1", listen, backlog=1000):
        await end.wait()
        print(f"{network.connections} connections, {network.delayed} packets delayed, {network.stalled} "
              f"stopped, {network.cut} cut off", flush=True)


if __name__ == "__main__":
    asyncio.run(main())
