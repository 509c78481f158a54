"""Tokens of C++ sources, and the functions, blocks and statements that they make up.

Not a compiler: it knows as much of the language as it takes to find places to change. A change that
turns out to be no C++ is refused by the compiler, and no harm is done.
"""

import bisect
import re
from dataclasses import dataclass, field

TOKEN = re.compile(
    r"""
    (?P<space>\s+)
  | (?P<comment>//(?:\\\n|[^\n])*|/\*.*?\*/)
  | (?P<directive>(?<![^\n])[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<string>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
  | (?P<char>(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|\d[\d']*\.?\d*(?:[eE][+-]?\d+)?|\.\d+(?:[eE][+-]?\d+)?)
               [uUlLfF]*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
    """,
    re.VERBOSE | re.DOTALL,
)

OPENING = {"(": ")", "[": "]", "{": "}"}
CLOSING = set(OPENING.values())
SCOPE_WORDS = {"namespace", "class", "struct", "union", "enum", "extern"}
DECLARATION_WORDS = {
    "const", "constexpr", "static", "auto", "using", "typedef", "static_assert", "bool", "int",
    "double", "float", "char", "template", "friend", "struct", "class", "enum",
}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass
class Statement:
    """The tokens first to last of one statement, its semicolon or closing brace included."""

    first: int
    last: int
    kind: str  # "expression", "declaration", "jump" or "control"


@dataclass
class Block:
    statements: list = field(default_factory=list)


@dataclass
class Function:
    """@p first and @p last are the braces of the body."""

    name: str
    first: int
    last: int
    returns_value: bool
    is_lambda: bool
    blocks: list = field(default_factory=list)


