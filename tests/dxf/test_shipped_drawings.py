"""The template of NEW and the sample drawings as other programs see them: ezdxf audits them, reads
the former samples' variables, applications and named objects back, and LibreCAD prints them."""

import json
import os
import subprocess
import sys
import unittest

import dxfcheck
from dxfcheck import ezdxf

# How the former JSON drawing's variables stand in the DXF header.
POINT_VARIABLES = {"INSBASE", "LIMMIN", "LIMMAX"}


def expected_header(name, value):
    if name == "DIMDSEP":
        return ord(value)
    if name in POINT_VARIABLES:
        return tuple(float(v) for v in value)
    return value


class ShippedDrawingsAudit(unittest.TestCase):
    def test_template_and_samples_pass_the_audit_untouched(self):
        for path in [dxfcheck.template_path()] + dxfcheck.sample_paths():
            with self.subTest(path=os.path.basename(path)):
                _, auditor = dxfcheck.audit(self, path)
                self.assertEqual([f.message for f in auditor.fixes], [], "ezdxf had to fix " + path)

    def test_template_and_samples_use_each_handle_once_below_the_seed_and_name_their_code_page(self):
        for path in [dxfcheck.template_path()] + dxfcheck.sample_paths():
            with self.subTest(path=os.path.basename(path)):
                doc = ezdxf.readfile(path)
                tags = dxfcheck.read_tags(path)
                body = tags[tags.index((2, b"CLASSES")):]  # $HANDSEED itself has code 5
                handles = [int(v, 16) for c, v in body if c in (5, 105)]
                self.assertEqual(len(handles), len(set(handles)), "a handle is used twice")
                self.assertGreater(int(doc.header["$HANDSEED"], 16), max(handles))
                self.assertEqual(doc.header["$DWGCODEPAGE"], "ANSI_1252")

    def test_template_is_an_empty_r2018_drawing_with_the_standard_objects(self):
        doc = ezdxf.readfile(dxfcheck.template_path())
        self.assertEqual(doc.dxfversion, "AC1032")
        self.assertEqual(len(doc.modelspace()), 0)
        self.assertEqual(doc.header["$CLAYER"], "0")
        tags = dxfcheck.read_tags(dxfcheck.template_path())
        sections = [v for (c0, v0), (c, v) in zip(tags, tags[1:]) if (c0, v0) == (0, b"SECTION")]
        self.assertEqual(sections, [b"HEADER", b"CLASSES", b"TABLES", b"BLOCKS", b"ENTITIES",
                                    b"OBJECTS"])
        for name in ("ACAD_GROUP", "ACAD_LAYOUT", "ACAD_MLINESTYLE", "ACAD_PLOTSETTINGS",
                     "ACAD_PLOTSTYLENAME"):
            self.assertIn(name, tags_of_root_dictionary(tags))
        self.assertEqual(sorted(doc.rootdict["ACAD_LAYOUT"].keys()), ["Layout1", "Model"])
        for table, names in [("layers", ["0"]), ("linetypes", ["ByBlock", "ByLayer", "Continuous"]),
                             ("styles", ["Standard"]), ("appids", ["ACAD"])]:
            have = [e.dxf.name for e in getattr(doc, table)]
            for name in names:
                self.assertIn(name, have, table)

    def test_samples_keep_the_former_drawings_settings(self):
        for path, version in zip(dxfcheck.sample_paths(), ["AC1032", "AC1024", "AC1015"]):
            name = os.path.splitext(os.path.basename(path))[0]
            with self.subTest(sample=name):
                with open(dxfcheck.source_path("tests", "data", "json-drawings", name + ".dwg"),
                          encoding="utf-8") as f:
                    former = json.load(f)
                doc = ezdxf.readfile(path)
                self.assertEqual(doc.dxfversion, version)
                for variable, value in former["variables"].items():
                    have = doc.header["$" + variable]
                    if isinstance(have, tuple) or hasattr(have, "x"):
                        have = tuple(have)[:len(value)]
                    self.assertEqual(have, expected_header(variable, value), variable)
                raw = dxfcheck.read_tags(path)
                self.assertEqual(appids_in_file(raw), former.get("regApps", []))
                expected = {}
                flatten(former["namedObjects"], "", expected)
                self.assertEqual(dxfcheck.xrecords(doc), expected)

    def test_samples_have_entities_of_each_kind_coloured_layers_and_a_title_block(self):
        for path in dxfcheck.sample_paths():
            with self.subTest(sample=os.path.basename(path)):
                doc = ezdxf.readfile(path)
                kinds = {e.dxftype() for e in doc.modelspace()}
                self.assertLessEqual({"LINE", "LWPOLYLINE", "CIRCLE", "ARC", "TEXT"}, kinds)
                layers = {e.dxf.layer for e in doc.modelspace()}
                self.assertIn("Z-SCHRIFTFELD", layers)
                self.assertGreaterEqual(len(layers), 4)
                self.assertGreater(len({doc.layers.get(n).color for n in layers}), 2)
                title_texts = [e.dxf.text for e in doc.modelspace().query("TEXT")
                               if e.dxf.layer == "Z-SCHRIFTFELD"]
                for word in ("Maßstab", "Datum", "Gezeichnet"):
                    self.assertTrue(any(t.startswith(word) for t in title_texts), word)

    def test_r2000_sample_is_written_in_its_code_page(self):
        path = dxfcheck.sample_paths()[2]
        with open(path, "rb") as f:
            data = f.read()
        self.assertIn("Geländeschnitt".encode("cp1252"), data)
        self.assertNotIn("Geländeschnitt".encode("utf-8"), data)
        self.assertRegex(data, rb"\\U\+[0-9A-F]{4}")
        texts = [e.dxf.text for e in ezdxf.readfile(path).modelspace().query("TEXT")]
        self.assertIn("Geländeschnitt A-A", texts)

    def test_generator_output_is_what_is_committed(self):
        script = dxfcheck.source_path("scripts", "make-drawings.py")
        result = subprocess.run([sys.executable, script, "--check"], stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT)
        self.assertEqual(result.returncode, 0, result.stdout.decode())


