"""Shared steps of the independent drawing checks: running cadhost's batch console, reading DXF at
tag level and through ezdxf, and printing with LibreCAD.

The tests run under ctest with these environment variables:
  CADHOST             the built cadhost (tests that need it fail when it is not there)
  VARDESK_SOURCE_DIR  the source tree (samples, template, former JSON drawings)
A missing python3-ezdxf or librecad makes a test skip (exit code 77) with a message saying which.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SKIP = 77

# Header variables that a save stamps anew; they may differ after an unchanged open and save.
SAVE_STAMPS = {"$TDUPDATE", "$TDUUPDATE", "$TDINDWG", "$TDUSRTIMER", "$LASTSAVEDBY", "$VERSIONGUID"}

try:
    import ezdxf
except ImportError:
    ezdxf = None


def source_dir():
    return os.environ.get("VARDESK_SOURCE_DIR") or os.path.dirname(
        os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def source_path(*parts):
    return os.path.join(source_dir(), *parts)


def sample_paths():
    return [source_path("data", "samples", name + ".dxf")
            for name in ("Werkhalle", "Lageplan", "Schnitt")]


def template_path():
    return source_path("data", "template", "cadhost-r2018.dxf")


def main(need_librecad=False):
    """Runs the test classes named on the command line (all when none), skipping cleanly when a
    checking tool is not installed."""
    if ezdxf is None:
        print("SKIPPED: python3-ezdxf is not installed for %s (scripts/deps.sh installs it)"
              % sys.executable)
        sys.exit(SKIP)
    if need_librecad and shutil.which("librecad") is None:
        print("SKIPPED: librecad is not installed (scripts/deps.sh installs it)")
        sys.exit(SKIP)
    unittest.main(module="__main__", verbosity=2)


class WorkDir:
    """A scratch folder for one test, removed afterwards unless KEEP_DXF_WORK is set."""

    def __init__(self):
        self.path = tempfile.mkdtemp(prefix="vardesk-dxf-")

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        if not os.environ.get("KEEP_DXF_WORK"):
            shutil.rmtree(self.path, ignore_errors=True)

    def file(self, name):
        return os.path.join(self.path, name)

    def copy(self, source, name=None):
        target = self.file(name or os.path.basename(source))
        shutil.copyfile(source, target)
        return target


def cadhost():
    path = os.environ.get("CADHOST", "")
    if not path or not os.access(path, os.X_OK):
        raise AssertionError("CADHOST does not name the built cadhost (%r)" % path)
    return path


def offscreen_env(work, home):
    """The environment for a Qt program without a screen, with a home folder of its own in work."""
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=work.file(home))
    env.setdefault("XDG_RUNTIME_DIR", work.file("runtime"))
    os.makedirs(env["HOME"], exist_ok=True)
    os.makedirs(env["XDG_RUNTIME_DIR"], mode=0o700, exist_ok=True)
    return env


def run_batch(work, script, args=()):
    """Runs cadhost --batch with the script's lines in work's folder, as the scenarios do, and
    returns the exit code and what it printed."""
    with open(work.file("check.scr"), "w", encoding="utf-8") as f:
        f.write(script)
    env = offscreen_env(work, "home")
    env.pop("XDG_CONFIG_HOME", None)
    result = subprocess.run([cadhost(), "--batch", "check.scr", "--profile", "profile", *args],
                            cwd=work.path, env=env, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, timeout=120)
    return result.returncode, result.stdout.decode("utf-8", "replace")


def dict_listing(transcript):
    """The xrecords that each DICT command of a transcript printed: a list (one per DICT) of
    {path: [(code, text), ...]}."""
    listings = []
    current = None
    path = None
    for line in transcript.splitlines():
        if line.startswith("Command: "):
            current = {} if line.strip() == "Command: DICT" else None
            if current is not None:
                listings.append(current)
            path = None
        elif current is not None and line.startswith("XRECORD "):
            path = line[len("XRECORD "):]
            current[path] = []
        elif current is not None and path and line.startswith("  "):
            code, _, text = line.strip().partition(" ")
            current[path].append((int(code), text))
    return listings


UNICODE_ESCAPE = re.compile(r"\\U\+([0-9A-Fa-f]{4})")


def decode_escapes(text):
    return UNICODE_ESCAPE.sub(lambda m: chr(int(m.group(1), 16)), text)


def xrecords(doc):
    """Every xrecord below the root dictionary: {"A/B/NAME": [(code, value), ...]}."""
    found = {}

    def walk(dictionary, prefix, depth):
        if depth > 32:
            return
        for key, entry in dictionary.items():
            kind = entry.dxftype() if hasattr(entry, "dxftype") else ""
            if kind == "XRECORD":
                found[prefix + key] = [(t.code, t.value) for t in entry.tags]
            elif kind in ("DICTIONARY", "ACDBDICTIONARYWDFLT"):
                walk(entry, prefix + key + "/", depth + 1)

    walk(doc.rootdict, "", 0)
    return found


def same_xrecord(testcase, printed, stored, where):
    """Compares what DICT printed of an xrecord with the tags ezdxf read from the file."""
    testcase.assertEqual(len(printed), len(stored), "%s: %r against %r" % (where, printed, stored))
    for (code, text), (stored_code, value) in zip(printed, stored):
        testcase.assertEqual(code, stored_code, where)
        if isinstance(value, str):
            testcase.assertEqual(text, decode_escapes(value), where)
        elif isinstance(value, (tuple, list)) or hasattr(value, "x"):
            numbers = [float(n) for n in re.findall(r"[-+0-9.eE]+", text)]
            testcase.assertEqual(numbers[:len(tuple(value))], [float(v) for v in value], where)
        else:
            testcase.assertAlmostEqual(float(text), float(value), places=9, msg=where)


def read_tags(path):
    """The file's (code, value) pairs, values as the bytes of their line without its end."""
    with open(path, "rb") as f:
        lines = f.read().split(b"\n")
    if lines and lines[-1] == b"":
        lines.pop()
    lines = [line[:-1] if line.endswith(b"\r") else line for line in lines]
    if len(lines) % 2:
        raise AssertionError("%s has an odd number of lines" % path)
    return [(int(lines[i].strip()), lines[i + 1]) for i in range(0, len(lines), 2)]


