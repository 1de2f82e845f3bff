# SPDX-License-Identifier: Apache-2.0
"""Checks which changes are made in a source.

Usage: ChangesTest.py FOLDER_OF_THE_CHANGES [unittest arguments]
"""

import sys
import unittest

sys.path.insert(0, sys.argv.pop(1))
import changes


def changed(source, kind=None):
    """What the source becomes, change by change."""
    return [c.apply(source) for c in changes.changes_of(source) if kind in (None, c.kind)]


class Changes(unittest.TestCase):
    def assertChanges(self, source, kind, *expected):
        self.assertEqual(list(expected), changed(source, kind))

    def test_AComparisonMovesItsLimitAndIsNegated(self):
        for sign, others in {
            "<": ["<=", ">="], "<=": ["<", ">"], ">": ["<=", ">="], ">=": ["<", ">"],
            "==": ["!="], "!=": ["=="],
        }.items():  # fmt: skip
            with self.subTest(sign):
                self.assertChanges(f"a {sign} b", "operator", *[f"a {o} b" for o in others])

    def test_ArithmeticBecomesItsOpposite(self):
        for sign, other in {"+": "-", "-": "+", "*": "/", "<<": ">>", "&": "|", "+=": "-="}.items():
            with self.subTest(sign):
                self.assertChanges(f"a {sign} b", "operator", f"a {other} b")

    def test_BracketsOfTemplatesPointersAndReferencesStay(self):
        self.assertChanges("std::vector<int>& f(T&& a, const B* b)", None)

    def test_ANegationGoes(self):
        self.assertChanges("if (!a) {}", None, "if (a) {}")

    def test_AConditionWithoutAnOperatorIsNegated(self):
        self.assertChanges("if (a(b)) {}", "condition", "if (!(a(b))) {}")
        self.assertChanges("return a(b) ? c : d", "condition", "return !(a(b)) ? c : d")

    def test_AConditionOfSeveralPartsIsNegatedAsAWhole(self):
        self.assertChanges("while (a && b) {}", "condition", "while (!(a && b)) {}")

    def test_AConditionAfterADeclarationIsNegatedAlone(self):
        self.assertChanges("if (auto a = b(); a) {}", "condition", "if (auto a = b(); !(a)) {}")

    def test_ANumberBecomesItsNeighbours(self):
        self.assertChanges("a = 0x10;", "number", "a = 15;", "a = 17;")
        self.assertChanges("a = 2'000U;", "number", "a = 1999U;", "a = 2001U;")
        self.assertChanges("a = 0.5F;", "number", "a = 1.5F;")

    def test_ZeroDoesNotBecomeNegative(self):
        self.assertChanges("a = 0;", "number", "a = 1;")

    def test_OctalNumbersStay(self):
        self.assertChanges("0644", "number")

    def test_NumbersInNamesStay(self):
        self.assertChanges("uint8_t u16le", None)

    def test_AStatusBecomesAnother(self):
        self.assertChanges("return AMEDIA_OK;", None, "return AMEDIA_ERROR_UNKNOWN;")
        self.assertChanges("return AMEDIA_ERROR_IO;", None, "return AMEDIA_OK;")

    def test_AResultBecomesThatOfItsTypeWithoutAValue(self):
        self.assertChanges("return a;", "result", "return {};")
        self.assertChanges("return nullptr;", None)

    def test_CallsAssignmentsAndJumpsAreDropped(self):
        for statement in ("a(b)", "a->b(c)", "(void)a()", "a = b", "*a = b", "++a", "break"):
            with self.subTest(statement):
                self.assertIn("{ ; }", changed(f"{{ {statement}; }}", "statement"))

    def test_AStatementAfterALabelIsDroppedWithoutIt(self):
        self.assertChanges("{ case A::b: c(); }", "statement", "{ case A::b: ; }")

    def test_DeclarationsStay(self):
        for statement in ("int a", "int a = 1", "const A* const a = b()", "void a() const"):
            with self.subTest(statement):
                self.assertChanges(f"{{ {statement}; }}", "statement")

    def test_TheTextBetweenTheBracketsOfAForIsNoStatement(self):
        self.assertChanges("for (a = b; c; d = e) {}", "statement")

    def test_CommentsTextsCharactersAndMacrosStay(self):
        for source in ("#define A \\\n    (b + 1)", "// c + 2", "/* !d\n 3 */", '"e + \\"4"', "'5'"):
            self.assertChanges(source, None)

    def test_ADigitSeparatorBeginsNoCharacter(self):
        self.assertChanges("1'0 + 'a' + b", "operator", "1'0 - 'a' + b", "1'0 + 'a' - b")

    def test_LinesAreCountedFromOne(self):
        source = "a();\n\nreturn b + 2;\n"
        self.assertEqual({1, 3}, {change.line(source) for change in changes.changes_of(source)})

    def test_TheDiffShowsTheLineBeforeAndAfter(self):
        source = "int a() {\n    return b + c;\n}\n"
        change = next(c for c in changes.changes_of(source) if c.kind == "operator")
        self.assertEqual("-     return b + c;\n+     return b - c;", change.diff(source))


if __name__ == "__main__":
    unittest.main()
