"""Drawings that ezdxf makes, in every version from R12 to R2018, opened in cadhost, changed in two
variables, run through VarDesk and saved: ezdxf finds exactly the changes and nothing else moved."""

import os
import unittest

import dxfcheck
from dxfcheck import ezdxf

VERSIONS = ["R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"]
SETTINGS_RECORD = "KOVA_VARDESKVARDESK/SETTINGS"


def make_drawing(version, path):
    """A drawing of ezdxf's own with layers, linetypes, a block with an attribute, entities in
    model and paper space, texts beyond ASCII and, from R2000 on, dictionaries with xrecords."""
    doc = ezdxf.new(version, setup=True)
    doc.header["$LUPREC"] = 4
    doc.header["$TEXTSIZE"] = 2.5
    doc.header["$INSUNITS"] = 6
    doc.header["$LIMMAX"] = (1189.0, 841.0)
    doc.layers.add("Wände", color=1)
    doc.layers.add("Möbel", color=3, linetype="DASHED")
    doc.layers.add("Beschriftung", color=5)
    block = doc.blocks.new("FENSTER")
    block.add_line((0, 0), (1200, 0), dxfattribs={"layer": "Wände"})
    block.add_line((0, 100), (1200, 100), dxfattribs={"layer": "Wände"})
    block.add_arc((0, 0), 600, 0, 90)
    block.add_attdef("NR", (0, 200), dxfattribs={"height": 150})
    msp = doc.modelspace()
    msp.add_line((0, 0), (8000, 0), dxfattribs={"layer": "Wände"})
    msp.add_circle((4000, 3000), 450, dxfattribs={"layer": "Möbel", "color": 2})
    msp.add_arc((4000, 3000), 900, 30, 150, dxfattribs={"layer": "Möbel"})
    outline = [(0, 0), (8000, 0), (8000, 6000), (0, 6000)]
    if version == "R12":
        msp.add_polyline2d(outline, close=True, dxfattribs={"layer": "Wände"})
    else:
        msp.add_lwpolyline(outline, close=True, dxfattribs={"layer": "Wände"})
    msp.add_text("Straße Ω 1:50", dxfattribs={"layer": "Beschriftung", "height": 250,
                                              "insert": (500, 500)})
    window = msp.add_blockref("FENSTER", (2000, 6000), dxfattribs={"layer": "Wände"})
    window.add_attrib("NR", "F-01", (2000, 6200))
    doc.layout("Layout1").add_line((10, 10), (400, 280))
    if version != "R12":
        data = doc.rootdict.add_new_dict("PRUEF_DATEN")
        first = data.add_xrecord("EINS")
        first.extend([(1, "Prüfung Ω"), (40, 1.5), (70, 7), (90, 123456), (10, (1.0, 2.0, 3.0))])
        inner = data.add_new_dict("UNTER")
        inner.add_xrecord("ZWEI").extend([(1, "zwei"), (1, ""), (40, -0.25)])
    doc.saveas(path)


def objects_in_file(path):
    """The handles of the objects that stand in the file's OBJECTS section."""
    tags = dxfcheck.read_tags(path)
    if (2, b"OBJECTS") not in tags:
        return []
    handles = []
    start = tags.index((2, b"OBJECTS"))
    for (c0, _), (code, value) in zip(tags[start:], tags[start + 1:]):
        if c0 == 0 and code == 5:
            handles.append(value.decode("ascii"))
    return handles


class ForeignDrawings(unittest.TestCase):
    def test_cadhost_changes_exactly_what_it_was_told(self):
        with dxfcheck.WorkDir() as work:
            script = ""
            for version in VERSIONS:
                name = "Fremd-%s.dxf" % version
                make_drawing(version, work.file(name))
                work.copy(work.file(name), "Original-" + name)
                script += ("OPEN %s\nSETVAR LUPREC 1\nSETVAR TEXTSIZE 7.25\nKOVA_VARDESK\n> close\n"
                           "SAVE\nCLOSE\n") % name
            rc, transcript = dxfcheck.run_batch(work, script)
            self.assertEqual(rc, 0, transcript)
            runs = transcript.split("Command: OPEN ")[1:]
            self.assertEqual(len(runs), len(VERSIONS), transcript)
            for version, run in zip(VERSIONS, runs):
                with self.subTest(version=version):
                    self.compare(version, work.file("Original-Fremd-%s.dxf" % version),
                                 work.file("Fremd-%s.dxf" % version), run)

    def compare(self, version, original_path, saved_path, run):
        before = ezdxf.readfile(original_path)
        after, _ = dxfcheck.audit(self, saved_path)
        self.assertEqual(after.dxfversion, before.dxfversion)

        old, new = dxfcheck.header(original_path), dxfcheck.header(saved_path)
        self.assertEqual(sorted(old), sorted(new), "header variables were added or lost")
        stamps = dxfcheck.SAVE_STAMPS | {"$HANDSEED"}
        changed = {n for n in old if n not in stamps and old[n] != new[n]}
        self.assertEqual(changed, {"$LUPREC", "$TEXTSIZE"})
        self.assertEqual(after.header["$LUPREC"], 1)
        self.assertEqual(after.header["$TEXTSIZE"], 7.25)

        old_state, new_state = dxfcheck.drawing_state(before), dxfcheck.drawing_state(after)
        self.assertEqual(sorted(old_state), sorted(new_state))
        for key in old_state:
            self.assertEqual(old_state[key], new_state[key], key)

        old_records, new_records = dxfcheck.xrecords(before), dxfcheck.xrecords(after)
        if version == "R12":
            self.assertEqual(new_records, old_records)
            self.assertEqual(objects_in_file(saved_path), [], "an R12 drawing got objects")
            self.assertRegex(run, r"(?i)R12|AC1009",
                             "cadhost did not say that an R12 drawing keeps no settings record")
            return
        self.assertIn(SETTINGS_RECORD, new_records)
        added = {k: v for k, v in new_records.items() if k not in old_records}
        self.assertEqual(list(added), [SETTINGS_RECORD])
        for name, tags in old_records.items():
            self.assertEqual(new_records.get(name), tags, name)
        self.assertEqual(sorted(set(after.rootdict.keys()) - set(before.rootdict.keys())),
                         ["KOVA_VARDESKVARDESK"])
        # Every object of the original is still there as it was; the root dictionary gained
        # the settings' entry.
        root = before.rootdict.dxf.handle
        for handle in objects_in_file(original_path):
            if handle == root:
                continue
            old_object = before.entitydb.get(handle)
            new_object = after.entitydb.get(handle)
            self.assertIsNotNone(new_object, "object %s is gone" % handle)
            self.assertEqual(dxfcheck.entity_state(old_object), dxfcheck.entity_state(new_object),
                             "object %s" % handle)


if __name__ == "__main__":
    dxfcheck.main()
