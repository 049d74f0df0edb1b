#!/usr/bin/env python3
"""Groups with python3-ezdxf, as far as it has them: groups of ten lines made, their entities fetched, saved
and loaded. ezdxf_groups.py OUT.dxf GROUPS..."""
import sys
import time

import ezdxf


def timed(what, groups, work):
    start = time.perf_counter()
    result = work()
    print(f"ezdxf: {what} {groups}: {(time.perf_counter() - start) * 1000:.0f} ms")
    return result


def make(document, lines):
    for first in range(0, len(lines), 10):
        document.groups.new(f"KZ_AB_{first // 10}").extend(lines[first:first + 10])


def fetch(document):
    return sum(1 for _, group in document.groups for _ in group)


path = sys.argv[1]
for groups in map(int, sys.argv[2:]):
    document = ezdxf.new("R2018")
    space = document.modelspace()
    lines = [space.add_line((0, 0), (1, 1)) for _ in range(groups * 10)]
    timed("groups of 10 made,", groups, lambda: make(document, lines))
    timed("their entities fetched,", groups, lambda: fetch(document))
    timed("saved,", groups, lambda: document.saveas(path))
    timed("loaded,", groups, lambda: ezdxf.readfile(path))
