"""A headless Chromium, driven by chromedriver over the loopback interface."""

import json
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--disable-dev-shm-usage", "--hide-scrollbars"]


class Browser:
    def __init__(self, chromedriver, chromium):
        self.directory = tempfile.TemporaryDirectory()
        self.driver = subprocess.Popen([chromedriver, "--port=0", "--allowed-ips="],
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.base = f"http://127.0.0.1:{self.read_port()}/session"
        self.base += "/" + self.request("POST", "", self.capabilities(chromium))["sessionId"]

    def read_port(self):
        for line in self.driver.stdout:
            if "started successfully on port" in line:
                return int(line.rstrip(".\n").rsplit(" ", 1)[1])
        raise RuntimeError("chromedriver did not start")

    def capabilities(self, chromium):
        options = {"binary": chromium, "args": FLAGS + ["--user-data-dir=" + self.directory.name]}
        return {"capabilities": {"alwaysMatch": {
            "browserName": "chrome", "goog:chromeOptions": options,
            "goog:loggingPrefs": {"performance": "ALL", "browser": "ALL"}}}}

    def request(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"}, method=method)
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            with opener.open(request, timeout=120) as reply:
                return json.load(reply)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(error.read().decode()) from error

    def devtools(self, command, **parameters):
        return self.request("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def open(self, path, width, height, scheme):
        self.devtools("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                      mobile=width < 600)
        self.devtools("Emulation.setEmulatedMedia",
                      features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.request("POST", "/url", {"url": "file://" + str(path)})

    def run(self, script):
        return self.request("POST", "/execute/sync", {"script": script, "args": []})

    def log(self, kind):
        return self.request("POST", "/se/log", {"type": kind})

    def requests(self):
        """The addresses that were requested since the last call."""
        events = [json.loads(entry["message"])["message"] for entry in self.log("performance")]
        return [event["params"]["request"]["url"] for event in events
                if event["method"] == "Network.requestWillBeSent"]

    def close(self):
        try:
            self.request("DELETE", "")
        finally:
            self.driver.terminate()
            self.driver.wait()
            for _ in range(50):
                try:
                    self.directory.cleanup()
                    return
                except OSError:
                    time.sleep(0.1)
