"""MOVE, ROTATE, SCALE and MIRROR put each kind of entity where another program's own transformation puts
it: the same points lie on both."""
import math

import ezdxf
from ezdxf import path as ezpath
from ezdxf.disassemble import recursive_decompose, to_primitives
from ezdxf.math import Matrix44, Vec3

from judge import FOLDER, audited, expect, finish, run


def make():
    """A drawing with one entity of each kind."""
    document = ezdxf.new("R2010", setup=True)
    space = document.modelspace()
    block = document.blocks.new("ARROW", base_point=(0.5, 0))
    block.add_line((0, 0), (2, 0))
    block.add_arc((2, 0), 0.5, 90, 200)
    block.add_lwpolyline([(0, 0, 0, 0, 0.4), (1, 1), (2, 0.5)])
    block.add_attdef("TAG", (0, 1), dxfattribs={"height": 0.2})
    tilted = {"extrusion": Vec3(1, 2, 3).normalize()}
    space.add_line((1, 2, 3), (4, 6, 5))
    space.add_line((1, 2), (4, 6), dxfattribs={"thickness": 2})
    space.add_point((3, 1, 2))
    space.add_circle((1, 2, 3), 1.5)
    space.add_circle((1, 2, 3), 1.5, dxfattribs=tilted)
    space.add_arc((2, 1), 2, 30, 200)
    space.add_arc((2, 1, 1), 2, 300, 40, dxfattribs=tilted)
    space.add_ellipse((1, 1), (3, 1), 0.4)
    space.add_ellipse((1, 1, 2), (0, 3, 1), 0.4, 0.5, 2.5)
    space.add_lwpolyline([(0, 0, 0, 0, 0.5), (3, 0, 0, 0, -0.3), (3, 3)], close=True)
    space.add_lwpolyline([(0, 0), (3, 0, 0, 0, 1), (3, 3)], dxfattribs={**tilted, "elevation": 2})
    space.add_polyline2d([(0, 0, 0.5), (1, 1, 0), (2, 0, 0)], format="xyb")
    space.add_polyline3d([(0, 0, 0), (1, 1, 1), (2, 0, 4)])
    space.add_polyface().append_face([(0, 0, 0), (2, 0, 0), (2, 2, 1)])
    space.add_solid([(0, 0), (1, 0), (0, 1), (1, 1)])
    space.add_3dface([(0, 0, 0), (1, 0, 1), (1, 2, 0), (0, 1, 3)])
    space.add_spline([(0, 0), (1, 2), (3, 1), (4, 4)])
    space.add_open_spline([(0, 0), (1, 2), (3, 1), (4, 4, 2)])
    space.add_mtext("lines", dxfattribs={"insert": (2, 2), "char_height": 0.5, "rotation": 20})
    hatch = space.add_hatch()
    hatch.paths.add_polyline_path([(0, 0, 0.4), (4, 0), (4, 4)], is_closed=True)
    edges = hatch.paths.add_edge_path()
    edges.add_arc((8, 0), 2, 20, 170)
    edges.add_line((8 + 2 * math.cos(math.radians(170)), 2 * math.sin(math.radians(170))),
                   (8 + 2 * math.cos(math.radians(20)), 2 * math.sin(math.radians(20))))
    edges = hatch.paths.add_edge_path()
    edges.add_ellipse((15, 0), (3, 1), 0.5, 0, 120, ccw=False)
    insert = space.add_blockref("ARROW", (4, 2, 1), dxfattribs={
        "xscale": 2, "yscale": 0.5, "zscale": 3, "rotation": 25})
    insert.add_attrib("TAG", "A-1", (5, 3), dxfattribs={"height": 0.2, "rotation": 25})
    space.add_blockref("ARROW", (4, 2, 1), dxfattribs={**tilted, "rotation": 25})
    space.add_leader([(0, 0), (2, 2), (4, 2)])
    space.add_ray((1, 1), (1, 2))
    return document


PLACED = {"LEADER": lambda e: [Vec3(v) for v in e.vertices],
          "RAY": lambda e: [e.dxf.start, e.dxf.start + e.dxf.unit_vector],
          "POINT": lambda e: [e.dxf.location, e.dxf.location],
          "MTEXT": lambda e: [e.dxf.insert, e.dxf.insert]}


def chain(entity):
    """Points along an entity, in order."""
    kind = entity.dxftype()
    if kind in PLACED:
        return PLACED[kind](entity)
    if kind == "HATCH":
        return [Vec3(p) for path in ezpath.from_hatch(entity) for p in path.flattening(0.01)]
    drawn = [part for part in recursive_decompose([entity])
             if part.dxftype() not in ("TEXT", "MTEXT", "ATTRIB")]
    return [Vec3(p) for primitive in to_primitives(drawn, max_flattening_distance=0.01)
            for p in primitive.vertices()]


def distance(point, a, b):
    """From a point to a stretch."""
    way = b - a
    along = (point - a).dot(way) / way.magnitude_square if way.magnitude_square else 0.0
    return point.distance(a + way * min(1.0, max(0.0, along)))


def apart(one, other):
    """The greatest distance of a point of one from the figure of the other."""
    some = one[::max(1, len(one) // 50)]
    return max(min(distance(p, a, b) for a, b in zip(other, other[1:])) for p in some)


def check(name, commands, matrix):
    document = make()
    source = FOLDER / "source.dxf"
    document.saveas(source)
    script = FOLDER / f"{name}.lsp"
    script.write_text(f"""
(setvar "CMDECHO" 0)
(setq e (entnext))
(setq all (ssadd))
(while e
  (if (not (member (cdr (assoc 0 (entget e))) '("VERTEX" "SEQEND" "ATTRIB"))) (ssadd e all))
  (setq e (entnext e)))
{commands}
""", encoding="utf-8")
    moved = FOLDER / f"{name}.dxf"
    _, err = run("run", "-d", source, "-s", moved, script)
    expect("left as it is" not in err, err)
    result = list(audited(moved).modelspace())
    wanted = list(make().modelspace())
    expect(len(result) == len(wanted), f"{name}: {len(result)} entities")
    for own, reference in zip(result, wanted):
        reference.transform(matrix)
        a, b = chain(own), chain(reference)
        far = max(apart(a, b), apart(b, a))
        expect(far < 0.02, f"{name}: {own.dxftype()} {own.dxf.handle} is {far:.3f} away")


about = Matrix44.translate(-1, -2, 0)
back = Matrix44.translate(1, 2, 0)
check("move", '(command "_.move" all "" (list 0 0 0) (list 5.5 -3.25 2.0))',
      Matrix44.translate(5.5, -3.25, 2))
check("rotate", '(command "_.rotate" all "" (list 1 2) 37.5)',
      about @ Matrix44.z_rotate(math.radians(37.5)) @ back)
check("scale", '(command "_.scale" all "" (list 1 2) 2.5)', about @ Matrix44.scale(2.5) @ back)
line = math.radians(30)
mirror = (about @ Matrix44.z_rotate(-line) @ Matrix44.scale(1, -1, 1) @ Matrix44.z_rotate(line)
          @ back)
check("mirror", f'(command "_.mirror" all "" (list 1 2) (list {1 + math.cos(line)!r}'
      f' {2 + math.sin(line)!r}) "_y")', mirror)
finish()
