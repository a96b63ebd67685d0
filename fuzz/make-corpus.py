#!/usr/bin/env python3
"""Builds the fuzzers' seed corpora (fuzz/corpus/<door>/) from the checked
scenarios: each seed is one piece of outside text that a scenario hands to the
plug-in or to the tools, in the form its fuzzer reads (fuzz/*Fuzzer.cpp).

    python3 fuzz/make-corpus.py        (re-run after scenarios change)
"""
import hashlib
import json
import os
import shutil
import sys

root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
scenarios_dir = os.path.join(root, "scenarios")
corpus_dir = os.path.join(root, "fuzz", "corpus")
CUT = "\n--\n"
# The data store's tables (DataStoreFuzzer.cpp).
TABLES = ["Music", "Timer", "Task", "Profile", "Commerce", "MorningBrief", "Recipe", "ShoppingList"]


def text(value):
    return value if isinstance(value, str) else json.dumps(value, separators=(",", ":"))


seeds = {}


def seed(door, content):
    if isinstance(content, str):
        content = content.encode()
    seeds.setdefault(door, set()).add(content)


for name in sorted(os.listdir(scenarios_dir)):
    if not name.endswith(".json"):
        continue
    path = os.path.join(scenarios_dir, name)
    with open(path, encoding="utf-8") as f:
        raw = f.read()
    scenario = json.loads(raw)
    seed("scenario", raw)
    device = scenario.get("device") or {}
    if device:
        seed("device-description", json.dumps(device, indent=1))
    engine = scenario.get("engine") or {}
    turns = scenario.get("turns") or []

    # The data store, one line per row, after the line that names its reader:
    # each named reader, and each driver request of the scenario. For the
    # first scenario with rows, each named reader again with the tables that
    # the scenario leaves out taken out of the store ("-Table"): a few seeds,
    # as the store's schema changes between an input that takes a table out
    # and the next one that does not, which costs more than a whole input.
    rows = []
    for table, table_rows in (device.get("datastore") or {}).items():
        for row in table_rows:
            cells = [table]
            for column, value in row.items():
                cells.append("%s=%s" % (column, ("#%d" % value) if isinstance(value, int) else value))
            rows.append("|".join(cells))
    if rows:
        readers = ["music", "timer", "facets", "nlu", "mode"]
        for turn in turns:
            for event in turn.get("server") or []:
                if event.get("type") == "driverRequest":
                    readers.append(json.dumps(event.get("request")))
        for reader in readers:
            seed("data-store", reader + "\n" + "\n".join(rows) + "\n")
        if not any(b"\n-" in content for content in seeds["data-store"]):
            missing = ["-" + table for table in TABLES if table not in device["datastore"]]
            for reader in readers[:5]:
                seed("data-store", reader + "\n" + "\n".join(rows + missing) + "\n")

    # Location and weather files.
    for entry in device.get("files") or []:
        if entry.get("name") in ("AccInfoData.txt", "AccInfoPrev.txt"):
            seed("location-file", entry["text"] if "text" in entry else json.dumps(entry.get("json")))

    # Private data pairs, of the engine and of every turn.
    pairs = list(engine.get("privateData") or [])
    for turn in turns:
        pairs += turn.get("privateData") or []
    for pair in pairs:
        seed("private-data", "%s%s%s" % (pair.get("key") or "", CUT, pair.get("data") or ""))

    # Server events: driver requests, and each turn's routing.
    first_asr = ""
    for turn in turns:
        asr, nlu, parse = "", "", ""
        for event in turn.get("server") or []:
            kind = event.get("type")
            if kind == "asr":
                asr = event.get("text") or ""
                first_asr = first_asr or asr
            elif kind == "nlu":
                nlu = event.get("text") or ""
            elif kind == "driverRequest":
                seed("driver-request", json.dumps(event.get("request")))
                parse = json.dumps({"driverRequest": event.get("request")}, separators=(",", ":"))
                seed("result-routing", asr + CUT + nlu + CUT + parse + CUT)
            elif kind == "action":
                action = {k: event.get(k, "") for k in ("agent", "actionType", "commandName", "actionName", "spokenText")}
                raw_json = event.get("rawJson")
                action["rawJson"] = raw_json if isinstance(raw_json, str) else ("" if raw_json is None else text(raw_json))
                parse = json.dumps({"action": action}, separators=(",", ":"))
                seed("result-routing", asr + CUT + nlu + CUT + parse + CUT)
        if asr and not parse:
            seed("result-routing", asr + CUT + nlu + CUT + CUT)

    # The command walk, with the first recognised text.
    commands = engine.get("commands") or []
    if commands:
        lines = [first_asr]
        for c in commands:
            command = c.get("command")
            lines.append("\t".join(str(x) for x in (
                c.get("id", 0), c.get("type", 0), c.get("format", 0),
                "<null>" if command is None else command, c.get("param") or "", c.get("domain", 0))))
        seed("command-list", "\n".join(lines))