def without_stamps(tags, stamps):
    """The tags with the values of the named header variables left out (their names stay)."""
    out = []
    skipping = False
    for code, value in tags:
        if code in (0, 9):
            skipping = code == 9 and value.strip().decode("latin-1") in stamps
            out.append((code, value))
        elif not skipping:
            out.append((code, value))
    return out


def header(path):
    """The header variables as they stand in the file: {name: [(code, value bytes), ...]}. Read
    from the tags, not through ezdxf, which stamps some of them anew when it loads a drawing
    ($TDCREATE of a drawing it made itself) and makes up others a version lacks."""
    tags = read_tags(path)
    end = tags.index((0, b"ENDSEC"))
    variables = {}
    current = None
    for code, value in tags[:end]:
        if code == 9:
            current = variables.setdefault(value.decode("cp1252").strip(), [])
        elif current is not None:
            current.append((code, value))
    return variables


def audit(testcase, path):
    try:
        doc = ezdxf.readfile(path)
    except (IOError, ezdxf.DXFError) as error:
        testcase.fail("ezdxf cannot read %s: %s" % (path, error))
    auditor = doc.audit()
    testcase.assertEqual([e.message for e in auditor.errors], [], "ezdxf audit errors in " + path)
    return doc, auditor


# Attributes that R12 files lack and ezdxf makes up when it loads one: owners, the handles of the
# objects R12 has not, and so the block records themselves.
R12_MADE_UP = {"owner", "plotstyle_handle", "material_handle", "layout"}


def attributes(entity):
    attribs = entity.dxfattribs()
    if entity.doc is not None and entity.doc.dxfversion == "AC1009":
        attribs = {k: v for k, v in attribs.items() if k not in R12_MADE_UP}
    return attribs


def entity_state(entity):
    state = [entity.dxftype(), attributes(entity)]
    kind = entity.dxftype()
    if kind == "LWPOLYLINE":
        state.append(list(entity.get_points()))
    elif kind == "POLYLINE":
        state.append([attributes(v) for v in entity.vertices])
    elif kind == "INSERT":
        state.append([attributes(a) for a in entity.attribs])
    elif kind == "XRECORD":
        state.append([(t.code, t.value) for t in entity.tags])
    return state


def drawing_state(doc):
    """What an unchanged drawing must keep, as ezdxf sees it: table entries, blocks with their
    entities, and the entities of every layout."""
    state = {}
    tables = ["layers", "linetypes", "styles", "dimstyles", "appids", "ucs", "views", "viewports"]
    if doc.dxfversion != "AC1009":
        tables.append("block_records")
    for table_name in tables:
        table = getattr(doc, table_name)
        state["table " + table_name] = sorted(
            repr(sorted(attributes(entry).items(), key=lambda kv: kv[0])) for entry in table)
    for block in doc.blocks:
        state["block " + block.name] = [entity_state(e) for e in block]
    for layout in doc.layouts:
        state["layout " + layout.name] = [entity_state(e) for e in layout]
    return state


def librecad_print(work, dxf_path):
    """Prints a drawing to PDF with LibreCAD, headless; returns the PDF's path and the output."""
    copy = work.copy(dxf_path, "print-" + os.path.basename(dxf_path))
    env = offscreen_env(work, "librecad-home")
    result = subprocess.run(["librecad", "dxf2pdf", "-a", os.path.basename(copy)], cwd=work.path,
                            env=env, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=180)
    return os.path.splitext(copy)[0] + ".pdf", result.stdout.decode("utf-8", "replace")
