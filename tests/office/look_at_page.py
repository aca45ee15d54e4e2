#!/usr/bin/env python3
"""Looks at the office's web page with Chromium, and prints what a person sees there as JSON.

usage: look_at_page.py URL FOLDER [SIZE...]

SIZE: such as 1280x800; a picture of each goes to FOLDER. Exit code 77 if there is no Chromium.
"""
import base64
import http.client
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

OPTIONS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--disable-dev-shm-usage", "--hide-scrollbars"]
PATIENCE = 60  # seconds

# Texts of rows, as people see them; and what no text of the office may bring into the page.
SEEN = """
const texts = id => [...document.getElementById(id).rows].map(row => [...row.cells].map(cell => cell.innerText));
const isShown = element => element.getClientRects().length > 0;
const look = mark => {
    const style = getComputedStyle(mark);
    return [mark.getAttribute("class"), style.fill, style.stroke].join(" ");
};
return {
    day: document.getElementById("day").innerText, state: document.getElementById("state").className,
    vehicles: texts("vehicles"), lines: texts("lines"), faults: texts("faults"),
    onMap: [...document.querySelectorAll("#map text")].map(text => text.textContent),
    marks: [...document.querySelectorAll("#map .vehicle")].map(look),
    ways: [...document.querySelectorAll("#map .way")].map(way =>
        [way.textContent, way.points.numberOfItems, getComputedStyle(way).fill]),
    widest: Math.max(0, ...[...document.querySelectorAll("#map .way")].map(way => way.getBBox().width)),
    outside: [...document.querySelectorAll("#map > g")].map(group => group.getCTM()).filter(({e, f}) => {
        const map = document.getElementById("map").getBoundingClientRect();
        return e < 0 || e > map.width || f < 0 || f > map.height;
    }).length,
    waysBelow: [...document.querySelectorAll("#map .way ~ g")].length,
    shown: ["map", "legend", "nowhere"].filter(id => isShown(document.getElementById(id))),
    legend: [...document.querySelectorAll("#legend li")].filter(isShown).map(line =>
        [line.innerText.trim(), look(line.querySelector(".vehicle, .way"))]),
    strange: document.querySelectorAll("main img, main b, main script, main iframe").length,
    wide: document.documentElement.scrollWidth > window.innerWidth};
"""


class Browser:
    def __init__(self, folder):
        driver = shutil.which("chromedriver")
        browser = shutil.which("chromium")
        if not driver or not browser:
            sys.exit(77)
        self.process = subprocess.Popen([driver, "--port=0"], stdout=subprocess.PIPE, text=True,
                                        env={**os.environ, "TMPDIR": folder, "HOME": folder})
        found = None
        while not found:
            line = self.process.stdout.readline()
            if not line:
                raise RuntimeError("chromedriver ended")
            found = re.search(r"started successfully on port (\d+)", line)
        self.port = int(found[1])
        options = {"binary": browser, "args": OPTIONS + [f"--user-data-dir={folder}"]}
        made = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": {"goog:chromeOptions": options}}})
        self.session = f"/session/{made['sessionId']}"

    def ask(self, method, path, body=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=PATIENCE)
        connection.request(method, path, json.dumps(body) if body is not None else None)
        answer = json.loads(connection.getresponse().read())["value"]
        if isinstance(answer, dict) and "error" in answer:
            raise RuntimeError(f"{path}: {answer['message']}")
        return answer

    def open(self, url):
        self.ask("POST", self.session + "/url", {"url": url})

    def run(self, script):
        return self.ask("POST", self.session + "/execute/sync", {"script": script, "args": []})

    def click(self, selector):
        element = self.ask("POST", self.session + "/element", {"using": "css selector", "value": selector})
        self.ask("POST", f"{self.session}/element/{next(iter(element.values()))}/click", {})

    def resize(self, width, height):
        """Of what the page has, without the frame of the window."""
        for _ in range(2):
            inner = self.run("return [window.outerWidth - window.innerWidth, window.outerHeight - window.innerHeight]")
            self.ask("POST", self.session + "/window/rect",
                     {"width": width + inner[0], "height": height + inner[1]})

    def picture(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.ask("GET", self.session + "/screenshot")))

    def end(self):
        self.ask("DELETE", self.session)
        self.process.terminate()
        self.process.wait()


def wait_until_shown(browser):
    end = time.monotonic() + PATIENCE
    while browser.run('return document.getElementById("state").innerText') == "Loading":
        if time.monotonic() > end:
            raise RuntimeError("the page shows nothing")
        time.sleep(0.1)


def main():
    url, folder, sizes = sys.argv[1], sys.argv[2], sys.argv[3:]
    # Chromium makes a socket there, whose path has to be short.
    with tempfile.TemporaryDirectory(dir="/tmp") as profile:
        browser = Browser(profile)
        try:
            browser.open(url)
            wait_until_shown(browser)
            seen = browser.run(SEEN)
            browser.click("#tabs button:nth-child(4)")
            seen["drivers"] = browser.run(SEEN)["lines"]
            for size in sizes:
                browser.resize(*map(int, size.split("x")))
                seen["wide"] = seen["wide"] or browser.run(SEEN)["wide"]
                browser.picture(os.path.join(folder, f"office-{size}.png"))
        finally:
            browser.end()
    json.dump(seen, sys.stdout)


if __name__ == "__main__":
    main()
