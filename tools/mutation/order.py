"""Whether the order of two neighbouring statements may matter.

It does not, and they are not exchanged, where

- both say the same;
- both set or look up members of one JSON object or map, by different keys;
- both only register or store something in an object of Qt, and not the same thing: connections of
  different signals, and setters of different properties;
- both are assignments, and neither uses what the other sets;
- both reach different variables alone, or use none that one of them changes;
- one assigns a local value that only depends on local values, and the other names none of them.

All other statements are taken to depend on each other: what a function does is not looked at.
"""

# Setters of Qt that store one property each, and do nothing else.
SETTERS = {"setAutoTransform", "setCacheMode", "setDecideFormatFromContent", "setDotsPerMeterX",
           "setDotsPerMeterY", "setInterval", "setSingleShot", "setText"}

# Casts, and operations of containers, that only read their arguments.
READERS = {"append", "at", "char", "double", "float", "int", "isEmpty", "isNull", "isValid",
           "push_back", "qint32", "qint64", "qsizetype", "quint32", "quint64", "quint8", "size",
           "size_t", "uchar", "unsigned"}

ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "%=", "|=", "&=", "^=", "<<=", ">>="}

# What a statement that is looked through must not hold.
OPAQUE = {"->", "[", "new", "delete", "Q_EMIT", "throw", "++", "--", "<<", ">>"}


