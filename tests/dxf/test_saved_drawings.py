"""Drawings that cadhost saves, read by ezdxf and printed by LibreCAD: a new drawing, each sample
after a change of two variables and a VarDesk run, and a former JSON drawing saved as DXF."""

import json
import os
import sys
import unittest

import dxfcheck
from dxfcheck import ezdxf

CHANGE = """SETVAR LUPREC 2
SETVAR DIMDSEP "."
KOVA_VARDESK
> close
DICT
SAVE
CLOSE
"""


class SavedDrawings(unittest.TestCase):
    def check_saved(self, path, transcript, dict_index):
        doc, _ = dxfcheck.audit(self, path)
        self.assertEqual(doc.header["$LUPREC"], 2)
        self.assertEqual(doc.header["$DIMDSEP"], 46)
        printed = dxfcheck.dict_listing(transcript)[dict_index]
        self.assertIn("KOVA_VARDESKVARDESK/SETTINGS", printed, transcript)
        stored = dxfcheck.xrecords(doc)
        self.assertEqual(sorted(stored), sorted(printed))
        for name, tags in printed.items():
            dxfcheck.same_xrecord(self, tags, stored[name], "%s %s" % (path, name))
        return doc

    def test_new_drawing_and_samples_are_saved_as_valid_dxf_with_the_changes(self):
        with dxfcheck.WorkDir() as work:
            names = []
            script = "NEW Neu.dxf\n" + CHANGE
            for sample in dxfcheck.sample_paths():
                work.copy(sample)
                names.append(os.path.basename(sample))
                script += "OPEN %s\n%s" % (names[-1], CHANGE)
            rc, transcript = dxfcheck.run_batch(work, script)
            self.assertEqual(rc, 0, transcript)
            doc = self.check_saved(work.file("Neu.dxf"), transcript, 0)
            self.assertEqual(doc.dxfversion, "AC1032")
            for index, name in enumerate(names, start=1):
                with self.subTest(sample=name):
                    before = ezdxf.readfile(dxfcheck.source_path("data", "samples", name))
                    after = self.check_saved(work.file(name), transcript, index)
                    self.assertEqual(after.dxfversion, before.dxfversion)
                    self.assertEqual(len(after.modelspace()), len(before.modelspace()))

    def test_former_json_drawing_is_saved_as_dxf_with_its_variables_and_records(self):
        with dxfcheck.WorkDir() as work:
            source = dxfcheck.source_path("tests", "data", "json-drawings", "Lageplan.dwg")
            work.copy(source, "Alt.dwg")
            rc, transcript = dxfcheck.run_batch(work, "OPEN Alt.dwg\nDICT\nSAVE Alt.dxf\nCLOSE\n")
            self.assertEqual(rc, 0, transcript)
            doc, _ = dxfcheck.audit(self, work.file("Alt.dxf"))
            with open(source, encoding="utf-8") as f:
                former = json.load(f)
            self.assertEqual(doc.header["$LUPREC"], former["variables"]["LUPREC"])
            self.assertEqual(doc.header["$DIMDSEP"], ord(former["variables"]["DIMDSEP"]))
            self.assertEqual(doc.header["$CLAYER"], former["variables"]["CLAYER"])
            self.assertEqual(tuple(doc.header["$LIMMAX"])[:2],
                             tuple(former["variables"]["LIMMAX"]))
            record = former["namedObjects"]["VERMESSUNG"]["dictionary"]["LAGESYSTEM"]["xrecord"]
            self.assertEqual(dxfcheck.xrecords(doc)["VERMESSUNG/LAGESYSTEM"],
                             [(c, v) for c, v in record])


class SavedDrawingsPrint(unittest.TestCase):
    def test_librecad_prints_a_drawing_cadhost_saved(self):
        with dxfcheck.WorkDir() as work:
            work.copy(dxfcheck.sample_paths()[0])
            rc, transcript = dxfcheck.run_batch(work, "OPEN Werkhalle.dxf\n" + CHANGE)
            self.assertEqual(rc, 0, transcript)
            pdf, output = dxfcheck.librecad_print(work, work.file("Werkhalle.dxf"))
            self.assertTrue(os.path.exists(pdf), output)
            self.assertGreater(os.path.getsize(pdf), 0, output)


if __name__ == "__main__":
    dxfcheck.main(need_librecad=len(sys.argv) < 2 or "SavedDrawingsPrint" in sys.argv[1:])
