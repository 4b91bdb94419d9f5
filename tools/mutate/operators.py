"""operators.py: what is changed where in a C++ source file.

The file is read with the compiler's own parser, so that a change is made to an operator, a literal or a statement and
never to a comment, a string, an include, a static assertion or the inside of a macro.
"""

import re

from clang import cindex
from clang.cindex import CursorKind as Kind
from clang.cindex import TypeKind

BINARY = {
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["*"],
    "&": ["|"],
    "|": ["&"],
    "^": ["&"],
    "<<": [">>"],
    ">>": ["<<"],
    "&&": ["||"],
    "||": ["&&"],
    "+=": ["-="],
    "-=": ["+="],
    "*=": ["/="],
    "/=": ["*="],
    "|=": ["&="],
    "&=": ["|="],
    "<<=": [">>="],
    ">>=": ["<<="],
}
# Of a class's own operators those that its neighbours have as well; its "+" and "<<" seldom have another.
OVERLOADED = ["<", "<=", ">", ">=", "==", "!="]
UNARY = {"!": "", "~": "", "-": "", "++": "--", "--": "++"}
SWAPPED_CALLS = {"min": "max", "max": "min"}

COMMENT = re.compile(rb"//[^\n]*|/\*.*?\*/", re.DOTALL)
INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlLzZ]*)")
REAL = re.compile(r"([0-9']*\.?[0-9']*(?:[eE][+-]?[0-9]+)?)([fFlL]?)")
FUNCTIONS = (
    Kind.FUNCTION_DECL,
    Kind.CXX_METHOD,
    Kind.FUNCTION_TEMPLATE,
    Kind.CONVERSION_FUNCTION,
    Kind.CONSTRUCTOR,
    Kind.DESTRUCTOR,
)
# A body without braces is a statement too: which parts of these can be one.
BODIES = {
    Kind.COMPOUND_STMT: slice(0, None),
    Kind.IF_STMT: slice(1, None),
    Kind.DO_STMT: slice(0, 1),
    Kind.WHILE_STMT: slice(-1, None),
    Kind.FOR_STMT: slice(-1, None),
    Kind.CXX_FOR_RANGE_STMT: slice(-1, None),
    Kind.CASE_STMT: slice(-1, None),
    Kind.DEFAULT_STMT: slice(-1, None),
}
COMPARISONS = ("<", "<=", ">", ">=", "==", "!=")


def span(cursor):
    return cursor.extent.start.offset, cursor.extent.end.offset


