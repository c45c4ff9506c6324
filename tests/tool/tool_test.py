#!/usr/bin/env python3
"""Drives the built tool:   tool_test.py KIFO SAMPLES [SUITE]

Every wait ends with what is waited for; the bounds are generous and only end a run that hangs.
"""
import json
import os
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unittest
import urllib.request

KIFO, SAMPLES = sys.argv[1:3]
BOUND = 120


def run(*arguments, lines=None):
    text = None if lines is None else "".join(
        line if isinstance(line, str) else json.dumps(line) + "\n" for line in lines)
    return subprocess.run([KIFO, *arguments], input=text, capture_output=True, text=True,
                          timeout=BOUND)


class Server:
    """`kifo serve` on a free port."""

    def __init__(self, *arguments, campaigns):
        self.folder = tempfile.TemporaryDirectory()
        self.log = os.path.join(self.folder.name, "log.jsonl")
        path = os.path.join(self.folder.name, "campaigns.json")
        with open(path, "w") as file:
            json.dump(campaigns, file)
        command = [KIFO, "serve", "--log", self.log, "--campaigns", path, *arguments]
        self.process = subprocess.Popen(command, text=True, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        ready = self.process.stdout.readline().split()
        assert ready[0] == "ready", ready
        self.uri = ready[1]

    def requests(self):
        with urllib.request.urlopen(self.uri + "/requests", timeout=BOUND) as answer:
            return json.load(answer)

    def events(self):
        return [r["body"] for r in self.requests() if r["path"] == "/sdkListenerEvent"]

    def names(self):
        return [event["name"] for event in self.events()]

    def initialize(self, **fields):
        return {"call": "Kifo.initialize",
                "configuration": {"apiUri": self.uri + "/getInAppCommunication",
                                  "listenerUri": self.uri + "/sdkListenerEvent",
                                  "authorization": "token", **fields}}

    def close(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.stdout.read()
        self.process.stdout.close()
        status = self.process.wait(BOUND)
        self.folder.cleanup()
        return status


DEEP = "[" * 100_000 + "]" * 100_000
IDLE = {"wait": "idle", "timeout": 60}
SWITCHES = {"stopAllEvents": False, "offlineQueueSize": 100}
NO_CAMPAIGN = {"model": [], "configuration": SWITCHES}


class ToolCase(unittest.TestCase):
    maxDiff = None

    def serve(self, *arguments, campaigns=NO_CAMPAIGN):
        server = Server(*arguments, campaigns=campaigns)
        self.addCleanup(lambda: server.process.poll() is None and server.close())
        return server

    def home(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return folder.name

    def host(self, *lines, arguments=(), status=0):
        done = run("host", *arguments, lines=lines)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return [json.loads(line) for line in done.stdout.splitlines()]

    @staticmethod
    def of(key, output):
        return [line[key] for line in output if key in line]


class HostLines(ToolCase):
    def test_a_line_that_is_not_understood_is_named_and_the_next_is_carried_out(self):
        bad = ["no json\n", "[1]\n", f'{{"push": {DEEP}}}\n', {"call": "Kifo.fly"}, {"dance": 1}, {"get": "Kifo.colour"},
               {"call": "Kifo.setPushToken", "token": 7}, {"call": "Kifo.setPushToken"},
               {"call": "Kifo.setPushToken", "token": "t", "tokn": "u"},
               {"call": "Kifo.setApnsToken", "deviceToken": "0af"},
               {"set": "Kifo.sendEventStatus", "value": "MAYBE"},
               {"set": "Kifo.apiUri", "value": "x"}, {"location": {"authorization": 5}},
               {"network": "slow"}, {"wait": -1}, {"popup": "close"}, {"popup": "kick"},
               {"call": "Kifo.initialize", "configuration": {"authorization": "no endpoints"}}]
        output = self.host(*bad, {"get": "Kifo.initializeStatus"}, status=2)
        self.assertEqual(len(self.of("error", output)), len(bad), output)
        self.assertEqual(self.of("value", output), ["NOT_INITIALIZED"])
        self.assertEqual(self.of("console", output), [])

    def test_the_status_is_the_scripts_own(self):
        self.assertEqual(self.host({"exit": 7}, {"get": "Kifo.actorId"}, status=7), [])
        self.assertEqual(self.host(status=0), [])

    def test_properties_are_set_and_read(self):
        output = self.host({"set": "Kifo.sendEventStatus", "value": "DISABLED"},
                           {"get": "Kifo.sendEventStatus"}, {"get": "Kifo.networkStatus"},
                           {"get": "Kifo.requestTimeout"}, {"call": "Kifo.isInitialized"})
        self.assertEqual(self.of("value", output), ["DISABLED", "online", None, False])

    def test_a_token_is_taken_as_hexadecimal_digits(self):
        output = self.host({"call": "Kifo.setApnsToken", "deviceToken": "0AfF"},
                           {"get": "Kifo.apnsToken"})
        self.assertEqual(self.of("value", output), ["0aff"])

    def test_an_address_that_is_no_url_ends_the_host_with_a_line(self):
        line = {"call": "Kifo.initialize",
                "configuration": {"apiUri": "nowhere at all", "listenerUri": "nowhere at all",
                                  "authorization": "t"}}
        output = self.host(line, {"get": "Kifo.actorId"}, status=3)
        self.assertIn("Fatal error", output[-1]["error"])


class HostEvents(ToolCase):
    def test_a_first_start_installs_and_tells_of_it_in_order(self):
        server = self.serve()
        output = self.host(server.initialize(actorId="ada"), IDLE,
                           {"get": "Kifo.initializeStatus"}, {"get": "Kifo.actorId"},
                           arguments=["--decisions"])
        self.assertEqual(self.of("value", output), ["INITIALIZED", "ada"])
        self.assertEqual(self.of("callback", output), ["onSuccess"])
        composed = [json.loads(d["parameters"])["name"] for d in self.of("decision", output)
                    if d["kind"] == "composed"]
        told = [name for name in composed if name != "actor_change"]
        self.assertEqual(told, ["install", "sdk_initialize"])
        # Each goes over a connection of its own: the second may arrive before the first.
        self.assertLessEqual(set(told), set(server.names()))
        console = self.of("console", output)
        self.assertEqual(console[0], "Kifo Kifo: Kifo is being initialized")
        self.assertIn("Kifo Kifo: KifoNetworkStatus: ONLINE", console)

    def test_the_short_form_initialises_too(self):
        server = self.serve()
        line = server.initialize()
        line.update(line.pop("configuration"), localOrigin="shop", actorId="bo")
        output = self.host(line, IDLE, {"get": "Kifo.localOrigin"}, {"get": "Kifo.isStarted"})
        self.assertEqual(self.of("value", output), ["shop", False])

    def test_the_world_is_what_the_script_says(self):
        server = self.serve()
        self.host({"device": {"machine": "iPhone13,2", "osVersion": "16.1", "vendorIdentifier": "V",
                              "batteryLevel": 0.25, "diskTotal": 100, "diskAvailable": 40,
                              "timeZone": "Asia/Tokyo"}},
                  {"location": {"authorization": 4, "applicationState": 0, "latitude": 41.5,
                                "longitude": 29.25}},
                  {"permission": 1}, {"defaults": {"kifo_actorId": "stored"}},
                  server.initialize(isBatteryStatusRequired=True, isDiskCapacityRequired=True,
                                    isLocationRequired=True), IDLE,
                  {"call": "KifoEventManager.sendEvent", "eventName": "look",
                   "controller": "HomeScreen", "initialParameters": {"shelf": "7"}}, IDLE)
        event = server.events()[-1]
        wanted = {"name": "look", "shelf": "7", "actorId": "stored", "phone_model": "iPhone 12",
                  "device_os_version": "16.1", "device_id": "V", "battery": "25",
                  "total_disk": "100", "free_disk": "40", "time_zone": "Asia/Tokyo",
                  "push_notification_permission_status": "DENIED"}
        self.assertEqual({key: event.get(key) for key in wanted}, wanted)
        self.assertIn("latitude", event)

    def test_a_screen_reports_itself_and_the_tap_on_a_push_hands_on_its_buttons_action(self):
        server = self.serve()
        data = {"uuid": "u", "code": "c", "actorId": "a", "pushToken": "p", "scenario": "s",
                "buttons": [{"id": "b1", "text": "Buy", "action": {"link": "shop://buy"}}]}
        info = {"data": json.dumps(data), "aps": {"alert": {"title": "Hello", "body": "You"}}}
        output = self.host(server.initialize(), IDLE, {"screen": "appear", "class": "HomeScreen"}, IDLE,
                           {"screen": "disappear", "class": "HomeScreen"}, IDLE,
                           {"push": {"userInfo": info}}, IDLE,
                           {"tap": {"userInfo": info, "actionIdentifier": "b1"}}, IDLE)
        content = next(l["content"] for l in output if l.get("callback") == "contentHandler")
        self.assertEqual((content["title"], content["categoryIdentifier"]),
                         ("Hello", "KifoNotificationCategory"))
        action = next(l["action"] for l in output if l.get("callback") == "actionCallback")
        self.assertEqual(action["link"], "shop://buy")
        self.assertEqual([(e["name"], e.get("page_name")) for e in server.events()[-4:]],
                         [("page_in", "HomeScreen"), ("page_out", "HomeScreen"),
                          ("push_notification_received", None),
                          ("push_notification_clicked", None)])

    def test_a_token_service_answers_late_or_not_at_all(self):
        server = self.serve()
        service = {"token": "late", "delay": 0.05, "kifoTimeout": 30}
        output = self.host(server.initialize(authorization=None, tokenService=service), IDLE,
                           {"get": "Kifo.authorization"})
        self.assertEqual(self.of("value", output), ["late"])
        self.assertIn("getToken", self.of("callback", output))


class HostHomes(ToolCase):
    def test_a_host_that_is_killed_leaves_a_readable_log(self):
        server = self.serve()
        home = self.home()
        process = subprocess.Popen([KIFO, "host", "--home", home, "--decisions"], text=True,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        stored = [{"call": "KifoEventManager.sendEvent", "eventName": f"event_{n}"}
                  for n in range(40)]
        for line in (server.initialize(), IDLE, {"network": "offline"}, *stored):
            process.stdin.write(json.dumps(line) + "\n")
        process.stdin.flush()
        # The start-up's own events are stored as well: the kill meets the ones sent offline.
        requests = set()
        while len(requests) < 10:
            line = process.stdout.readline()
            self.assertIsNone(process.poll())
            decision = json.loads(line).get("decision")
            if decision == "stored" or (isinstance(decision, dict) and decision.get("kind") == "stored"):
                requests.add(line)
        process.kill()
        process.wait(BOUND)
        process.stdin.close()
        process.stdout.close()
        done = run("log", "--home", home)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("event_0", done.stdout)
        self.assertIn("sound", done.stdout)

    def test_many_devices_have_homes_of_their_own_and_say_who_they_are(self):
        server = self.serve()
        home = self.home()
        script = os.path.join(home, "script.jsonl")
        with open(script, "w") as file:
            for line in (server.initialize(), IDLE, {"get": "Kifo.actorId"}):
                file.write(json.dumps(line) + "\n")
        output = self.host(arguments=[script, "--home", home, "--count", "3", "--rate", "50"])
        self.assertEqual({line["device"] for line in output}, {1, 2, 3})
        self.assertEqual(len(set(self.of("value", output))), 3)
        for device in ("1", "2", "3"):
            self.assertTrue(os.path.exists(os.path.join(home, device, "KifoLog.db")))
        self.assertEqual(server.names().count("install"), 3)

    def test_many_devices_are_no_load_on_a_server_elsewhere(self):
        line = {"call": "Kifo.initialize",
                "configuration": {"apiUri": "http://127.0.0.1.example.com/a",
                                  "listenerUri": "http://127.0.0.1/l", "authorization": "t"}}
        output = self.host(line, arguments=["-", "--count", "2"], status=2)
        self.assertEqual(len(self.of("error", output)), 2)


class Watch(ToolCase):
    def setUp(self):
        self.runtime = self.home()
        os.chmod(self.runtime, 0o700)
        self.environment = {**os.environ, "KIFO_WATCH": "1", "XDG_RUNTIME_DIR": self.runtime}

    def start(self, *arguments, **pipes):
        process = subprocess.Popen([KIFO, *arguments], text=True, env=self.environment,
                                   stdout=subprocess.PIPE, **pipes)
        self.addCleanup(lambda: (process.poll() is None and process.kill(), process.communicate()))
        return process

    def watch(self, *arguments):
        return subprocess.run([KIFO, "watch", *arguments], capture_output=True, text=True,
                              env=self.environment, timeout=BOUND)

    def start_host(self):
        """A host that has stored one event without a network."""
        server = self.serve()
        host = self.start("host", stdin=subprocess.PIPE)
        self.tell(host, server.initialize(applicationName="shop"), IDLE, {"network": "offline"},
                  self.event("kept"), IDLE, {"get": "Kifo.actorId"})
        while "value" not in json.loads(host.stdout.readline()):
            pass
        return host

    @staticmethod
    def event(name):
        return {"call": "KifoEventManager.sendEvent", "eventName": name}

    @staticmethod
    def tell(host, *lines):
        for line in lines:
            host.stdin.write(json.dumps(line) + "\n")
        host.stdin.flush()

    def test_a_host_is_found_told_of_and_followed_until_it_is_killed(self):
        host = self.start_host()
        listed = json.loads(self.watch("--list", "--json").stdout)
        self.assertEqual((listed["pid"], listed["application"]), (host.pid, "shop"))
        follower = self.start("watch", "shop", "--json")
        self.assertEqual(json.loads(follower.stdout.readline())["kind"], "host")
        state = json.loads(follower.stdout.readline())
        self.assertEqual(state["rows"][-1]["event"], "kept")
        self.assertGreaterEqual(state["counters"]["waiting"], 1)
        self.tell(host, self.event("looked_at"))
        told = {}
        while ("composed" not in told or
               told.get("stored", {}).get("requestId") != told["composed"]["requestId"]):
            line = json.loads(follower.stdout.readline())
            told[line["kind"]] = line
        self.assertEqual(told["composed"]["event"], "looked_at")
        self.assertEqual(told["composed"]["parameters"]["name"], "looked_at")
        self.assertEqual(told["gated"]["gate"], "network")
        host.kill()
        host.wait(BOUND)
        self.assertEqual(follower.wait(BOUND), 0)
        gone = self.watch()
        self.assertEqual(gone.returncode, 1)
        self.assertIn("No host can be looked into", gone.stdout)
        self.assertEqual(os.listdir(os.path.join(self.runtime, "kifo")), [])

    def test_a_person_reads_columns_and_filters_by_event(self):
        host = self.start_host()
        self.assertIn("INITIALIZED, offline", self.watch("--state").stdout)
        follower = self.start("watch", "--event", "wanted")
        next(line for line in follower.stdout if "kept" in line)
        self.tell(host, self.event("other"), self.event("wanted"))
        rows = []
        for row in map(str.split, follower.stdout):
            if len(row) > 2 and row[1] in ("event", "composed", "gated", "stored"):
                rows.append(row)
            if row[1:2] == ["stored"]:
                break
        self.assertEqual({row[2] for row in rows}, {"wanted"})
        self.assertIn("no host", self.watch("nobody").stderr)


class HostPopups(ToolCase):
    toolkit = "widgets"

    def campaign(self, kind, **fields):
        return {"type": kind, "uuid": "u-" + kind, "maxShowCount": 5, "triggeringEventName": kind,
                "header": {"text": "Title"}, **fields}

    def show(self, item, *actions, decisions=False):
        server = self.serve(campaigns={"model": [item], "configuration": SWITCHES})
        output = self.host(server.initialize(), IDLE,
                           {"call": "KifoEventManager.sendEvent", "controller": "HomeScreen",
                            "eventName": item["type"]}, IDLE, *actions, IDLE,
                           arguments=["--toolkit", self.toolkit,
                                      *(["--decisions"] if decisions else [])])
        return server.events(), output

    def test_a_button_answers_is_handed_to_the_host_and_closes(self):
        item = self.campaign("POPUP", buttons=[{"id": "b1", "text": "One"},
                                               {"id": "b2", "text": "Two"}])
        events, output = self.show(item, {"popup": "button", "id": "b2"})
        shown = next(line for line in output if line.get("popup") == "shown")
        self.assertEqual(shown, {"popup": "shown", "type": "POPUP", "uuid": "u-POPUP",
                                 "title": "Title",
                                 "buttons": [{"id": "b1", "text": "One"},
                                             {"id": "b2", "text": "Two"}], "choices": []})
        self.assertEqual(self.of("popup", output), ["shown", "closed"])
        button = next(l["button"] for l in output if l.get("callback") == "onActionRequired")
        self.assertEqual(button["id"], "b2")
        self.assertEqual([(e["name"], e.get("responseType"), e.get("responseId"))
                          for e in events[-2:]],
                         [("in_app_opened", None, None),
                          ("InAppMessageResponse", "BUTTON", "b2")])

    def test_a_close_is_a_rejection(self):
        events, output = self.show(self.campaign("POPUP", buttons=[]), {"popup": "close"},
                                   decisions=True)
        self.assertEqual(events[-1]["responseType"], "REJECT")
        outcomes = [d["outcome"] for d in self.of("decision", output) if d["kind"] == "campaign"]
        self.assertEqual(outcomes, ["shown", "closed"])

    def test_a_survey_is_answered_with_a_choice_and_a_text(self):
        item = self.campaign("SURVEY", submitButton={"id": "s", "text": "Send"},
                             defaultFreeText={"questionText": "Why?"},
                             choices=[{"id": "a", "text": "A"}, {"id": "b", "text": "B"}])
        events, _ = self.show(item, {"popup": "select", "id": "b"},
                              {"popup": "type", "text": "çünkü 🙂"}, {"popup": "submit"})
        answer = events[-1]
        self.assertEqual((answer["responseType"], answer["responseId"], answer["defaultFreeText"]),
                         ("CHOICE", "b", "çünkü 🙂"))

    def test_a_score_is_slid_to_any_number_and_sent_whole(self):
        item = self.campaign("SCORE", minScore=0, maxScore=100000,
                             submitButton={"id": "s", "text": "Send"})
        for slid, sent in [(77777, 77777), (7.9, 7), (1e9, 100000)]:
            events, _ = self.show(item, {"popup": "slide", "value": slid}, {"popup": "submit"})
            self.assertEqual(events[-1]["sliderValue"], sent)

    def test_the_body_follows_the_campaigns_action(self):
        item = self.campaign("POPUP", buttons=[], action={"link": "shop://offer"})
        events, _ = self.show(item, {"popup": "body"})
        self.assertEqual(events[-1]["responseType"], "BODY")

    def test_a_refusal_is_told_with_its_reason(self):
        _, output = self.show(self.campaign("SURVEY", choices=[{"id": "a"}]), decisions=True)
        last = [d for d in self.of("decision", output) if d["kind"] == "campaign"][-1]
        self.assertEqual((last["outcome"], last["reason"]),
                         ("refused", "choices.count < 2 -> choices count = 1"))


class Serve(ToolCase):
    def test_faults_of_options_and_of_http_meet_requests(self):
        server = self.serve("--status", "500", "--times", "1")
        output = self.host(server.initialize(), IDLE, {"get": "Kifo.initializeStatus"})
        self.assertEqual(self.of("value", output), ["INITIALIZE_FAILED"])
        faults = urllib.request.Request(server.uri + "/faults", method="POST",
                                        data=b'{"status": 401, "on": "api"}')
        urllib.request.urlopen(faults, timeout=BOUND).close()
        output = self.host(server.initialize(), IDLE, {"get": "Kifo.initializeStatus"})
        self.assertEqual(self.of("value", output), ["INITIALIZE_FAILED"])
        with open(server.log) as log:
            self.assertEqual([json.loads(line)["status"] for line in log], [500, 401])

    def test_it_ends_well_when_it_is_told_to(self):
        self.assertEqual(self.serve().close(), 0)

    def test_a_mistake_in_its_options_is_said(self):
        done = run("serve", "--body", "purple")
        self.assertEqual(done.returncode, 1)
        self.assertIn("purple", done.stderr)


class Log(ToolCase):
    def test_it_shows_what_is_stored_and_one_request_whole(self):
        server = self.serve()
        home = self.home()
        self.host({"defaults": {"campaign-uuid": 3}}, server.initialize(), IDLE,
                  {"network": "offline"},
                  {"call": "KifoEventManager.sendEvent", "eventName": "kept"}, IDLE,
                  arguments=["--home", home])
        table = run("log", "--home", home)
        self.assertEqual(table.returncode, 0, table.stderr)
        self.assertIn("kept", table.stdout)
        self.assertRegex(table.stdout, r"campaign-uuid +3")
        self.assertEqual(table.stdout.count("campaign-uuid"), 1)
        self.assertIn("the user was not asked", table.stdout)
        self.assertRegex(table.stdout, r"kifo_actorId +[0-9A-Fa-f-]{36}")
        self.assertRegex(table.stdout, r"composed +[1-9]")
        with sqlite3.connect(os.path.join(home, "KifoLog.db")) as database:
            row = database.execute("select max(ID) from KifoLog").fetchone()[0]
        whole = run("log", "--home", home, "--row", str(row))
        self.assertIn('"name": "kept"', whole.stdout)

    def test_a_home_whose_user_refused_holds_the_refusal_alone(self):
        server = self.serve()
        home = self.home()
        output = self.host(server.initialize(), IDLE, {"call": "Kifo.revokeConsent"}, IDLE,
                           {"call": "Kifo.consent"}, {"call": "Kifo.statistics"},
                           arguments=["--home", home])
        self.assertEqual(self.of("value", output)[0], "REFUSED")
        self.assertEqual(os.listdir(home), ["consent.refused"])
        done = run("log", "--home", home)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("refused", done.stdout)
        self.assertIn("nothing is known of the user", done.stdout)

    def test_no_database_and_a_damaged_one_are_said(self):
        home = self.home()
        self.assertEqual(run("log", "--home", home).returncode, 1)
        with open(os.path.join(home, "KifoLog.db"), "wb") as file:
            file.write(b"this is no database at all" * 100)
        done = run("log", "--home", home)
        self.assertEqual(done.returncode, 1)
        self.assertIn("not a database", done.stderr)


class QuickHostPopups(HostPopups):
    toolkit = "quick"


class Preview(ToolCase):
    toolkit = "widgets"

    def preview(self, campaign):
        path = os.path.join(self.home(), "campaign.json")
        with open(path, "w") as file:
            file.write(campaign if isinstance(campaign, str) else json.dumps(campaign))
        out = path + ".png"
        return run("preview", path, "--out", out, "--width", "320", "--height", "480",
                   "--scale", "2", "--toolkit", self.toolkit), out

    def test_a_campaign_becomes_a_picture_of_the_size_that_was_asked_for(self):
        done, out = self.preview({"type": "POPUP", "uuid": "u", "maxShowCount": 1, "buttons": [],
                                  "triggeringEventName": "e"})
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(out, "rb") as file:
            header = file.read(24)
        self.assertEqual((header[:4], header[16:24]),
                         (b"\x89PNG", (640).to_bytes(4, "big") + (960).to_bytes(4, "big")))

    def test_what_the_sdk_would_not_show_is_explained(self):
        survey = {"type": "SURVEY", "uuid": "u", "maxShowCount": 1}
        popup = {"type": "POPUP", "uuid": "u", "maxShowCount": 1, "buttons": []}
        cases = [("{", "no JSON"), (DEEP, "nested too deeply"),
                 ({"model": [{"maxShowCount": "three"}]},
                  'model[0].maxShowCount must be a whole number, not "three"'),
                 ({"type": "BANNER"}, "BANNER"), ({"type": "POPUP"}, "uuid"),
                 ({**survey, "choices": [{"id": "a"}]}, "choices.count < 2"),
                 ({**popup, "maxShowCount": 0}, "maxShowCount <= 0"),
                 ({**popup, "expireDate": 1600000000}, "\"expireDate\" has passed"),
                 ({"type": "SCORE", "uuid": "u", "maxShowCount": 1, "minScore": 5, "maxScore": 5},
                  "from 5 to 5")]
        for campaign, words in cases:
            done, out = self.preview(campaign)
            self.assertEqual(done.returncode, 1, campaign)
            self.assertIn(words, done.stderr)
            self.assertFalse(os.path.exists(out))

    def test_every_sample_can_be_drawn(self):
        folder = os.path.join(SAMPLES, "campaigns")
        out = os.path.join(self.home(), "popup.png")
        names = sorted(name for name in os.listdir(folder) if name.endswith(".json"))
        self.assertGreaterEqual(len(names), 20)
        for name in names:
            if name.startswith("00-"):  # The switches, without a campaign.
                continue
            done = run("preview", os.path.join(folder, name), "--out", out, "--toolkit",
                       self.toolkit)
            self.assertEqual(done.returncode, 0, name + ": " + done.stderr)


class QuickPreview(Preview):
    toolkit = "quick"


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
