"""An unchanged open and save keeps every tag: the template, the samples and drawings of ezdxf in
every version come back with the same (code, value) pairs, apart from the stamps of the save."""

import os
import unittest

import dxfcheck
from test_foreign_drawings import VERSIONS, make_drawing

STAMPS = dxfcheck.SAVE_STAMPS | {"$HANDSEED"}


class RoundTrip(unittest.TestCase):
    def test_unchanged_open_and_save_keeps_every_tag(self):
        with dxfcheck.WorkDir() as work:
            names = []
            for path in [dxfcheck.template_path()] + dxfcheck.sample_paths():
                names.append(os.path.basename(work.copy(path)))
            for version in VERSIONS:
                names.append("Fremd-%s.dxf" % version)
                make_drawing(version, work.file(names[-1]))
            originals = {name: dxfcheck.read_tags(work.file(name)) for name in names}
            script = "".join("OPEN %s\nSAVE\nCLOSE\n" % name for name in names)
            rc, transcript = dxfcheck.run_batch(work, script)
            self.assertEqual(rc, 0, transcript)
            for name in names:
                with self.subTest(drawing=name):
                    before = originals[name]
                    after = dxfcheck.read_tags(work.file(name))
                    self.assertEqual(len(after), len(before), "the number of tags changed")
                    kept_before = dxfcheck.without_stamps(before, STAMPS)
                    kept_after = dxfcheck.without_stamps(after, STAMPS)
                    for index, (old, new) in enumerate(zip(kept_before, kept_after)):
                        self.assertEqual(old, new, "tag %d of %s" % (index, name))


if __name__ == "__main__":
    dxfcheck.main()