class Order:
    def __init__(self, source):
        self.source = source
        self.tokens = source.tokens

    def may_matter(self, one, other, function):
        if self._text(one) == self._text(other):
            return False
        if self._are_members(one, other) or self._are_registrations(one, other):
            return False
        targets = [self._target(statement) for statement in (one, other)]
        if all(targets):
            padded = [f" {self._text(statement)} " for statement in (one, other)]
            return f" {targets[0]} " in padded[1] or f" {targets[1]} " in padded[0]
        names = [set(self._names(statement)) for statement in (one, other)]
        if not names[0] & names[1] and self._is_local(one) and self._is_local(other):
            return False
        if self._use_apart(one, other):
            return False
        return not (self._is_private(one, other, function)
                    or self._is_private(other, one, function))

    def _text(self, statement):
        return " ".join(self._words(statement))

    def _words(self, statement):
        return [t.text for t in self.tokens[statement.first : statement.last + 1]]

    def _names(self, statement):
        return [t.text for t in self.tokens[statement.first : statement.last] if t.kind == "name"]

    def _target(self, statement):
        for index in range(statement.first, statement.last):
            if self.tokens[index].text == "=":
                return " ".join(t.text for t in self.tokens[statement.first : index])
        return ""

    # Members, connections and properties.

    def _are_members(self, one, other):
        places = [self._member(statement) for statement in (one, other)]
        return all(places) and places[0][0] == places[1][0] and places[0][1] != places[1][1]

    def _member(self, statement):
        """The object and the key of "json.insert(key, …)" or of "(void)json[key]"."""
        words = self._words(statement)
        if words[:3] == ["(", "void", ")"]:
            words = words[3:]
            if words[1:2] == ["["] and words[-2:] == ["]", ";"]:
                return words[0], words[2:-2]
        elif words[1:4] == [".", "insert", "("] and "," in words:
            return words[0], words[4 : words.index(",")]
        return None

    def _are_registrations(self, one, other):
        noted = [self._registration(statement) for statement in (one, other)]
        return all(noted) and noted[0] != noted[1]

    def _registration(self, statement):
        """The sender and the signal of a connection, or the property of a setter."""
        words = self._words(statement)
        start = 2 if words[:2] == ["QObject", "::"] else 0
        if words[start : start + 2] == ["connect", "("]:
            parts = self._arguments(statement.first + start + 1)
            return (parts[0], parts[1]) if len(parts) > 2 else None
        if len(words) > 3 and words[1] in (".", "->") and words[2] in SETTERS:
            simple = all(t.text not in ("(", "{", "[")
                         for t in self.tokens[statement.first + 4 : statement.last])
            return (words[0], words[2]) if simple else None
        return None

    def _arguments(self, index):
        parts, words, at = [], [], index + 1
        close = self.source.partner[index]
        while at < close:
            if self.tokens[at].text == ",":
                parts.append(" ".join(words))
                words = []
            else:
                end = self.source.partner.get(at, at)
                end = end if end > at else at
                words += [t.text for t in self.tokens[at : end + 1]]
                at = end
            at += 1
        return [*parts, " ".join(words)]

    # Variables.

    def _is_local(self, statement):
        """Whether a statement only reaches the variables that it names: "x = y", "x.clear()"."""
        for index in range(statement.first, statement.last):
            if self.source.is_word(index, "->"):
                return False
            is_call = self.source.is_word(index + 1, "(") and self.tokens[index].kind == "name"
            if is_call and not self.source.is_word(index - 1, "."):
                return False
        return True

    def _changed(self, statement):
        """The one variable that a statement changes: "x = …", "x |= …", "x.append(…)"; None when
        it may change another, or is not looked through."""
        words = self._words(statement)
        if OPAQUE & set(words) or not self._only_reads(statement):
            return None
        is_assignment = len(words) > 2 and words[1] in ASSIGNMENTS
        is_call = words[1:2] == ["."] and words[2:4] != [] and words[3:4] == ["("]
        is_plain = self.tokens[statement.first].kind == "name"
        if not is_plain or not (is_assignment or (is_call and words[2] in ("append", "push_back"))):
            return None
        nested = sum(word in ASSIGNMENTS for word in words)
        return words[0] if nested == int(is_assignment) else None

    def _only_reads(self, statement):
        return all(self.tokens[i].text in READERS for i in range(statement.first, statement.last)
                   if self.tokens[i].kind == "name" and self.source.is_word(i + 1, "(", "{"))

    def _use_apart(self, one, other):
        changed = [self._changed(statement) for statement in (one, other)]
        return (all(changed) and changed[0] not in self._names(other)
                and changed[1] not in self._names(one))

    def _is_private(self, statement, other, function):
        """Whether @p statement assigns a local value to a local variable, and @p other has nothing
        to do with them. Where an exception may end the other one, nothing reads the variable."""
        body = self.tokens[function.first : function.last]
        words = [token.text for token in body]
        if "try" in words or any(a == "[" and b == "&" for a, b in zip(words, words[1:])):
            return False
        changed = self._changed(statement)
        if not changed or not self._target(statement):
            return False
        used = {self.tokens[i].text for i in range(statement.first, statement.last)
                if self.tokens[i].kind == "name" and not self._is_address(i)}
        used -= {"nullptr", "true", "false"} | READERS
        named = set(self._names(other))
        return not used & named and all(self._is_value(name, function) for name in used)

    def _is_address(self, index):
        """Whether only the address of the name at @p index is taken."""
        return (self.source.is_word(index - 1, "&") and self.tokens[index - 2].kind == "sign"
                and not self.source.is_word(index + 1, ".", "->", "[", "(")
                and not self.source.is_word(index - 2, ")", "]"))

    def _is_value(self, name, function):
        """Whether @p name is declared in the function, not as a reference, and its address is never
        taken."""
        is_declared = False
        for index in range(function.first + 1, function.last):
            if self.tokens[index].text != name:
                continue
            before = self.tokens[index - 1]
            if before.text in ("&", "&&") and not self.source.is_spaced(index - 1):
                return False
            is_type = before.kind == "name" and before.text not in ("return", "new", "delete")
            is_pointer = before.text == "*" and self.tokens[index - 2].kind == "name"
            is_pointer = is_pointer and not self.source.is_spaced(index - 1)
            if (is_type or is_pointer or before.text == ">") and self.source.is_word(
                    index + 1, "=", ";", "[", "{", "(", ":"):
                is_declared = True
        return is_declared
