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
    # each named reader, and each driver request of the scenario.
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

if os.path.isdir(corpus_dir):
    shutil.rmtree(corpus_dir)
for door, contents in sorted(seeds.items()):
    folder = os.path.join(corpus_dir, door)
    os.makedirs(folder)
    for content in sorted(contents):
        with open(os.path.join(folder, hashlib.sha1(content).hexdigest()[:16]), "wb") as f:
            f.write(content)
    print("%-20s %3d seeds" % (door, len(contents)), file=sys.stderr)