class Changes:
    """Collects the changes of one file as (begin, end, replacement), in bytes of its text."""

    def __init__(self, text):
        self.text = text
        self.found = set()

    def of(self, unit, name):
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == name:
                self.visit(cursor, None)
        return sorted(self.found)

    def add(self, begin, end, replacement):
        self.found.add((begin, end, replacement))

    def words(self, begin, end):
        return self.text[begin:end].decode()

    def visit(self, cursor, returned):
        """`returned`: the type that the function around returns, None where there is none to name."""
        kind = cursor.kind
        if kind == Kind.STATIC_ASSERT:
            return
        if kind in FUNCTIONS:
            returned = cursor.result_type
        elif kind == Kind.LAMBDA_EXPR:
            returned = None
        self.change(cursor, returned)
        for child in cursor.get_children():
            self.visit(child, returned)

    def change(self, cursor, returned):
        kind = cursor.kind
        if kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR):
            self.change_binary(list(cursor.get_children()), BINARY)
        elif kind == Kind.CALL_EXPR:
            self.change_call(cursor)
        elif kind == Kind.UNARY_OPERATOR:
            self.change_unary(cursor)
        elif kind == Kind.INTEGER_LITERAL:
            self.change_number(cursor, INTEGER, self.next_integer)
        elif kind == Kind.FLOATING_LITERAL:
            self.change_number(cursor, REAL, self.next_real)
        elif kind == Kind.CXX_BOOL_LITERAL_EXPR:
            begin, end = span(cursor)
            other = {"true": "false", "false": "true"}.get(self.words(begin, end))
            if other:
                self.add(begin, end, other)
        elif kind in (Kind.BREAK_STMT, Kind.CONTINUE_STMT):
            self.drop(cursor, ("break", "continue"))
        elif kind == Kind.RETURN_STMT:
            self.change_return(cursor, returned)
        if kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR):
            self.negate_condition(cursor)
        if kind in BODIES:
            for child in list(cursor.get_children())[BODIES[kind]]:
                self.drop_statement(child)

    def change_binary(self, operands, table):
        at, operator = self.between(operands)
        for other in table.get(operator, ()):
            self.add(at, at + len(operator), other)

    def between(self, operands):
        """The operator between two operands, and where it stands."""
        if len(operands) != 2:
            return 0, ""
        begin, end = span(operands[0])[1], span(operands[1])[0]
        words = COMMENT.sub(lambda match: b" " * len(match.group()), self.text[begin:end]).decode()
        return begin + len(words) - len(words.lstrip()), words.strip()

    def has_own_negation(self, expression):
        """Whether a change of its operator alone negates it."""
        if expression.kind == Kind.UNARY_OPERATOR:
            return self.words(*span(expression)).startswith("!")
        parts = expression.get_arguments() if expression.kind == Kind.CALL_EXPR else expression.get_children()
        return self.between(list(parts))[1] in COMPARISONS

    def change_call(self, cursor):
        operator = cursor.spelling.removeprefix("operator")
        arguments = list(cursor.get_arguments())
        if operator in OVERLOADED:
            self.change_binary(arguments, {operator: BINARY[operator]})
        elif operator in SWAPPED_CALLS:
            begin, end = span(cursor)
            match = re.match(rf"(?:std::)?(?:ranges::)?({operator})\b", self.words(begin, end))
            if match:
                self.add(begin + match.start(1), begin + match.end(1), SWAPPED_CALLS[operator])

    def change_unary(self, cursor):
        begin, end = span(cursor)
        (operand,) = list(cursor.get_children()) or (None,)
        if operand is None:
            return
        at, behind = span(operand)
        before = self.words(begin, at).strip()
        if before in UNARY:
            self.add(begin, begin + len(before), UNARY[before])
        after = self.words(behind, end).strip()
        if after in ("++", "--"):
            self.add(end - 2, end, UNARY[after])

    def change_number(self, cursor, form, neighbours):
        begin, end = span(cursor)
        match = form.fullmatch(self.words(begin, end))
        if match and match.group(1):
            for other in neighbours(match.group(1).replace("'", "")):
                self.add(begin, end, other + match.group(2))

    @staticmethod
    def next_integer(digits):
        value = int(digits, 16 if digits[:2] in ("0x", "0X") else 8 if digits[0] == "0" else 10)
        return [str(value + 1), str(value - 1) if value else "-1"]

    @staticmethod
    def next_real(digits):
        return [repr(float(digits) + 1), repr(float(digits) - 1)]

    def drop(self, cursor, words):
        begin, end = span(cursor)
        if self.words(begin, end) in words:
            self.add(begin, end, "")

    def drop_statement(self, cursor):
        """Leaves the semicolon of a statement that is an expression, and so of a call or a throw."""
        begin, end = span(cursor)
        is_assertion = self.text[begin:end].startswith(b"assert(")
        if cursor.kind.is_expression() and not is_assertion and re.match(rb"\s*;", self.text[end:]) and begin < end:
            self.add(begin, end, "")

    def change_return(self, cursor, returned):
        begin, end = span(cursor)
        if not self.words(begin, end).startswith("return"):
            return
        value = self.words(begin + len("return"), end).strip()
        if not value:
            self.add(begin, end, "")
        elif returned is None or value in ("true", "false", "0", "{}", "nullptr", '""', "*this"):
            return
        elif returned.get_canonical().kind == TypeKind.BOOL:
            if not self.has_own_negation(next(cursor.get_children())):
                self.add(begin, end, f"return !({value})")
        elif returned.get_canonical().kind not in (TypeKind.LVALUEREFERENCE, TypeKind.VOID):
            self.add(begin, end, "return {}")

    def negate_condition(self, cursor):
        """Of the statement's parts the first expression, unless it declares something."""
        children = list(cursor.get_children())
        condition = next((child for child in children[:2] if child.kind.is_expression()), None)
        if condition is None or children[0].kind == Kind.VAR_DECL or self.has_own_negation(condition):
            return
        begin, end = span(condition)
        text = self.words(begin, end)
        is_whole = cursor.kind == Kind.CONDITIONAL_OPERATOR or self.text[end : end + 1] == b")"
        if is_whole and text not in ("true", "false"):
            self.add(begin, end, f"!({text})")


def changes_of(path, options):
    """Every change of the file at `path` as (begin, end, replacement). `options`: the compiler's."""
    with open(path, "rb") as file:
        text = file.read()
    unit = cindex.Index.create().parse(path, ["-x", "c++", *options])
    errors = [str(found) for found in unit.diagnostics if found.severity >= cindex.Diagnostic.Error]
    if errors:
        raise ValueError(f"{path} cannot be parsed: {errors[0]}")
    return Changes(text).of(unit, path)