def tags_of_root_dictionary(tags):
    """The entry names of the first DICTIONARY in OBJECTS, read from the tags themselves."""
    start = tags.index((2, b"OBJECTS"))
    names = []
    for code, value in tags[start + 2:]:
        if code == 0:
            break
        if code == 3:
            names.append(value.decode("cp1252"))
    return names


def appids_in_file(tags):
    names = []
    in_record = False
    for code, value in tags:
        if code == 0:
            in_record = value == b"APPID"
        elif in_record and code == 2:
            names.append(value.decode("cp1252"))
    return names


def flatten(named_objects, prefix, out):
    for name, entry in named_objects.items():
        if "dictionary" in entry:
            flatten(entry["dictionary"], prefix + name + "/", out)
        else:
            out[prefix + name] = [(c, v) for c, v in entry["xrecord"]]


class ShippedDrawingsPrint(unittest.TestCase):
    def test_librecad_prints_template_and_samples(self):
        sizes = {}
        with dxfcheck.WorkDir() as work:
            for path in [dxfcheck.template_path()] + dxfcheck.sample_paths():
                with self.subTest(path=os.path.basename(path)):
                    pdf, output = dxfcheck.librecad_print(work, path)
                    self.assertTrue(os.path.exists(pdf), output)
                    self.assertGreater(os.path.getsize(pdf), 0, output)
                    with open(pdf, "rb") as f:
                        self.assertEqual(f.read(5), b"%PDF-")
                    sizes[path] = os.path.getsize(pdf)
        # A sample's lines and texts make its page larger than the empty template's.
        for path in dxfcheck.sample_paths():
            self.assertGreater(sizes[path], 2 * sizes[dxfcheck.template_path()], path)


if __name__ == "__main__":
    dxfcheck.main(need_librecad=len(sys.argv) < 2 or "ShippedDrawingsPrint" in sys.argv[1:])
