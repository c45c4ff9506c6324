#!/usr/bin/env python3
"""Runs a QML host against the local server until its campaign was shown, and looks at what the
server saw and which libraries the host needs.

    run_quick_host.py KIFO FOLDER    KIFO: the tool, whose `kifo serve` is the server
"""
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 30  # seconds

CAMPAIGN = {
    "model": [{
        "type": "POPUP", "uuid": "9C6E2F5E-0001-4D2B-9B0A-1F5A5B6E0001", "code": "HOST-1",
        "name": "A basket", "triggeringEventName": "basket_opened", "maxShowCount": 1,
        "scenario": "ALL", "header": {"text": "Three things"}, "text": {"text": "In one basket."},
        "bgColor": "#FFFFFF", "buttons": [{"id": "ok", "text": "Pay"}],
    }],
    "configuration": {"id": "host", "stopAllEvents": False, "offlineQueueSize": 200},
}


def events_in(log):
    if not os.path.exists(log):
        return []
    with open(log, encoding="utf-8") as lines:
        requests = [json.loads(line) for line in lines if line.endswith("\n")]
    return [each["body"] for each in requests if each["path"] == "/sdkListenerEvent"]


def wait_for(name, log, host):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end and host.poll() is None:
        if any(event["name"] == name for event in events_in(log)):
            return
        time.sleep(0.05)
    sys.exit(f"no event {name}; seen: {[event['name'] for event in events_in(log)]}")


def run(tool, program, home):
    log, campaigns = os.path.join(home, "log"), os.path.join(home, "campaigns.json")
    with open(campaigns, "w", encoding="utf-8") as file:
        json.dump(CAMPAIGN, file)
    server = subprocess.Popen([tool, "serve", "--log", log, "--campaigns", campaigns],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        word, uri = server.stdout.readline().split()
        assert word == "ready", word
        host = subprocess.Popen([program, uri], env={
            **os.environ, "XDG_DATA_HOME": home, "QT_QPA_PLATFORM": "offscreen",
            "QT_QUICK_BACKEND": "software"})
        try:
            wait_for("in_app_opened", log, host)
        finally:
            host.terminate()
            host.wait(PATIENCE)
        return events_in(log)
    finally:
        server.send_signal(signal.SIGTERM)
        server.stdout.read()
        server.wait(PATIENCE)


def main():
    tool, folder = sys.argv[1:3]
    program = os.path.join(folder, "quick_host")
    needed = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    assert "libkifo_quick" in needed and "Widgets" not in needed, needed
    with tempfile.TemporaryDirectory() as home:
        events = run(tool, program, home)
    seen = [(event["name"], event.get("page_name"), event.get("items")) for event in events]
    print(*seen, sep="\n")
    assert seen.count(("page_in", "MenuScreen", None)) == 1
    assert seen.count(("basket_opened", "MenuScreen", 3)) == 1


if __name__ == "__main__":
    main()
