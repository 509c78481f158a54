"""The changes that are tried: each is one line, and one that somebody could write by mistake."""

import hashlib
import re
from dataclasses import dataclass

from . import lexer, order

BOUNDARY = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
OPPOSITE = {"<": ">=", "<=": ">", ">": "<=", ">=": "<", "==": "!=", "!=": "=="}
ARITHMETIC = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "|": "&", "&": "|", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|=",
}
LOGIC = {"&&": "||", "||": "&&"}
STEP = {"++": "--", "--": "++"}

CONTROL = {"if", "for", "while", "switch", "return", "catch"}

# Calls that only tell developers something, set memory aside, or give spare memory back.
UNTOUCHED = {"qDebug", "qWarning", "qCritical", "qCDebug", "Q_ASSERT", "Q_UNUSED", "static_assert",
             "assert", "Q_ASSERT_X", "reserve", "squeeze"}

# Conversions of texts to numbers, which take the address of a bool.
CONVERSION = re.compile(r"to(U?Int|U?Long(Long)?|U?Short|Double|Float)")


@dataclass
class Mutant:
    """One change of one source. Lines count from 1; the range is that of the whole statement."""

    file: str
    function: str
    line: int
    first_line: int
    last_line: int
    rule: str
    start: int
    end: int
    replacement: str
    before: str = ""
    after: str = ""
    key: str = ""

    def applied(self, text):
        return text[: self.start] + self.replacement + text[self.end :]

    def __str__(self):
        return f"{self.file}:{self.line}: {self.rule}: {self.before}  ->  {self.after}"


def mutants(file, text):
    """All changes of a source, in the order of their places."""
    maker = _Maker(file, lexer.Source(text))
    found = sorted(maker.all(), key=lambda m: (m.start, m.end, m.rule, m.replacement))
    times = {}
    for mutant in found:
        same = (mutant.function, mutant.rule, mutant.before, mutant.after)
        times[same] = times.get(same, 0) + 1
        parts = (mutant.file, *same, str(times[same]))
        mutant.key = hashlib.sha1("\0".join(parts).encode()).hexdigest()[:16]
    return found


