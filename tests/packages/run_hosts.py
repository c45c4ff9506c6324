#!/usr/bin/env python3
"""Runs each host program of a folder against the local server and looks at what the server saw.

    run_hosts.py KIFO FOLDER    KIFO: the tool, whose `kifo serve` is the server
"""
import json
import os
import signal
import subprocess
import sys
import tempfile


def run(tool, host_program, home):
    log = os.path.join(home, "log")
    server = subprocess.Popen([tool, "serve", "--log", log], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True)
    try:
        word, uri = server.stdout.readline().split()
        assert word == "ready", word
        subprocess.run([host_program, uri], check=True, timeout=60,
                       env={**os.environ, "XDG_DATA_HOME": home})
    finally:
        server.send_signal(signal.SIGTERM)
        server.stdout.read()
        assert server.wait(60) == 0
    with open(log, encoding="utf-8") as lines:
        return [json.loads(line) for line in lines]


def main():
    server, folder = sys.argv[1:3]
    hosts = sorted(os.listdir(folder))
    assert hosts
    wrong = 0
    for host in hosts:
        with tempfile.TemporaryDirectory() as home:
            requests = run(server, os.path.join(folder, host), home)
        events = [each["body"] for each in requests if each["path"] == "/sdkListenerEvent"]
        seen = [(each["name"], each.get("items")) for each in events]
        print(host, *seen, sep="\n")
        wrong += seen.count(("basket_opened", 3)) != 1
    return wrong


if __name__ == "__main__":
    sys.exit(main())
