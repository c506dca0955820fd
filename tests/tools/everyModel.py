"""Every verb on every OBJ file in some folders, as a user would try it: what it prints
is compared with what the file holds by simple means, and with what is written.

    everyModel.py PROGRAM WORK_FOLDER MODEL_FOLDER...

The environment variable OBJ_ADAPTER_MODELS may name one folder more.
"""
import json
import os
import re
import subprocess
import sys
import zlib

FORMATS = ("glb", "ply", "stl", "obj")
HARMLESS = {"notFound", "ignored", "mesh"}


class Failure(Exception):
    pass


def expect(condition, what):
    if not condition:
        raise Failure(what)


def run(program, *arguments, codes=(0,)):
    done = subprocess.run([program, *arguments], capture_output=True, timeout=120)
    expect(done.returncode in codes,
           f"{arguments}: exit code {done.returncode}\n{done.stderr.decode(errors='replace')}")
    return done


def run_json(program, *arguments, codes=(0,)):
    return json.loads(run(program, *arguments, "--quiet", "--json", codes=codes).stdout)


def count_statements(path):
    """Vertices, texture points, normals and triangles, or None for a file that is not
    plain: with lines that go on, or short ones."""
    counts = {"v": 0, "vt": 0, "vn": 0, "f": 0}
    with open(path, "rb") as obj_file:
        text = obj_file.read()
    if b"\\" in text or b"\0" in text or b"\x1a" in text:
        return None
    for line in text.split(b"\n"):
        tokens = line.split()
        keyword = tokens[0].decode(errors="replace").lower() if tokens else ""
        if keyword == "f":
            counts["f"] += len(tokens) - 3
        elif keyword in counts:
            counts[keyword] += 1
    return tuple(counts.values())


def check_counts(program, path, issues):
    info = run_json(program, "info", path, "--no-compaction")
    counts = info["counts"]
    printed = (counts["vertices"], counts["textureCoordinates"], counts["normals"],
               counts["faces"])
    plain = count_statements(path)
    if plain is not None and {issue["category"] for issue in issues} <= HARMLESS:
        expect(plain == printed, f"info: {printed}, the file has {plain}")
    tree = run_json(program, "tree", path, "--no-compaction")
    expect(sum(node["faces"] for node in tree["nodes"]) == counts["faces"],
           "tree: other faces than info")
    text = run(program, "info", path, "--no-compaction", "--quiet").stdout
    found = re.search(rb"^  faces +(\d+)", text, re.MULTILINE)
    expect(found and int(found[1]) == counts["faces"], "info: other faces than in JSON")


def check_codes(program, path):
    done = run(program, "check", path, "--json", codes=(0, 1, 3))
    report = json.loads(done.stdout)["files"][0]
    code = 1 if report["errors"] else 3 if report["warnings"] else 0
    expect(done.returncode == code, f"check: exit code {done.returncode}, not {code}")
    return report


def check_conversions(program, path, work):
    for ending in FORMATS:
        output = os.path.join(work, "out." + ending)
        done = run(program, "convert", path, output)
        faces = int(re.search(rb"Wrote .* with (\d+) faces", done.stderr)[1])
        with open(output, "rb") as written_file:
            written = written_file.read()
        if ending == "stl":
            expect(len(written) == 84 + 50 * faces, f"STL: {len(written)} bytes, {faces} faces")
        elif ending == "ply":
            expect(b"element face %d\n" % faces in written[:2000], "PLY: other faces")
        elif ending == "glb":
            expect(written[:4] == b"glTF" and
                   int.from_bytes(written[8:12], "little") == len(written), "GLB: its length")
        else:
            again = run_json(program, "info", output, "--no-compaction")
            expect(again["counts"]["faces"] == faces, "OBJ: other faces when read again")


def check_picture(program, path, work, faces):
    output = os.path.join(work, "out.png")
    run(program, "preview", path, "-o", output, "--size", "64x48", "--samples", "1")
    with open(output, "rb") as picture_file:
        picture = picture_file.read()
    data = b""
    place = 8
    while place < len(picture):
        length = int.from_bytes(picture[place:place + 4], "big")
        if picture[place + 4:place + 8] == b"IDAT":
            data += picture[place + 8:place + 8 + length]
        place += 12 + length
    # Rows of the background alone filter to one value and zeros.
    values = set(zlib.decompress(data))
    expect(not faces or len(values) > 5, "preview: an empty picture")


def try_file(program, path, work):
    report = check_codes(program, path)
    if not report["succeeded"]:
        return
    check_counts(program, path, report["issues"])
    check_conversions(program, path, work)
    mesh = report["mesh"]
    drawable = mesh["faces"] - mesh["facesWithoutArea"] - mesh["facesNotFinite"] \
        - mesh["facesWithoutVertex"]
    check_picture(program, path, work, drawable > 0 and "odd" not in path)


def main():
    program, work, *folders = sys.argv[1:]
    os.makedirs(work, exist_ok=True)
    folders += filter(None, [os.environ.get("OBJ_ADAPTER_MODELS")])
    paths = sorted(os.path.join(folder, name) for top in folders
                   for folder, _, names in os.walk(top) for name in names
                   if name.endswith(".obj"))
    failures = []
    for path in paths:
        try:
            try_file(program, path, work)
        except Failure as failure:
            failures.append(f"{path}: {failure}")
    print(f"{len(paths)} files")
    sys.exit("\n".join(failures) if failures or not paths else 0)


main()