class _Maker:
    def __init__(self, file, source):
        self.file = file
        self.source = source
        self.tokens = source.tokens
        self.order = order.Order(source)
        self.untouched = self._untouched()

    def all(self):
        for index in range(len(self.tokens)):
            if index not in self.untouched:
                yield from self._of_token(index)
        for function in self.source.functions:
            for block in function.blocks:
                yield from self._of_block(block, function)

    def _untouched(self):
        """The indexes of tokens that no rule may change."""
        indexes = set()
        for index, token in enumerate(self.tokens):
            if token.text in UNTOUCHED and self.source.is_word(index + 1, "("):
                statement = self.source.statement_at(index)
                first = statement.first if statement else index
                indexes.update(range(first, self.source.partner[index + 1] + 1))
            # The name of an operator, and the parameters of a template.
            if token.text == "operator":
                indexes.update((index, index + 1))
            if token.text == "template" and self.source.is_word(index + 1, "<"):
                indexes.update(range(index, self.source._after_template(index + 1)))
        for function in self.source.functions:
            for block in function.blocks:
                indexes.update(self._unread(block))
        return indexes

    def _unread(self, block):
        """The initial values of variables that are set from a stream or from bytes before anything
        reads them: a change of these changes nothing."""
        for place, statement in enumerate(block.statements):
            equals = statement.first + 2
            is_value = statement.last == equals + 2 and self.source.is_word(equals, "=")
            if statement.kind != "declaration" or not is_value:
                continue
            name = self.tokens[equals - 1].text
            for later in block.statements[place + 1 :]:
                used = [i for i in range(later.first, later.last + 1)
                        if self.tokens[i].text == name]
                if used:
                    if self._is_set(used[0], later):
                        yield equals + 1
                    break

    def _is_set(self, index, statement):
        """Whether the name at @p index is set there: "stream >> x", "read(stream, x)",
        "text.toInt(&x)"."""
        if self.source.is_word(index - 1, ">>"):
            return True
        # Qt's conversions of texts say in any case whether they could.
        is_address = self.source.is_word(index - 1, "&") and self.source.is_word(index - 2, "(")
        if is_address and statement.kind != "control":
            if CONVERSION.fullmatch(self.tokens[index - 3].text):
                return True
        around = [i for i, token in enumerate(self.tokens[:index])
                  if token.text == "(" and self.source.partner.get(i, 0) > index]
        return bool(around) and self.source.is_word(around[-1] - 1, "read", "memcpy")

    def _mutant(self, index, rule, start, end, replacement):
        source = self.source
        function = source.function_at(index)
        statement = source.statement_at(index)
        line = source.line_of(start)
        first, last = line, source.line_of(max(start, end - 1))
        replaced = source.text[start:end]
        replacement += "\n" * (replaced.count("\n") - replacement.count("\n"))
        mutant = Mutant(self.file, function.name if function else "", line, first, last, rule,
                        start, end, replacement)
        if statement:
            mutant.first_line = source.line_of(self.tokens[statement.first].start)
            mutant.last_line = source.line_of(self.tokens[statement.last].start)
        mutant.before = source.lines(first, last)
        changed = lexer.Source.__new__(lexer.Source)
        changed.text = mutant.applied(source.text)
        changed.line_starts = [0] + [m.end() for m in re.finditer("\n", changed.text)]
        mutant.after = changed.lines(first, last)
        return mutant

    # Single tokens.

    def _of_token(self, index):
        token = self.tokens[index]
        if token.kind == "number":
            yield from self._constant(index)
        elif token.text in ("true", "false"):
            other = "false" if token.text == "true" else "true"
            yield self._replaced(index, "truth", other)
        elif token.kind == "sign":
            yield from self._operator(index)
            if token.text in ("(", "{"):
                yield from self._arguments(index)

    def _replaced(self, index, rule, text):
        token = self.tokens[index]
        return self._mutant(index, rule, token.start, token.end, text)

    def _operator(self, index):
        text = self.tokens[index].text
        if self.source.is_spaced(index):
            if text in BOUNDARY:
                yield self._replaced(index, "comparison", BOUNDARY[text])
            if text in OPPOSITE:
                yield self._replaced(index, "comparison", OPPOSITE[text])
            if text in LOGIC:
                yield self._replaced(index, "logic", LOGIC[text])
            if text in ARITHMETIC and self._is_arithmetic(index):
                yield self._replaced(index, "arithmetic", ARITHMETIC[text])
        if text in STEP:
            yield self._replaced(index, "arithmetic", STEP[text])
        if text == "!" and self.source.function_at(index):
            yield self._replaced(index, "logic", "")
        if text == "-" and not self.source.is_spaced(index):
            yield self._replaced(index, "arithmetic", "")

    def _is_arithmetic(self, index):
        """Shifts are told from streams by a number beside them."""
        if self.tokens[index].text not in ("<<", ">>"):
            return True
        return "number" in (self.tokens[index - 1].kind, self.tokens[index + 1].kind)

    def _constant(self, index):
        text = self.tokens[index].text
        suffix = re.search(r"[uUlLfF]*$", text).group() if not text.startswith("0x") else ""
        digits = text[: len(text) - len(suffix)].replace("'", "")
        is_whole = text.startswith("0x") or re.fullmatch(r"\d+", digits)
        value = int(digits, 0) if is_whole else float(digits)
        for other in (value + 1, value - 1):
            is_unsigned = suffix.lower().startswith("u")
            if other < 0 and (is_unsigned or self.source.is_word(index - 1, "-")):
                continue
            yield self._replaced(index, "constant", f"{other}{suffix}")

    # Arguments.

    def _arguments(self, index):
        if not self._is_call(index):
            return
        parts = self._parts(index)
        # The members of a JSON object are kept in the order of their keys.
        has_keys = self.source.is_word(index, "{") and self._is_of_type(index, "QJsonObject")
        for (first, last), (next_first, next_last) in zip(parts, parts[1:]):
            if has_keys and self._key(first) != self._key(next_first):
                continue
            start, middle = self.tokens[first].start, self.tokens[last].end
            resumed, end = self.tokens[next_first].start, self.tokens[next_last].end
            text = self.source.text
            one, other = text[start:middle], text[resumed:end]
            if " ".join(one.split()) != " ".join(other.split()):
                swapped = other + text[middle:resumed] + one
                yield self._mutant(first, "arguments", start, end, swapped)

    def _is_of_type(self, index, name):
        """Whether a value of the type @p name begins at @p index: "Name{", or "Name x{"."""
        is_variable = self.tokens[index - 1].kind == "name" and self.source.is_word(index - 2, name)
        return is_variable or self.source.is_word(index - 1, name)

    def _key(self, index):
        """The first of the two values in the braces at @p index."""
        first, last = self._parts(index)[0] if self.source.is_word(index, "{") else (index, index)
        return " ".join(t.text for t in self.tokens[first : last + 1])

    def _is_call(self, index):
        """A call or a list of values, not the parameters of a function or of a lambda."""
        function = self.source.function_at(index)
        if not function or index == 0:
            return False
        before = self.tokens[index - 1]
        if self.tokens[index].text == "{":
            return before.text in ("return", "=", "(", ",", "{", "<<") or before.kind == "name"
        is_name = before.kind == "name" and before.text not in CONTROL
        return is_name or before.text == ">"

    def _parts(self, index):
        parts, first = [], index + 1
        close, at = self.source.partner[index], index + 1
        while at < close:
            text = self.tokens[at].text
            if text == ";":
                return []
            if text in lexer.OPENING:
                at = self.source.partner[at]
            elif text == ",":
                parts.append((first, at - 1))
                first = at + 1
            at += 1
        parts.append((first, close - 1))
        return [part for part in parts if part[0] <= part[1]]

    # Statements.

    def _of_block(self, block, function):
        for statement in block.statements:
            if statement.first in self.untouched:
                continue
            if statement.kind == "expression":
                yield self._dropped(statement)
            if statement.kind in ("expression", "control") and not function.is_lambda:
                yield self._returned(statement, function)
        for one, other in zip(block.statements, block.statements[1:]):
            if {one.first, other.first} & self.untouched or one.kind != other.kind:
                continue
            if one.kind == "expression" and self.order.may_matter(one, other, function):
                yield self._exchanged(one, other)

    def _dropped(self, statement):
        start, end = self.tokens[statement.first].start, self.tokens[statement.last].end
        return self._mutant(statement.first, "dropped", start, end, ";")

    def _returned(self, statement, function):
        start = self.tokens[statement.first].start
        jump = "return {}; " if function.returns_value else "return; "
        return self._mutant(statement.first, "return", start, start, jump)

    def _exchanged(self, one, other):
        start, middle = self.tokens[one.first].start, self.tokens[one.last].end
        resumed, end = self.tokens[other.first].start, self.tokens[other.last].end
        text = self.source.text
        swapped = text[resumed:end] + text[middle:resumed] + text[start:middle]
        return self._mutant(one.first, "exchanged", start, end, swapped)