# The case builder's log door (CaseLogFuzzer.cpp): the plug-in's log that
# marl-sim leaves after playing each scenario, a line "--", and the daemon's
# log it writes with --daemon-log, cut into inputs of at most 8 KB, in the
# virtual appliance's form and in the platform log reader's threadtime form.
# It needs a build (MARL_BUILD_DIR, else build/); without one the seeds that
# are there are kept.
import re
import subprocess
import tempfile

LOG_LINE = re.compile(r"^(\d{4})-(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}) (\w)/(.*?)\(\s*(\d+)\): (.*)$")
# The device data pulled at each start, the same in every scenario.
NOISE = re.compile(r"^(RetrieveDeviceDataEngineImpl|DeviceDataRetrieveManager|DaDevice|DANluParamsGen|OrvaneMaster|"
                   r"VcEngineJsonConverter|DADeviceDataAutoRefresher|CustomizedDataRetrieveManager)")


def threadtime(lines):
    out, prefix = [], None
    for line in lines:
        m = LOG_LINE.match(line)
        if m:
            prefix = "%s+0000 %s/%-8s(P%5d, T%5d): " % (m.group(2), m.group(3), m.group(4), int(m.group(5)),
                                                         int(m.group(5)) + 1)
            line = m.group(6)
        out.append((prefix or "") + line)
    return out


def steady(lines, folder):
    """The same seeds from every run: a fixed day, one process, no pointers or
    folders of the run, and each line 1 ms after the one before unless the log
    waited a second or more (then the wait, in whole seconds)."""
    out, clock, last = [], 0, None
    for line in lines:
        m = LOG_LINE.match(line)
        if not m:
            out.append(line)
            continue
        h, mi, sec = m.group(2)[6:].split(":")
        ms = (int(h) * 3600 + int(mi) * 60 + float(sec)) * 1000
        gap = 0 if last is None else ms - last
        clock += round(gap, -3) if gap >= 1000 else 1
        last = ms
        message = re.sub(r"0x[0-9a-f]+", "0x55d0c0ffee00", m.group(6).replace(folder, "/home/owner/device"))
        message = re.sub(r"pid\(\d+\)", "pid(4711)", message)
        out.append("2026-01-15 %02d:%02d:%02d.%03d %s/%s( 4711): %s" % (
            9 + clock // 3600000, clock // 60000 % 60, clock // 1000 % 60, clock % 1000, m.group(3), m.group(4),
            message))
    return out


def log_seeds(plugin, daemon, folder):
    kept = [l for l in steady(plugin, folder) if not (LOG_LINE.match(l) and NOISE.match(LOG_LINE.match(l).group(6)))]
    daemon = steady(daemon, folder)
    window, size, first = [], 0, True
    for line in kept + [None]:
        if line is not None and size + len(line) < 6000:
            window.append(line)
            size += len(line) + 1
            continue
        for form in (window, threadtime(window)) if first else (window,):
            tail = "\n".join(daemon)[:8000 - sum(len(l) + 1 for l in form) - len(CUT)]
            seed("case-log", "\n".join(form) + CUT + tail[:tail.rfind("\n") + 1])
        first = False
        window, size = ([line], len(line) + 1) if line is not None else ([], 0)


sim = os.path.join(os.environ.get("MARL_BUILD_DIR", os.path.join(root, "build")), "bin", "marl-sim")
if os.access(sim, os.X_OK):
    for name in sorted(os.listdir(scenarios_dir)):
        if not name.endswith(".json"):
            continue
        with tempfile.TemporaryDirectory() as tmp:
            subprocess.run([sim, "run", os.path.join(scenarios_dir, name), "--fast", "--device", tmp + "/dev",
                            "--daemon-log", tmp + "/daemon.log"], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, timeout=300)
            with open(tmp + "/dev/log/dlog.log", encoding="utf-8", errors="replace") as f:
                plugin = f.read().splitlines()
            with open(tmp + "/daemon.log", encoding="utf-8", errors="replace") as f:
                daemon = f.read().splitlines()
            log_seeds(plugin, daemon, tmp + "/dev")
else:
    print("no %s: the case-log seeds that are there are kept" % sim, file=sys.stderr)
    kept = os.path.join(corpus_dir, "case-log")
    for seed_name in sorted(os.listdir(kept)) if os.path.isdir(kept) else []:
        with open(os.path.join(kept, seed_name), "rb") as f:
            seed("case-log", f.read())

if os.path.isdir(corpus_dir):
    shutil.rmtree(corpus_dir)
for door, contents in sorted(seeds.items()):
    folder = os.path.join(corpus_dir, door)
    os.makedirs(folder)
    for content in sorted(contents):
        with open(os.path.join(folder, hashlib.sha1(content).hexdigest()[:16]), "wb") as f:
            f.write(content)
    print("%-20s %3d seeds" % (door, len(contents)), file=sys.stderr)
