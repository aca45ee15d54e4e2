"""A board in an emulator: starts it, takes pictures, taps, and cuts its power."""
import json
import os
import re
import socket
import subprocess
import time


class Board:
    def __init__(self, folder, disk, work, medium=None):
        self.work = work
        self.serial = os.path.join(work, "serial.log")
        self.socket = os.path.join(work, "qmp.sock")
        for path in (self.serial, self.socket):
            if os.path.exists(path):
                os.remove(path)
        # With write-back the emulator's flush is a flush of the guest: what the guest flushed is in the
        # file, what it did not may be lost.
        command = [
            "qemu-system-arm", "-M", "virt,highmem=off", "-cpu", "cortex-a15", "-smp", "2", "-m", "1024",
            # The drivers of screen and touch panel refuse devices of the first form of virtio.
            "-global", "virtio-mmio.force-legacy=false",
            "-nic", "none", "-kernel", os.path.join(folder, "vmlinuz"),
            "-initrd", os.path.join(folder, "initrd.img"),
            "-append", "console=ttyAMA0 systemd.show_status=1"]
        # The emulator gives the last device the first name: the disk is the last one.
        if medium:
            command += ["-drive", f"file={medium},format=raw,if=none,id=m,readonly=on",
                        "-device", "virtio-blk-device,drive=m"]
        command += [
            "-drive", f"file={disk},format=raw,if=none,id=d,cache=writeback",
            "-device", "virtio-blk-device,drive=d", "-device", "virtio-gpu-device,xres=1024,yres=600",
            "-device", "virtio-tablet-device", "-display", "none", "-serial", f"file:{self.serial}",
            "-monitor", "none", "-qmp", f"unix:{self.socket},server=on,wait=off", "-no-reboot"]
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
        self.connection = None

    def uptime(self):
        return time.monotonic() - self.started

    def cut_power(self):
        self.process.kill()
        self.process.wait()
        if self.connection:
            self.connection.close()

    def log(self):
        try:
            with open(self.serial, encoding="utf-8", errors="replace") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def wait_for(self, pattern, seconds):
        """What matches on the serial console in that time; None if nothing does."""
        end = time.monotonic() + seconds
        found = None
        while found is None and time.monotonic() < end and self.process.poll() is None:
            time.sleep(0.2)
            found = re.search(pattern, self.log())
        return found

    def ask(self, name, **arguments):
        if not self.connection:
            self.connection = socket.socket(socket.AF_UNIX)
            for _ in range(100):
                try:
                    self.connection.connect(self.socket)
                    break
                except OSError:
                    time.sleep(0.1)
            self.answers = self.connection.makefile("r", encoding="utf-8")
            self.answers.readline()
            self.ask("qmp_capabilities")
        self.connection.sendall(json.dumps({"execute": name, "arguments": arguments}).encode() + b"\n")
        while True:
            answer = json.loads(self.answers.readline())
            if "event" not in answer:
                return answer

    def picture(self):
        """Width, height and the bytes of the screen, three for each pixel."""
        path = os.path.join(self.work, "screen.ppm")
        self.ask("screendump", filename=path)
        with open(path, "rb") as file:
            magic, size, _, pixels = file.read().split(b"\n", 3)
        if magic != b"P6":
            raise ValueError("no picture")
        width, height = map(int, size.split())
        return width, height, pixels

    def wait_for_frame(self, seconds, colours=200):
        """Waits for a picture of many colours: a console has few. False if none came."""
        end = time.monotonic() + seconds
        while time.monotonic() < end and self.process.poll() is None:
            _, _, pixels = self.picture()
            if len({pixels[i:i + 3] for i in range(0, len(pixels), 3 * 7)}) >= colours:
                return True
            time.sleep(0.5)
        return False

    def tap(self, x, y):
        """Taps at a point of the screen; x and y are shares of its width and height."""
        def position(axis, share):
            return {"type": "abs", "data": {"axis": axis, "value": int(share * 32767)}}

        def button(down):
            return {"type": "btn", "data": {"button": "left", "down": down}}
        self.ask("input-send-event", events=[position("x", x), position("y", y)])
        time.sleep(0.1)
        self.ask("input-send-event", events=[button(True)])
        time.sleep(0.1)
        self.ask("input-send-event", events=[button(False)])
