"""Runs whole programs beside one another: time, peak memory, opens, reads and bytes read."""

import os
import re
import subprocess
import tempfile
import time

READS = re.compile(r"(?:pread64|read)\(\d+<(?P<path>/[^>]*)>.*= (?P<count>\d+)$")
OPENS = re.compile(r"open(?:at)?\(.*\"(?P<path>[^\"]*)\".*= \d+")


def run(commands):
    """Runs commands one after the other; answers wall and processor seconds, and peak bytes."""
    wall = cpu = 0.0
    peak = 0
    for command in commands:
        start = time.perf_counter()
        with open(os.devnull, "wb") as nothing:
            child = subprocess.Popen(command, stdout=nothing)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        wall += time.perf_counter() - start
        cpu += usage.ru_utime + usage.ru_stime
        peak = max(peak, usage.ru_maxrss * 1024)
        if child.returncode != 0:
            raise RuntimeError(f"{command[0]} answered {child.returncode}")
    return {"wall": wall, "cpu": cpu, "peak": peak}


def compare(contenders, rounds):
    """Runs the contenders in turn, so that whatever else the machine does meets them all alike.

    Answers the fastest run of each. Other programs only ever add time.
    """
    best = {}
    for number in range(rounds + 1):
        for name, commands in contenders.items():
            result = run(commands)
            if number == 0:
                continue  # only fills the caches
            known = best.setdefault(name, result)
            best[name] = {key: min(known[key], result[key]) for key in result}
    return best


def trace(commands, directory):
    """Opens and reads of the files in the directory, and the bytes read.

    They are the same whether or not the files are in the system's cache.
    """
    opens = reads = count = 0
    for command in commands:
        with tempfile.TemporaryDirectory() as logs:
            # A log for each thread, so that every call is on one line.
            traced = ["strace", "-ff", "-qq", "-y", "-s", "0", "-e",
                      "trace=open,openat,read,pread64", "-e", "signal=none", "-o",
                      os.path.join(logs, "log")]
            subprocess.run(traced + command, stdout=subprocess.DEVNULL, check=True)
            for log in os.scandir(logs):
                with open(log, encoding="utf-8", errors="replace") as lines:
                    for line in lines:
                        if (read := READS.search(line)) and read["path"].startswith(directory):
                            reads += 1
                            count += int(read["count"])
                        elif OPENS.search(line) and f"<{directory}" in line:
                            opens += 1
    return {"opens": opens, "reads": reads, "bytes": count}
