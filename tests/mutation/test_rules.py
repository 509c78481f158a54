#!/usr/bin/env python3
"""What tools/mutate changes in a source, and what it leaves alone."""

import contextlib
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from mutation import campaign, ledger, reach, rules, selection  # noqa: E402


def changes(text, rule=None):
    """Pairs of the line before and the line after."""
    found = rules.mutants("a.cpp", text)
    return [(m.before, m.after) for m in found if rule in (None, m.rule)]


def after(body, rule, head="void f()"):
    """The lines that a rule makes of the lines of a function's body."""
    return [line for _, line in changes(f"{head}\n{{\n{body}\n}}\n", rule)]


class Rules(unittest.TestCase):
    def test_comparisons_move_by_one_and_turn_round(self):
        self.assertEqual(after("run(a < b);", "comparison"), ["run(a <= b);", "run(a >= b);"])
        self.assertEqual(after("run(a == b);", "comparison"), ["run(a != b);"])

    def test_templates_and_streams_are_no_operators(self):
        body = "const QList<QPair<int, QSize>> list = all<int>();\nstream >> a << b;"
        self.assertEqual(after(body, "comparison"), [])
        self.assertEqual(after(body, "arithmetic"), [])

    def test_operators_are_exchanged(self):
        self.assertEqual(after("x = a + b;", "arithmetic"), ["x = a - b;"])
        self.assertEqual(after("x = a % b;", "arithmetic"), ["x = a * b;"])
        self.assertEqual(after("x = -a;", "arithmetic"), ["x = a;"])
        self.assertEqual(after("x = 1 << b;", "arithmetic"), ["x = 1 >> b;"])
        self.assertEqual(after("++x;", "arithmetic"), ["--x;"])
        self.assertEqual(after("x = a && !b;", "logic"), ["x = a || !b;", "x = a && b;"])
        self.assertEqual(after("Type *x = a;", "arithmetic"), [])

    def test_constants_are_one_more_and_one_less(self):
        self.assertEqual(after("x = 5;", "constant"), ["x = 4;", "x = 6;"])
        self.assertEqual(after("x = 0.5;", "constant"), ["x = -0.5;", "x = 1.5;"])
        self.assertEqual(after("x = 0xff;", "constant"), ["x = 254;", "x = 256;"])
        self.assertEqual(after("x = 0u;", "constant"), ["x = 1u;"])
        self.assertEqual(changes("constexpr int Most = 7;\n", "constant")[0][1],
                         "constexpr int Most = 6;")

    def test_calls_and_assignments_are_dropped_but_not_declarations(self):
        body = "run(1);\nm_x = 2;\nQ_EMIT told();\nQString name;\nconst int y = 3;\nList<A> l(4);"
        self.assertEqual(len(after(body, "dropped")), 3)

    def test_a_statement_of_several_lines_keeps_its_number_of_lines(self):
        text = "void f()\n{\n    run(a,\n        b);\n    go();\n}\n"
        for mutant in rules.mutants("a.cpp", text):
            self.assertEqual(mutant.applied(text).count("\n"), text.count("\n"))

    def test_statements_are_exchanged_where_their_order_may_matter(self):
        self.assertEqual(after("a();\nb();", "exchanged"), ["b(); a();"])
        self.assertEqual(after("m_a = 1;\nm_b = 2;", "exchanged"), [])
        self.assertEqual(after("m_a = 1;\nm_b = m_a;", "exchanged"), ["m_b = m_a; m_a = 1;"])
        self.assertEqual(after("a = least(a);\nb = least(b);", "exchanged"), [])
        self.assertEqual(after("if (x)\n    a();\nb();", "exchanged"), [])

        self.assertEqual(after("m_a = m_b;\nm_list.clear();", "exchanged"), [])
        self.assertEqual(after("m_a = m_b;\nm_list->clear();", "exchanged"),
                         ["m_list->clear(); m_a = m_b;"])
        self.assertEqual(after("a.insert(b, c);\na.insert(d, e);", "exchanged"), [])

    def exchanges(self, *lines):
        return len(after("\n".join(lines), "exchanged"))

    def test_members_of_one_json_object_are_in_no_order(self):
        self.assertEqual(self.exchanges("(void)json[A];", "(void)json[B];"), 0)
        self.assertEqual(self.exchanges("(void)json[A];", "(void)other[B];"), 1)
        self.assertEqual(self.exchanges("a.insert(b, c);", "a.insert(b, d);"), 1)
        self.assertEqual(after("return QJsonObject{{a, b}, {c, d}};", "arguments", "Json f()"),
                         ["return QJsonObject{{b, a}, {c, d}};",
                          "return QJsonObject{{a, b}, {d, c}};"])
        self.assertEqual(len(after("const QJsonObject x{{a, b}, {c, d}};", "arguments")), 2)
        self.assertEqual(len(after("return List{{a, b}, {c, d}};", "arguments", "List f()")), 3)

    def test_connections_and_properties_of_qt_are_in_no_order(self):
        first = "connect(a, &A::one, this, [] { run(); });"
        self.assertEqual(self.exchanges(first, "connect(a, &A::other, this, [] { go(); });"), 0)
        self.assertEqual(self.exchanges(first, "connect(a, &A::one, this, [] { go(); });"), 1)
        self.assertEqual(self.exchanges("t->setInterval(5);", "t->setSingleShot(true);"), 0)
        self.assertEqual(self.exchanges("t->setInterval(5);", "t->setInterval(6);"), 1)
        self.assertEqual(self.exchanges("t->setInterval(f());", "t->setSingleShot(true);"), 1)
        self.assertEqual(self.exchanges("t->setSize(5);", "t->setSingleShot(true);"), 1)

    def test_statements_that_share_only_what_they_read_are_in_no_order(self):
        self.assertEqual(self.exchanges("every &= word;", "any |= word;"), 0)
        self.assertEqual(self.exchanges("every &= word;", "any |= every;"), 1)
        self.assertEqual(self.exchanges("list.append(got);", "left -= quint32(got);"), 0)
        self.assertEqual(self.exchanges("list.append(left);", "left -= got;"), 1)
        self.assertEqual(self.exchanges("list.append(got);", "left -= taken(got);"), 1)
        self.assertEqual(self.exchanges("list.append(got);", "left -= other = got;"), 1)

    def test_a_local_value_does_not_depend_on_other_calls(self):
        head = ["const A *before = nullptr;", "const bool isNew = b();", "int y = c();"]
        last = "before = isNew ? &a : nullptr;"
        self.assertEqual(self.exchanges(*head, "run(a);", last), 0)
        self.assertEqual(self.exchanges(*head, "run(before);", last), 1)
        self.assertEqual(self.exchanges(*head, "run(a);", "before = m_isNew ? &a : nullptr;"), 1)
        self.assertEqual(self.exchanges(*head, "run(a);", "y = a;"), 1)
        self.assertEqual(self.exchanges(*head, "run(a);", "m_isNew = isNew;"), 1)
        self.assertEqual(self.exchanges(*head, "call([&] { y = 1; });", "run(a);", last), 2)
        self.assertEqual(self.exchanges("int &x = m_x;", "run(a);", "x = 4;"), 1)
        self.assertEqual(self.exchanges("int x = 1;", "call(&x);", "run(a);", "x = 4;"), 2)

    def test_initial_values_that_a_conversion_overwrites_stay(self):
        self.assertEqual(after("bool ok = false;\nx = text.toInt(&ok);", "truth"), [])
        self.assertEqual(len(after("bool ok = true;\nif (a)\n    x = text.toInt(&ok);\nrun(ok);",
                                   "truth")), 1)
        self.assertEqual(len(after("bool ok = true;\nfind(&ok);", "truth")), 1)

    def test_initial_values_that_a_stream_overwrites_stay(self):
        self.assertEqual(after("int x = 0;\nstream >> x;\nrun(x);", "constant"), [])
        self.assertEqual(after("bool x = true;\nint y = 0;\ndata >> y >> x;", "truth"), [])
        self.assertEqual(after("int x = 0;\nif (!read(stream, x))\n    run();", "constant"), [])
        self.assertEqual(len(after("int x = 0;\nrun(x);\nstream >> x;", "constant")), 2)

    def test_arguments_are_exchanged(self):
        self.assertEqual(after("run(a, b(c, d));", "arguments"),
                         ["run(b(c, d), a);", "run(a, b(d, c));"])
        self.assertEqual(after("run(a, a);", "arguments"), [])
        self.assertEqual(after("return {a, b};", "arguments", "Pair f()"), ["return {b, a};"])
        self.assertEqual(changes("void f(int a, int b);\nvoid f(int a, int b)\n{\n}\n"), [])

    def test_a_function_returns_early_by_its_type(self):
        self.assertEqual(after("a();", "return"), ["return; a();"])
        self.assertEqual(after("a();", "return", "bool X::f(int b) const"), ["return {}; a();"])
        self.assertEqual(after("a();", "return", "X::~X()"), ["return; a();"])
        self.assertEqual(after("return a();", "return", "bool f()"), [])

    def test_both_sides_of_an_exception_are_read(self):
        body = "try {\n    a();\n} catch (const Bad &) {\n    b();\n}\nc();"
        self.assertEqual(after(body, "dropped"), [";", ";", ";"])

    def test_comments_texts_directives_and_debug_output_stay(self):
        body = """// 1 < 2
/* true */
qDebug("%d", 5);
list.reserve(4 * n);
list.squeeze();
Q_ASSERT(a == 3);
static_assert(sizeof a == 8);"""
        self.assertEqual(after(body, None), [])
        self.assertEqual(changes('#include "a1.h"\n#if 1 < 2\n#endif\n/// 5 + 6\n'), [])

    def test_the_place_is_named(self):
        first = rules.mutants("a.cpp", "\nint X::f(int a)\n{\n    return a + 1;\n}\n")[0]
        self.assertEqual((first.line, first.function), (4, "X::f"))

    def test_a_mutant_is_known_again_when_lines_move(self):
        text = "void f()\n{\n    a(1);\n}\n"
        keys = [m.key for m in rules.mutants("a.cpp", text)]
        self.assertEqual([m.key for m in rules.mutants("a.cpp", "// new\n" + text)], keys)
        self.assertEqual(len(set(keys)), len(keys))


