# SPDX-License-Identifier: GPL-3.0-or-later
"""The comparison behind the manuals has to notice what is wrong: make_test.py DOCS EXAMPLES CLI"""

import os
import sys
import unittest

DOCS, EXAMPLES, CLI = sys.argv[1:4]
sys.path.insert(0, os.path.join(DOCS, "make"))

from answers import Answers  # noqa: E402
from arithmetic import shown, written  # noqa: E402
from faults import DocsError  # noqa: E402
from figures import Figures, date_of_making  # noqa: E402
from verification import Verification  # noqa: E402

PROGRAM = Answers(CLI, [EXAMPLES])


class Checks(unittest.TestCase):
    def check(self, lines, case="two-side-gobs"):
        return Verification(PROGRAM, "").fill(f"# Rule\n\n```check {case}\n{lines}\n```\n", "chapter")

    def assert_noticed(self, text, *given):
        with self.assertRaisesRegex(DocsError, text):
            self.check(*given)

    def test_agreement_is_a_table(self):
        self.assertIn("<td>320</td><td>320</td><td>0</td>", self.check("Width: 4 * 80 => PanelWidth"))

    def test_a_difference_of_a_hundred_millionth_is_noticed(self):
        self.assert_noticed("out of tolerance", "Width: 320.0000032 => PanelWidth")
        self.assert_noticed("out of tolerance", "Nothing: 1 => BleederLoad.first")

    def test_a_wrong_warning_is_noticed(self):
        self.assert_noticed("flag 3", "Weak barrier: False => flag 3")
        self.assert_noticed("flags", "All: {3, 13} => flags")

    def test_a_printed_number_has_to_be_the_rounded_one(self):
        load = '=> page 2 "Tributary Area Load on AMZ" 1 1'  # prints 3.50E+06
        self.check(f"Load: 3.4951e6 {load}")
        self.assert_noticed("page 2", f"Load: 3.4949e6 {load}")

    def test_what_cannot_be_asked_is_noticed(self):
        self.assert_noticed("cannot work out", "Width: 4 * w => PanelWidth")
        self.assert_noticed("no case", "Width: 1 => PanelWidth", "nowhere")
        self.assert_noticed("no field", "Width: 1 => PanelWidth", "two-side-gobs Depth=1")
        self.assert_noticed("Crosscut|crosscut", "Width: 1 => PanelWidth", "two-side-gobs XcutAngle=10")

    def test_arithmetic_is_set_for_reading(self):
        self.assertEqual(written("2 * a**2 <= 60 * deg"), "2 × a<sup>2</sup> ≤ 60°")
        self.assertEqual(shown(18879562472.727272), "1.887956247 × 10<sup>10</sup>")


class Tutorials(unittest.TestCase):
    STEPS = "{{start tutorial-1-start}}{{set EntryHeight 8}}{{set DepthCover 620}}"
    REST = ("{{set XcutSpacing 70}}{{set NumberEntries 6}}{{set XcutCenters.1-5 60}}"
            "{{set BreadthAMZ 124}}{{set ArchFactor 0.8}}")

    def fill(self, text):
        return Figures(PROGRAM).fill(text)

    def test_a_step_left_out_is_noticed(self):
        end = "{{expect tutorial-1-finished}}"
        self.assertEqual(self.fill(self.STEPS + self.REST + end), "862070660" + "1240.8")
        with self.assertRaisesRegex(DocsError, "distance #5"):
            self.fill(self.STEPS + self.REST.replace("1-5", "1-4") + end)
        with self.assertRaisesRegex(DocsError, "BreadthAMZ: 112 instead of 124"):
            self.fill(self.STEPS + self.REST.replace("{{set BreadthAMZ 124}}", "") + end)
        with self.assertRaisesRegex(DocsError, "no finished case"):
            self.fill(self.STEPS)

    def test_numbers_follow_what_was_entered(self):
        self.assertEqual(self.fill("{{two-side-gobs: BarrierSF.retreat.second .2f}}"), "1.08")
        self.assertEqual(self.fill("{{two-side-gobs SlabcutSecondGob=0: RemnantWidth.second g}}"), "60")

    def test_the_date_can_be_fixed(self):
        os.environ["SOURCE_DATE_EPOCH"] = "0"
        self.assertEqual(date_of_making(), "1 January 1970")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
