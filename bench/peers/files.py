#!/usr/bin/env python3
"""Loading of drawings beside the peers that are installed, as ratios: files.py BUILD_FOLDER DRAWING...

The host's own measure (bench_files) runs first; then dime, dxflib and python3-ezdxf load the same files.
"""
import pathlib
import re
import subprocess
import sys
import time

BUILD = pathlib.Path(sys.argv[1])


def printed(program, drawing):
    if not (BUILD / program).exists():
        return ""
    return subprocess.run([BUILD / program, drawing], capture_output=True, text=True, check=False).stdout


def loaded(text):
    found = re.search(r"load .*?: ([\d.]+) ms", text)
    return float(found.group(1)) if found else None


def ezdxf_load(drawing):
    script = "import sys, ezdxf; ezdxf.readfile(sys.argv[1])"
    start = time.perf_counter()
    done = subprocess.run(["/usr/bin/python3", "-B", "-c", script, drawing], check=False)
    return (time.perf_counter() - start) * 1000 if done.returncode == 0 else None


for drawing in sys.argv[2:]:
    text = printed("bench_files", drawing)
    print(text, end="")
    own = loaded(text)
    rows = [(peer, loaded(printed("peer_" + peer, drawing))) for peer in ("dime", "dxflib")]
    for peer, took in rows + [("ezdxf", ezdxf_load(drawing))]:
        result = "not there or refused"
        if took is not None:
            result = f"{took:.0f} ms, {took / own:.1f} times the host's"
        print(f"{peer}: load {pathlib.Path(drawing).name}: {result}")
