#!/usr/bin/env python3
"""Times `dorvik-cli duplicates --json` against jdupes, rdfind and rmlint (those installed) on
one corpus, side by side: each run goes through every tool in turn, so a change in the machine's
load touches them all. Prints the median wall time of the runs, each tool's ratio to jdupes, the
number of duplicate files each found, whether Dorvik's files are jdupes's, and the floor that
SHA-256 sets: the bytes Dorvik must hash over the processors times one processor's rate.

    bench/duplicates-bench.py [--runs 5] [--corpus DIR] [--gigabytes 5.5] [--keep]

Without --corpus the corpus is made with dorvik-make-duplicate-corpus (seed 1) in a temporary
folder under /tmp and removed at the end (--keep keeps it). Needs a release build.
"""

import argparse
import collections
import hashlib
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CLI = os.path.join(ROOT, "build/src/cli/dorvik-cli")
MAKE = os.path.join(ROOT, "build/bench/dorvik-make-duplicate-corpus")
MIN_SIZE = 1048576
HEAD = 65536


def load():
    return " ".join(open("/proc/loadavg").read().split()[:3])


def inode_of(path):
    st = os.lstat(path)
    return (st.st_dev, st.st_ino)


def big_inodes(paths):
    """The inodes of the paths of 1 MiB and more: a hard link counts once, whichever name."""
    return {inode_of(p) for p in paths if os.lstat(p).st_size >= MIN_SIZE}


def dorvik_files(out, work):
    groups = json.loads(out)["groups"]
    return [f["path"] for g in groups for f in g["files"]]


def jdupes_files(out, work):
    return [line for line in out.splitlines() if line]


def rdfind_files(out, work):
    paths = []
    for line in open(os.path.join(work, "rdfind.txt"), errors="surrogateescape"):
        if line.startswith("#") or not line.strip():
            continue
        fields = line.rstrip("\n").split(" ", 7)
        paths.append(fields[7])
    return paths


def rmlint_files(out, work):
    entries = json.load(open(os.path.join(work, "rmlint.json")))
    return [e["path"] for e in entries if isinstance(e, dict) and e.get("type") == "duplicate_file"]


def tools(corpus, work):
    table = {
        "dorvik": ([CLI, "duplicates", "--json", corpus], dorvik_files),
        "jdupes": (["jdupes", "-r", "-q", corpus], jdupes_files),
        "rdfind": (["rdfind", "-dryrun", "true", "-outputname", os.path.join(work, "rdfind.txt"),
                    corpus], rdfind_files),
        "rmlint": (["rmlint", "-o", "json:" + os.path.join(work, "rmlint.json"), "-T", "df",
                    corpus], rmlint_files),
    }
    present = {}
    for name, (command, parse) in table.items():
        if shutil.which(command[0]) or os.access(command[0], os.X_OK):
            present[name] = (command, parse)
        else:
            print(f"{name}: not installed")
    return present


def bytes_to_hash(corpus):
    """What Dorvik's stages read: 64 KiB of every file that shares its length with another, and
    the whole of every file that shares its first 64 KiB with another of that length. A hard link
    counts once, as in a scan."""
    by_length = collections.defaultdict(list)
    seen = set()
    for folder, _, names in os.walk(corpus):
        for name in sorted(names):
            path = os.path.join(folder, name)
            st = os.lstat(path)
            if st.st_size < MIN_SIZE or (st.st_dev, st.st_ino) in seen:
                continue
            seen.add((st.st_dev, st.st_ino))
            by_length[st.st_size].append(path)
    total = 0
    for length, paths in by_length.items():
        if len(paths) < 2:
            continue
        heads = collections.defaultdict(list)
        for path in paths:
            with open(path, "rb") as f:
                heads[hashlib.sha256(f.read(HEAD)).digest()].append(path)
            total += min(HEAD, length)
        total += sum(length * len(same) for same in heads.values() if len(same) > 1)
    return total


