#!/usr/bin/env python3
"""Runs each host program of a folder against the local server and looks at what the server saw.

    run_hosts.py KIFO FOLDER    KIFO: the tool, whose `kifo serve` is the server

A host ends by itself, or is ended when its campaign was shown, which is what a QML host waits for.
"""
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds
CAMPAIGNS = {
    "model": [{
        "type": "POPUP", "uuid": "9C6E2F5E-0001-4D2B-9B0A-1F5A5B6E0001", "maxShowCount": 1,
        "triggeringEventName": "basket_opened", "header": {"text": "Three things"},
        "buttons": [{"id": "ok", "text": "Pay"}],
    }],
    "configuration": {"id": "host", "stopAllEvents": False, "offlineQueueSize": 200},
}


def events_in(log):
    if not os.path.exists(log):
        return []
    with open(log, encoding="utf-8") as lines:
        requests = [json.loads(line) for line in lines if line.endswith("\n")]
    events = [each["body"] for each in requests if each["path"] == "/sdkListenerEvent"]
    return [(each["name"], each.get("page_name"), each.get("items")) for each in events]


def wait_for(host, log):
    """Until the host has ended well or its campaign was shown."""
    end = time.monotonic() + PATIENCE
    while host.poll() is None and time.monotonic() < end:
        if any(name == "in_app_opened" for name, _, _ in events_in(log)):
            return
        time.sleep(0.05)
    assert host.returncode == 0, f"{host.args} ended with {host.returncode}: {events_in(log)}"


def run(tool, program, home):
    log, campaigns = os.path.join(home, "log"), os.path.join(home, "campaigns.json")
    with open(campaigns, "w", encoding="utf-8") as file:
        json.dump(CAMPAIGNS, file)
    server = subprocess.Popen([tool, "serve", "--log", log, "--campaigns", campaigns],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        word, uri = server.stdout.readline().split()
        assert word == "ready", word
        host = subprocess.Popen([program, uri], env={
            **os.environ, "XDG_DATA_HOME": home, "QT_QPA_PLATFORM": "offscreen",
            "QT_QUICK_BACKEND": "software"})
        try:
            wait_for(host, log)
        finally:
            host.terminate()
            host.wait(PATIENCE)
    finally:
        server.send_signal(signal.SIGTERM)
        server.stdout.read()
        assert server.wait(PATIENCE) == 0
    return events_in(log)


def main():
    tool, folder = sys.argv[1:3]
    hosts = sorted(os.listdir(folder))
    assert hosts
    for host in hosts:
        program = os.path.join(folder, host)
        needed = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
        page = "MenuScreen" if "libkifo_quick" in needed else None
        with tempfile.TemporaryDirectory() as home:
            seen = run(tool, program, home)
        print(host, *seen, sep="\n")
        assert seen.count(("basket_opened", page, 3)) == 1
        if page:
            assert "Widgets" not in needed, needed
            assert seen.count(("page_in", page, None)) == 1
            assert any(name == "in_app_opened" for name, _, _ in seen)


if __name__ == "__main__":
    main()