class Selection(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name)
        for folder in selection.FOLDERS:
            (self.root / folder).mkdir()
        (self.root / "framework/long.cpp").write_text(
            "void f()\n{\n" + "".join(f"    a{i}({i} + 2);\n" for i in range(40)) + "}\n")
        (self.root / "animatedimage/short.cpp").write_text("void f()\n{\n    a(1);\n}\n")
        (self.root / "animatedimage/none.h").write_text("class A;\n")

    def tearDown(self):
        self.folder.cleanup()

    def queues(self, seed):
        return selection.queues(self.root, selection.sources(self.root), seed)

    def test_every_source_gets_some_and_the_long_one_the_most(self):
        queued = self.queues(1)
        quota = selection.quotas(queued, 30)
        self.assertEqual(sorted(quota), ["animatedimage/short.cpp", "framework/long.cpp"])
        self.assertEqual(quota["animatedimage/short.cpp"], len(queued["animatedimage/short.cpp"]))
        self.assertEqual(sum(quota.values()), 30)

    def test_the_seed_decides_and_rules_take_turns(self):
        keys = [m.key for m in self.queues(1)["framework/long.cpp"]]
        self.assertEqual([m.key for m in self.queues(1)["framework/long.cpp"]], keys)
        self.assertNotEqual([m.key for m in self.queues(2)["framework/long.cpp"]], keys)
        first = self.queues(1)["framework/long.cpp"]
        kinds = {m.rule for m in first}
        self.assertEqual({m.rule for m in first[: len(kinds)]}, kinds)