def sha256_rate():
    """One processor's SHA-256 rate in bytes a second, by OpenSSL's own measure on 1 MiB blocks."""
    out = subprocess.run(["openssl", "speed", "-seconds", "3", "-bytes", "1048576", "-evp",
                          "sha256"], capture_output=True, text=True).stdout
    for line in out.splitlines():
        if line.startswith("sha256"):
            return float(line.split()[-1].rstrip("k")) * 1000
    sys.exit("could not measure SHA-256 with openssl speed")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--corpus")
    parser.add_argument("--gigabytes", type=float, default=5.5)
    parser.add_argument("--keep", action="store_true")
    args = parser.parse_args()
    if not os.access(CLI, os.X_OK) or not os.access(MAKE, os.X_OK):
        sys.exit("build first: scripts/build.sh")

    made = None
    corpus = args.corpus
    if corpus is None or not os.path.isdir(corpus):
        made = corpus or tempfile.mkdtemp(prefix="dorvik-dup-corpus-", dir="/tmp")
        corpus = made
        subprocess.run([MAKE, corpus, "--seed", "1", "--gigabytes", str(args.gigabytes)],
                       check=True)
    work = tempfile.mkdtemp(prefix="dorvik-dup-bench-")
    try:
        present = tools(corpus, work)
        cores = os.cpu_count()
        print(f"{cores} processors; load before: {load()}")
        outputs = {}
        for name, (command, _) in present.items():  # one warm-up run each fills the caches
            outputs[name] = subprocess.run(command, capture_output=True, text=True, cwd=work,
                                           errors="surrogateescape").stdout
        times = collections.defaultdict(list)
        cpu = collections.defaultdict(list)  # user and system seconds: what the load cannot stretch
        for _ in range(args.runs):
            for name, (command, _) in present.items():
                before = os.times()
                start = time.perf_counter()
                subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               cwd=work, check=False)
                times[name].append(time.perf_counter() - start)
                after = os.times()
                cpu[name].append(after.children_user + after.children_system
                                 - before.children_user - before.children_system)
        print(f"load after {args.runs} runs: {load()}")

        found = {name: big_inodes(parse(outputs[name], work))
                 for name, (_, parse) in present.items()}
        reference = statistics.median(times["jdupes"]) if "jdupes" in times else None
        print(f"\n{'tool':8} {'median s':>9} {'÷ jdupes':>9} {'CPU s':>7} {'dup files ≥1 MiB':>17}")
        for name in present:
            median = statistics.median(times[name])
            ratio = f"{median / reference:.2f}" if reference else "-"
            print(f"{name:8} {median:9.3f} {ratio:>9} {statistics.median(cpu[name]):7.3f}"
                  f" {len(found[name]):17}")
        if "jdupes" in found:
            same = found["dorvik"] == found["jdupes"]
            print(f"\nDorvik's duplicate files are jdupes's: {'yes' if same else 'NO'}"
                  + ("" if same else f" (only Dorvik: {len(found['dorvik'] - found['jdupes'])},"
                                     f" only jdupes: {len(found['jdupes'] - found['dorvik'])})"))

        hashed = bytes_to_hash(corpus)
        rate = sha256_rate()
        floor = hashed / (cores * rate)
        dorvik = statistics.median(times["dorvik"])
        print(f"bytes to hash: {hashed / 1e9:.2f} GB; SHA-256 on one processor: "
              f"{rate / 1e9:.2f} GB/s; floor on {cores}: {floor:.3f} s; "
              f"Dorvik ÷ floor: {dorvik / floor:.2f}; Dorvik's CPU ÷ the floor's CPU "
              f"({floor * cores:.3f} s): {statistics.median(cpu['dorvik']) / (floor * cores):.2f}")
    finally:
        shutil.rmtree(work, ignore_errors=True)
        if made and not args.keep:
            shutil.rmtree(made, ignore_errors=True)


if __name__ == "__main__":
    main()
