# SPDX-License-Identifier: GPL-3.0-or-later
"""The comparison behind the manuals has to notice what is wrong: make_test.py DOCS EXAMPLES CLI"""

import os
import re
import sys
import unittest

DOCS, EXAMPLES, CLI = sys.argv[1:4]
sys.path.insert(0, os.path.join(DOCS, "make"))

import rules  # noqa: E402
from answers import Answers  # noqa: E402
from arithmetic import shown, written  # noqa: E402
from commands import Commands, of_manual_page  # noqa: E402
from equations import Equations, symbols_of  # noqa: E402
from faults import DocsError  # noqa: E402
import messages  # noqa: E402
from figures import Figures, date_of_making  # noqa: E402
from formulas import bracketed, plain  # noqa: E402
from verification import Verification  # noqa: E402

PROGRAM = Answers(CLI, [EXAMPLES])


class Checks(unittest.TestCase):
    def check(self, lines, case="two-side-gobs"):
        return Verification(PROGRAM, "", "").fill(f"# Rule\n\n```check {case}\n{lines}\n```\n", "chapter")

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

    def test_a_condition_has_to_hold(self):
        self.assertIn("as required", self.check("Longer than wide: 80 > 65\nWidth: 320 => PanelWidth"))
        self.assert_noticed("is False", "Longer than wide: 80 > 6500")
        self.check("Longer than wide: 80 > 6500 => no")
        self.assert_noticed("is True", "Longer than wide: 80 > 65 => no")

    def test_branches_texts_and_refusals_are_compared(self):
        self.check('Supercritical: 800 / 2 > 345 => branch SideAbutmentLoad.first "Es / 2 > H * ts"')
        self.assert_noticed("branch", 'Supercritical: True => branch SideAbutmentLoad.second "Es / 2 > H * ts"')
        self.assert_noticed("says", 'Nothing: True => says 1 "no such words"')
        self.check('Height: True => refused "Invalid entry height" EntryHeight=0')
        self.assert_noticed("refused", 'Height: True => refused "Invalid entry height" EntryHeight=1')

    def test_a_kept_value_goes_on_to_later_blocks(self):
        text = ("# R\n\n```check two-side-gobs\nW: W = 320 => PanelWidth\nkeep All = W\n```\n\n"
                "```check two-side-gobs\nW: All => PanelWidth\n```\n")
        self.assertIn("All", Verification(PROGRAM, "", "").fill(text, "chapter"))

    def test_a_changed_depth_brings_its_breadth(self):
        self.check("Breadth: 100 => AMZBreadth", "two-side-gobs DepthCover=400")
        self.check("Breadth: 150 => AMZBreadth", "two-side-gobs DepthCover=400 AMZ=0")

    def test_what_cannot_be_asked_is_noticed(self):
        self.assert_noticed("cannot work out", "Width: 4 * w => PanelWidth")
        self.assert_noticed("no case", "Width: 1 => PanelWidth", "nowhere")
        self.assert_noticed("no field", "Width: 1 => PanelWidth", "two-side-gobs Depth=1")
        self.assert_noticed("Crosscut|crosscut", "Width: 1 => PanelWidth", "two-side-gobs XcutAngle=10")

    def test_arithmetic_is_set_for_reading(self):
        self.assertEqual(written("2 * a**2 <= 60 * deg"), "2 × a<sup>2</sup> ≤ 60°")
        self.assertEqual(shown(18879562472.727272), "1.887956247 × 10<sup>10</sup>")


class EquationsAndRules(unittest.TestCase):
    def filled(self, text):
        equations = Equations(DOCS)
        return equations.fill(text, os.path.join(DOCS, "theory", "chapter.md"))

    def test_an_equation_is_followed_by_its_symbols(self):
        self.assertIn("Panel width (ft, m)", self.filled("$$A_z = B\\,W_p$$ {#eq-a}\n\n{{where}}\n"))
        with self.assertRaisesRegex(DocsError, "not listed"):
            self.filled("$$A_z = B\\,W_p$$ {#eq-a}\n\n## Next\n")
        with self.assertRaisesRegex(DocsError, "nobody explains the symbol q"):
            self.filled("$$A_z = q$$ {#eq-a}\n\n{{where}}\n")
        with self.assertRaisesRegex(DocsError, "no equation is called"):
            self.filled("see [](#eq-nowhere)")

    def test_indexed_symbols_are_those_of_the_list(self):
        self.assertEqual(symbols_of(r"L_{c1} = \frac{C_{n-1}}{2\,\sin\Theta} + SF_m"),
                         ["L_{c1}", "C_{n-1}", r"\Theta", "SF_m"])

    def test_the_list_of_symbols_is_that_of_the_working(self):
        with open(os.path.join(DOCS, "..", "src", "explain", "nomenclature.cpp"), encoding="utf-8") as file:
            source = file.read()
        rows = re.findall(r'^    \{"(\w+)", "([^"]+)",', source, re.MULTILINE)
        self.assertGreater(len(rows), 90)
        with open(os.path.join(DOCS, "theory", "11-symbols.md"), encoding="utf-8") as file:
            listed = dict(re.findall(r"^\| `(\w+)` \| [^|]* \| ([^|]*) \|", file.read(), re.MULTILINE))
        self.assertEqual(set(listed), {symbol for symbol, _ in rows})
        for symbol, key in rows:
            name = key.removeprefix("inputs.").removeprefix("{in}")
            name = re.split(r"[.@]|\{[pqkid]\}", name)[0].replace("{K}", "First").replace("{R}", "C")
            self.assertIn(f"`{name}`", listed[symbol], symbol)

    def test_a_rule_without_a_check_is_noticed(self):
        with self.assertRaisesRegex(DocsError, "there is no hand case"):
            rules.matrix(DOCS, {})