class Shop:
    """Compiles nothing: what an optimised source gives is its text without white space."""

    library_files = ["lib.so"]
    links = {"lib.so": ["a.o"]}

    def __init__(self, text):
        self.text = text

    def users_of(self, file, output):
        return ["a.o"]

    @contextlib.contextmanager
    def changed(self, file, text):
        before, self.text = self.text, text
        yield
        self.text = before

    @contextlib.contextmanager
    def linked(self, output, replaced):
        yield True

    def optimised(self, part):
        return "".join(self.text.split())


class Tests:
    """Those that look at a mutant, none of which notices anything."""

    def __init__(self, count):
        self.all = [{"name": str(i)} for i in range(count)]

    def tests_for(self, mutant):
        return self.all


class Equivalents(unittest.TestCase):
    def outcome(self, test_count, original, mutated):
        worker = campaign.Worker.__new__(campaign.Worker)
        worker.shop, worker.reach = Shop(mutated), Tests(test_count)
        self.ran = []
        worker._failure = lambda test, mutant, replaced: self.ran.append(test["name"])
        mutant = rules.mutants("a.cpp", "void f()\n{\n    a(1);\n}\n")[0]
        return worker._tried(mutant, original, {"a.o": "changed.o"}, {})[0]

    def test_what_the_optimiser_makes_the_same_of_does_not_count(self):
        self.assertEqual(self.outcome(1, "a b", "ab"), ledger.DISCARDED)
        self.assertEqual(self.outcome(9, "a b", "ab"), ledger.DISCARDED)
        self.assertEqual(self.ran, ["0", "1", "2", "3"])

    def test_what_it_makes_something_else_of_survives_if_no_test_notices(self):
        self.assertEqual(self.outcome(1, "ab", "ba"), ledger.SURVIVED)
        self.assertEqual(self.outcome(9, "ab", "ba"), ledger.SURVIVED)
        self.assertEqual(len(self.ran), 9)


