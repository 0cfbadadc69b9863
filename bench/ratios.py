#!/usr/bin/env python3
"""Run the benchmark binary once and print a Markdown table of zeqcv against its
peers: for every workload, the median time of each implementation and the
ratio peer time / zeqcv time (above 1: zeqcv is faster). Repetitions are
interleaved at random, so a burst of load elsewhere hits both sides alike."""
import json
import subprocess
import sys

binary = sys.argv[1] if len(sys.argv) > 1 else "build/bench/zeqcv-bench"
extra = sys.argv[2:]
out = subprocess.run([binary, "--benchmark_format=json", "--benchmark_min_time=0.1",
                      "--benchmark_repetitions=7", "--benchmark_enable_random_interleaving=true",
                      "--benchmark_report_aggregates_only=true"] + extra,
                     check=True, capture_output=True, text=True).stdout
times = {}
for b in json.loads(out)["benchmarks"]:
    if b.get("aggregate_name") != "median":
        continue
    # Wall-clock timed workloads (UseRealTime) carry a "/real_time" suffix.
    workload, _, impl = b["run_name"].removesuffix("/real_time").partition("/")
    scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}[b["time_unit"]]
    times.setdefault(workload, {})[impl] = b["real_time"] * scale

def us(t):
    return f"{t:.3g}" if t < 100 else f"{t:.0f}"

print("| workload | zeqcv (us) | peer | peer (us) | peer / zeqcv |")
print("|---|---:|---|---:|---:|")
for workload, impls in times.items():
    ours = impls.get("zeqcv")
    peers = sorted((k, v) for k, v in impls.items() if k != "zeqcv")
    for peer, t in peers or [("-", None)]:
        if t and ours:
            print(f"| {workload} | {us(ours)} | {peer} | {us(t)} | {t / ours:.2f} |")
        else:
            print(f"| {workload} | {us(ours) if ours else '-'} | {peer} | - | - |")