class FormulasInPlainLetters(unittest.TestCase):
    def test_the_words_are_those_of_show_working(self):
        self.assertEqual(plain(r"F_{pa} = 1 - 0.28\,\ln\frac{H}{W_p}"), "Fpa = 1 - 0.28 ln H / Wp")
        self.assertEqual(plain(r"\left( \frac{D - x}{D} \right)^3 \leq \Gamma"), "( (D - x) / D )^3 <= Gamma")

    def test_an_exponent_belongs_to_its_bracket(self):
        self.assertEqual(bracketed(r"\left(\left(a\right)^2 b\right)"), r"\left({\left(a\right)}^2 b\right)")


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
        self.assertEqual(date_of_making(), "January 1, 1970")


class PrintedCommands(unittest.TestCase):
    def run_block(self, *lines, before=""):
        commands = Commands(CLI, EXAMPLES)
        commands.check(before + "\n```\n" + "\n".join(lines) + "\n```\n")
        return commands.count

    def assert_noticed(self, text, *lines, **more):
        with self.assertRaisesRegex(DocsError, text):
            self.run_block(*lines, **more)

    def test_lines_run_in_their_order_in_one_folder(self):
        self.assertEqual(3, self.run_block("telvo-cli table export t*.TLV -o all.csv    many cases",
                                           "telvo-cli results all.csv --format csv > numbers.csv",
                                           "telvo-cli explain examples/deep-cover.TLV TELVOSF.retreat"))
        self.assert_noticed("ends with 3", "telvo-cli results all.csv")

    def test_a_wrong_option_file_or_exit_status_is_noticed(self):
        self.assert_noticed("ends with 2", "telvo-cli check panel.TLV -o results.csv")
        self.assert_noticed("ends with 0, not 1", "telvo-cli check panel.TLV  # exit status 1")
        self.assertEqual(1, self.run_block("telvo-cli check none.TLV  # exit status 3"))
        self.assertEqual(1, self.run_block("telvo-cli check mine.TLV", before="<!-- with mine.TLV = deep-cover.TLV -->"))

    def test_a_wrong_line_within_a_sentence_is_noticed(self):
        with self.assertRaisesRegex(DocsError, "ends with 3"):
            Commands(CLI, EXAMPLES).check("Say `telvo-cli check\nnone.TLV` now.")

    def test_what_is_shown_below_a_command_has_to_be_what_it_prints(self):
        self.run_block("$ telvo-cli check panel.TLV", "OK")
        self.run_block("$ telvo-cli report panel.TLV --page 1", "...", "[WARNINGS]", "...")
        self.assert_noticed("something else", "$ telvo-cli check panel.TLV", "All is well")
        self.assert_noticed("something else", "$ telvo-cli report panel.TLV --page 1", "...", "SF 3", "...")

    def test_a_synopsis_has_the_options_of_the_help(self):
        self.run_block("telvo-cli results CASE... --format text|json|csv", "telvo-cli report CASE [--page N]")
        self.assert_noticed("nothing of yaml", "telvo-cli results CASE --format text|yaml")
        self.assert_noticed("nothing of --pages", "telvo-cli report CASE [--pages N]")
        self.assert_noticed("no command", "telvo-cli contrast CASE CASE")
        self.assert_noticed("no scripts/instal", "scripts/instal     gets the packages")

    def test_what_is_marked_is_not_run(self):
        self.assertEqual(0, self.run_block("telvo-cli check none.TLV", before="<!-- not run: a file of the reader -->"))

    def test_examples_of_a_manual_page_are_found(self):
        self.assertEqual("```\ntelvo-cli check a-b.TLV\n```", of_manual_page(".PP\n.nf\ntelvo\\-cli check a\\-b.TLV\n.fi\n"))


class TextsOfTheProgram(unittest.TestCase):
    def test_texts_are_found_where_they_are_handed_on(self):
        source = '''
            // tell("a remark of the source, not a text")
            if (c == '"') return Fault{"the line is longer than " + number(Most) +
                                       " bytes", at("line")};
            notes.push_back("Front abutment is " "negative");
            label->setText("A caption of a window");
            {"txtWidth", test, "Invalid entry width"},'''
        self.assertEqual(["the line is longer than ", " bytes", "line", "Front abutment is negative",
                          "Invalid entry width"], messages.texts_of(source))

    def test_an_entry_stands_for_what_it_says_only(self):
        entry = "the line is longer than ... characters"
        self.assertTrue(messages.covers(entry, "the line is longer than"))
        self.assertFalse(messages.covers(entry, "the line is empty"))
        self.assertFalse(messages.covers("...", "the line is empty"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
