#!/usr/bin/env python3
"""Run the benchmark binary and print a Markdown table of zeqcv against its
peers: for every workload, the median time of each implementation and the
ratio peer time / zeqcv time (above 1: zeqcv is faster). Repetitions are
interleaved at random, so a burst of load elsewhere hits both sides alike.

    ratios.py BINARY [--tiers avx2,avx512] [benchmark options...]

With --tiers the binary runs once per instruction-set tier (ZEQCV_ISA set
to each in turn; the peers are timed again in each run) and the table has a
time and a ratio column per tier."""
import json
import os
import subprocess
import sys

args = sys.argv[1:]
binary = args.pop(0) if args and not args[0].startswith("-") else "build/bench/zeqcv-bench"
tiers = [None]
if "--tiers" in args:
    i = args.index("--tiers")
    tiers = args[i + 1].split(",")
    del args[i:i + 2]


def run(tier):
    env = dict(os.environ)
    if tier:
        env["ZEQCV_ISA"] = tier
    out = subprocess.run([binary, "--benchmark_format=json", "--benchmark_min_time=0.1",
                          "--benchmark_repetitions=7", "--benchmark_enable_random_interleaving=true",
                          "--benchmark_report_aggregates_only=true"] + args,
                         check=True, capture_output=True, text=True, env=env).stdout
    times = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") != "median":
            continue
        # Wall-clock timed workloads (UseRealTime) carry a "/real_time" suffix.
        workload, _, impl = b["run_name"].removesuffix("/real_time").partition("/")
        scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}[b["time_unit"]]
        times.setdefault(workload, {})[impl] = b["real_time"] * scale
    return times


def us(t):
    return f"{t:.3g}" if t < 100 else f"{t:.0f}"


runs = [run(t) for t in tiers]
if tiers == [None]:
    print("| workload | zeqcv (us) | peer | peer (us) | peer / zeqcv |")
    print("|---|---:|---|---:|---:|")
else:
    cols = " | ".join(f"zeqcv {t} (us) | peer (us) | ratio {t}" for t in tiers)
    print(f"| workload | peer | {cols} |")
    print("|---|---|" + "---:|---:|---:|" * len(tiers))
for workload in sorted(runs[0]):
    peers = sorted(k for k in runs[0][workload] if k != "zeqcv") or ["-"]
    for peer in peers:
        cells = []
        for times in runs:
            impls = times.get(workload, {})
            ours, t = impls.get("zeqcv"), impls.get(peer)
            ratio = f"{t / ours:.2f}" if t and ours else "-"
            cells.append((us(ours) if ours else "-", us(t) if t else "-", ratio))
        if tiers == [None]:
            o, p, r = cells[0]
            print(f"| {workload} | {o} | {peer} | {p} | {r} |")
        else:
            print(f"| {workload} | {peer} | " + " | ".join(" | ".join(c) for c in cells) + " |")
