#!/usr/bin/env python3
"""The main road with python3-ezdxf: load a drawing, put a field into the XDATA of each line, save."""
import sys
import time

import ezdxf


def timed(what, path, work):
    start = time.perf_counter()
    result = work()
    print(f"ezdxf: {what} {path.rsplit('/', 1)[-1]}: {(time.perf_counter() - start) * 1000:.0f} ms")
    return result


def set_fields(document):
    for number, line in enumerate(document.modelspace()):
        tags = [(tag.code, tag.value) for tag in line.get_xdata("BENCH")]
        tags += [(1002, "{"), (1000, "STATE"), (1070, number % 1000), (1002, "}")]
        line.set_xdata("BENCH", tags)


for path in sys.argv[1:]:
    document = timed("load", path, lambda: ezdxf.readfile(path))
    timed("set a field on each entity", path, lambda: set_fields(document))
    timed("save", path, lambda: document.saveas(path + ".ezdxf"))