class Programs:
    """Three test programs, of which two include the header, in a tree with these sources."""

    tests = [{"name": name, "program": name} for name in ("includes", "does not", "other")]

    def __init__(self, tree, *sources):
        self.tree = Path(tree)
        for source in sources:
            (self.tree / source).touch()

    def users_of(self, file, program):
        return [] if program == "does not" else ["test.o"]


class Reached(unittest.TestCase):
    def judges(self, lines, *sources):
        with tempfile.TemporaryDirectory() as tree:
            known = reach.Reach(Programs(tree, *sources), tree)
            known.data = {"counted": {"a.h": [3, 9]}, "tests": {
                name: {"lines": reached, "seconds": 0.1} for name, reached in lines.items()}}
            mutant = rules.mutants("a.h", "\n\nconstexpr int A = 1;\n")[0]
            return sorted(test["name"] for test in known.tests_for(mutant))

    def test_a_program_that_compiles_a_header_itself_may_notice_its_mutants(self):
        lines = {"includes": {"a.cpp": [7]}, "does not": {"a.cpp": [7]},
                 "other": {"b.cpp": [1], "a.h": [9]}}
        self.assertEqual(self.judges(lines, "a.cpp"), ["includes"])

    def test_so_may_all_that_include_a_header_without_a_source(self):
        lines = {"includes": {"b.cpp": [7]}, "does not": {"b.cpp": [7]}, "other": {"a.h": [9]}}
        self.assertEqual(self.judges(lines), ["includes", "other"])


class Accepted(unittest.TestCase):
    def accepted(self, text):
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
            file.write(text)
            file.flush()
            return ledger.Accepted(file.name)

    def test_a_survivor_is_accepted_by_its_lines_and_its_function(self):
        entries = self.accepted(
            "# a remark\n\na.cpp X::f\n- x = a + b;\n+ x = a - b;\n- y;\n+ ;\nNothing reads it,\n"
            "ever.\n")
        text = "void X::f()\n{\n    x = a + b;\n}\nvoid g()\n{\n    x = a + b;\n}\n"
        found = [m for m in rules.mutants("a.cpp", text) if m.rule == "arithmetic"]
        self.assertEqual([entries.reason(m) for m in found], ["Nothing reads it, ever.", None])
        self.assertEqual(entries.outdated(found), [("a.cpp", "X::f", "y;", ";")])

    def test_an_entry_without_a_reason_is_refused(self):
        with self.assertRaises(ledger.FormatError):
            self.accepted("a.cpp X::f\n- x;\n+ ;\n")

    def test_of_two_results_the_later_one_counts(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "results.jsonl"
            mutant = rules.mutants("a.cpp", "void f()\n{\n    a(1);\n}\n")[0]
            ledger.Ledger(path).add(mutant, ledger.SURVIVED, "", "")
            ledger.Ledger(path).add(mutant, ledger.KILLED, "tst_a::b", "")
            self.assertEqual(ledger.Ledger(path).outcome(mutant), ledger.KILLED)
            self.assertEqual(ledger.Ledger(path).killers("a.cpp"), {"tst_a": 1})
            self.assertEqual(ledger.Ledger(path).killers("a.h"), {"tst_a": 1})
            self.assertEqual(ledger.Ledger(path).killers("aa.h"), {})


if __name__ == "__main__":
    unittest.main()