class Source:
    """A source with its tokens; @c functions come in the order of their opening braces."""

    def __init__(self, text):
        self.text = text
        self.line_starts = [0] + [m.end() for m in re.finditer("\n", text)]
        self.tokens = [
            Token(m.lastgroup, m.group(), m.start(), m.end())
            for m in TOKEN.finditer(text)
            if m.lastgroup not in ("space", "comment", "directive")
        ]
        self.partner = self._partners()
        self.functions = []
        self._find_functions(0, len(self.tokens))

    def line_of(self, offset):
        """The number of the line that @p offset lies in, from 1."""
        return bisect.bisect_right(self.line_starts, offset)

    def lines(self, first, last):
        """The lines first to last as one, without indentation."""
        begin = self.line_starts[first - 1]
        end = self.line_starts[last] if last < len(self.line_starts) else len(self.text)
        return " ".join(self.text[begin:end].split())

    def is_spaced(self, index):
        """Whether there is white space on both sides of a token, as around a binary operator."""
        token = self.tokens[index]
        around = self.text[token.start - 1 : token.start] + self.text[token.end : token.end + 1]
        return len(around) == 2 and around.isspace()

    def is_word(self, index, *texts):
        return 0 <= index < len(self.tokens) and self.tokens[index].text in texts

    def function_at(self, index):
        """The innermost function whose body holds the token @p index, or None."""
        inside = [f for f in self.functions if f.first < index < f.last]
        return max(inside, key=lambda f: f.first) if inside else None

    def statement_at(self, index):
        """The innermost statement without a block of its own that holds the token, or None."""
        for function in reversed(self.functions):
            for block in function.blocks:
                for statement in block.statements:
                    if statement.kind != "control" and statement.first <= index <= statement.last:
                        return statement
        return None

    def _partners(self):
        partner, open_ones = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind != "sign":
                continue
            if token.text in OPENING:
                open_ones.append(index)
            elif token.text in CLOSING and open_ones:
                begin = open_ones.pop()
                partner[begin], partner[index] = index, begin
        return partner

    # Outside functions.

    def _find_functions(self, index, end):
        head = index
        while index < end:
            text = self.tokens[index].text
            if text == "{" and self.tokens[index].kind == "sign":
                close = self.partner.get(index, end)
                if self._is_scope(head, index):
                    self._find_functions(index + 1, close)
                elif self._is_function(head, index):
                    self._add_function(head, index)
                index = head = close
            elif text in (";", "}"):
                head = index + 1
            elif text == "(":
                index = self.partner.get(index, index)
            index += 1
            if index > head and self.is_word(index - 1, "}"):
                head = index

    def _is_scope(self, head, brace):
        words = {t.text for t in self.tokens[head:brace]}
        return bool(words & SCOPE_WORDS) and "(" not in words - {"extern"}

    def _is_function(self, head, brace):
        before = [t.text for t in self.tokens[head:brace]]
        if "(" not in before:
            return False
        # An initialiser, not a body: "x = {", or a member in a constructor's list.
        return before[-1] not in ("=", ",") and "=" not in before[: before.index("(")]

    def _add_function(self, head, brace):
        opening = next(i for i in range(head, brace) if self.tokens[i].text == "(")
        name_start = opening - 1
        while name_start - 1 >= head and self.tokens[name_start - 1].text in ("::", "~"):
            name_start -= 1
            if self.tokens[name_start - 1].kind == "name" and name_start - 1 >= head:
                name_start -= 1
        kind = [t.text for t in self.tokens[head:name_start]]
        kind = [word for word in kind if word not in ("inline", "static", "explicit", "virtual")]
        name = "".join(t.text for t in self.tokens[name_start:opening])
        returns_value = bool(kind) and kind != ["void"]
        self._add_body(Function(name, brace, self.partner[brace], returns_value, False))

    def _add_body(self, function):
        self.functions.append(function)
        self._parse_block(function.first, function)

    # Inside functions.

    def _parse_block(self, brace, function):
        block = Block()
        function.blocks.append(block)
        index = brace + 1
        while index < self.partner[brace]:
            index = self._parse_statement(index, function, block)

    def _parse_statement(self, index, function, block):
        """Adds the statement at @p index and what it holds; gives the index of what follows it."""
        first, text = index, self.tokens[index].text
        if text == "{":
            self._parse_block(index, function)
            return self.partner[index] + 1
        if text in ("case", "default"):
            while not self.is_word(index, ":"):
                index += 1
            return index + 1
        if text == "try":
            return self._parse_part(index + 1, function)
        if text == "catch":
            return self._parse_part(self.partner[index + 1] + 1, function)
        if text in ("if", "for", "while", "switch"):
            if self.is_word(index + 1, "constexpr"):
                index += 1
            statement = Statement(first, first, "control")
            block.statements.append(statement)
            self._find_lambdas(index + 2, self.partner[index + 1], function)
            index = self._parse_part(self.partner[index + 1] + 1, function)
            if text == "if" and self.is_word(index, "else"):
                index = self._parse_part(index + 1, function)
            statement.last = index - 1
            return index
        if text == "do":
            index = self._parse_part(index + 1, function)
            return self._end_of_simple(index) + 1
        last = self._end_of_simple(index)
        block.statements.append(Statement(first, last, self._kind_of(first, last)))
        self._find_lambdas(first, last, function)
        return last + 1

    def _parse_part(self, index, function):
        """What an if or a loop governs: a block, or one statement in a block of its own."""
        if self.is_word(index, "{"):
            self._parse_block(index, function)
            return self.partner[index] + 1
        block = Block()
        function.blocks.append(block)
        return self._parse_statement(index, function, block)

    def _end_of_simple(self, index):
        while index < len(self.tokens) - 1 and not self.is_word(index, ";", "}"):
            index = self.partner[index] if self.tokens[index].text in OPENING else index
            index += 1
        return index

    def _find_lambdas(self, index, end, function):
        while index < end:
            begins_body = self.is_word(index - 1, ")", "]", "mutable", "noexcept")
            if self.is_word(index, "{") and begins_body:
                body = Function(function.name, index, self.partner[index], False, True)
                self._add_body(body)
                index = self.partner[index]
            index += 1

    def _kind_of(self, first, last):
        token = self.tokens[first]
        if token.text in ("return", "break", "continue", "throw", "goto"):
            return "jump"
        if token.text in DECLARATION_WORDS:
            return "declaration"
        if token.text in ("Q_EMIT", "delete") or token.kind != "name":
            return "expression"
        # A type and a name after it: "QString name", "const auto *x", "QList<QRect> rects".
        index = first + 1
        while index < last and self.tokens[index].text in ("::", "<"):
            if self.tokens[index].text == "<" and self.is_spaced(index):
                return "expression"
            index = self._after_template(index) if self.tokens[index].text == "<" else index + 2
        while index < last and self.tokens[index].text in ("*", "&", "const"):
            index += 1
        is_declaration = self.tokens[index].kind == "name" and index <= last
        return "declaration" if is_declaration else "expression"

    def _after_template(self, index):
        depth = 0
        while index < len(self.tokens):
            text = self.tokens[index].text
            depth += {"<": 1, ">": -1, ">>": -2}.get(text, 0)
            index += 1
            if depth <= 0 or text == ";":
                break
        return index
