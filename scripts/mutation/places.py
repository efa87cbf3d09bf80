"""Finds where a source could be wrong by one small fault, and how each fault is written.

A fault stands beside the right text and is chosen when the program runs:
`(velmoraMutant(17) ? ((a) <= (b)) : (a < b))`. Places are looked for inside function bodies only,
and not where a constant is demanded or a text is a macro's own.
"""

import hashlib
import itertools
import re
import typing

from clang.cindex import CursorKind, Index, TranslationUnit, TypeKind

COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*"}
LOGIC = {"&&": "||", "||": "&&"}
# What changes only how much memory is asked for, and when.
WITHOUT_EFFECT = {"reserve", "shrink_to_fit"}

K = CursorKind
SCOPES = {K.NAMESPACE, K.CLASS_DECL, K.STRUCT_DECL, K.LINKAGE_SPEC, K.UNEXPOSED_DECL}
FUNCTIONS = {K.FUNCTION_DECL, K.CXX_METHOD, K.CONSTRUCTOR, K.DESTRUCTOR, K.CONVERSION_FUNCTION}
CONSTANT = {K.STATIC_ASSERT, K.CXX_UNARY_EXPR, K.TYPE_REF, K.TEMPLATE_REF, K.CXX_TYPEID_EXPR}
# Where a number may be any number.
OPERANDS = {K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR, K.CALL_EXPR, K.RETURN_STMT,
            K.UNARY_OPERATOR, K.CONDITIONAL_OPERATOR, K.PAREN_EXPR, K.CXX_STATIC_CAST_EXPR}
ASSIGNMENTS = {K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR}
FIXED = re.compile(r"(static|constexpr|thread_local)\b")
FLOATING = {TypeKind.FLOAT, TypeKind.DOUBLE}
WHOLE = {TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.SHORT,
         TypeKind.USHORT, TypeKind.UCHAR, TypeKind.SCHAR, TypeKind.CHAR_S}


class Fault(typing.NamedTuple):
    file: str
    start: int  # In bytes, as `end`.
    end: int
    line: int
    kind: str
    old: str
    new: str  # For people to read.
    code: str  # What stands in the source instead; "{n}" is the fault's number.


def flat(text):
    return re.sub(r"\s*\n\s*", " ", text)


class SourceReader:
    """Collects the faults that one source may have."""

    def __init__(self, name, path, text, arguments):
        self.name, self.path, self.text = name, path, text
        self.faults = {}
        self.unit = Index.create().parse(
            path, args=arguments, unsaved_files=[(path, text.decode())],
            options=TranslationUnit.PARSE_NONE)

    def read(self):
        self.scope(self.unit.cursor)
        return sorted(self.faults.values(), key=lambda fault: (fault.start, fault.kind, fault.new))

    # Extents

    def span(self, node):
        return node.extent.start.offset, node.extent.end.offset

    def slice(self, start, end):
        return self.text[start:end].decode()

    def text_of(self, node):
        return self.slice(*self.span(node))

    def is_here(self, node):
        start, end = node.extent.start, node.extent.end
        return start.file is not None and start.file.name == self.path and end.file is not None \
            and end.file.name == self.path and start.offset < end.offset

    def follows(self, end, sign):
        return self.text[end:end + 40].lstrip().startswith(sign)

    def add(self, start, end, kind, new, code):
        old = self.slice(start, end)
        if "\n" in old and "//" in old:
            return
        line = self.text.count(b"\n", 0, start) + 1
        fault = Fault(self.name, start, end, line, kind, flat(old), flat(new), code)
        self.faults.setdefault((start, end, kind), fault)

    def add_choice(self, node, kind, new):
        """An expression in two forms. The right one keeps its lines, the other one has none."""
        start, end = self.span(node)
        self.add(start, end, kind, new,
                 f"(velmoraMutant({{n}}) ? ({flat(new)}) : ({self.slice(start, end)}))")

    def add_turned(self, node, kind):
        start, end = self.span(node)
        old = self.slice(start, end)
        self.add(start, end, kind, f"!({old})",
                 f"(velmoraMutant({{n}}) != static_cast<bool>({old}))")

    # Declarations

    def scope(self, node):
        # Backwards, as thousands of declarations of other files stand before the source's own.
        for child in itertools.takewhile(self.is_here, reversed(list(node.get_children()))):
            if child.kind in SCOPES:
                self.scope(child)
            elif child.kind in FUNCTIONS and child.is_definition():
                self.function(child)

    def function(self, node):
        body = [child for child in node.get_children() if child.kind == K.COMPOUND_STMT]
        if not body:
            return
        head = self.slice(node.extent.start.offset, body[-1].extent.start.offset)
        if not re.search(r"\b(constexpr|consteval|noexcept\()", head):
            gives_bool = node.result_type.get_canonical().kind == TypeKind.BOOL
            self.walk(body[-1], None, gives_bool)

    # Statements

    def statement(self, node, gives_bool):
        if not self.is_here(node):
            return
        start, end = self.span(node)
        inner = self.bare(node)
        if self.follows(end, b";") and (inner.kind == K.CALL_EXPR or inner.kind in ASSIGNMENTS):
            is_assignment = inner.kind in ASSIGNMENTS or (
                inner.spelling.startswith("operator") and inner.spelling.endswith("="))
            end = self.text.index(b";", end) + 1
            if inner.spelling not in WITHOUT_EFFECT:
                kind = "assignment left out" if is_assignment else "call left out"
                self.add(start, end, kind, "",
                         f"{{ if (!velmoraMutant({{n}})) {self.slice(start, end)} }}")
        self.walk(node, None, gives_bool)

    def bare(self, node):
        """Without what the compiler wraps around it unseen."""
        while node.kind == K.UNEXPOSED_EXPR:
            children = list(node.get_children())
            if len(children) != 1 or self.span(children[0]) != self.span(node):
                break
            node = children[0]
        return node

    def condition(self, node, kind):
        start, end = self.span(node)
        before = self.text[:start].rstrip()
        if self.follows(end, b")") and before.endswith((b"(", b";")):
            self.add_turned(node, kind)

    def parts(self, node, gives_bool, children):
        """What has a head in parentheses and one statement or two behind it."""
        is_constant = re.match(r"if\s+constexpr", self.text_of(node))
        head_ends = False
        for child in children:
            if head_ends:
                self.statement(child, gives_bool)
                continue
            head_ends = child.kind.is_expression() and self.follows(self.span(child)[1], b")")
            if head_ends and is_constant:
                continue
            if head_ends and node.kind == K.IF_STMT:
                self.condition(child, "condition negated")
            self.walk(child, None, gives_bool)

    def walk(self, node, parent, gives_bool):
        kind = node.kind
        children = [child for child in node.get_children() if self.is_here(child)]
        if kind in CONSTANT or not children and kind not in (K.INTEGER_LITERAL, K.FLOATING_LITERAL):
            return
        if kind == K.DECL_STMT and FIXED.match(self.text_of(node)):
            return
        if kind == K.COMPOUND_STMT:
            for child in children:
                self.statement(child, gives_bool)
        elif kind in (K.IF_STMT, K.WHILE_STMT, K.SWITCH_STMT):
            self.parts(node, gives_bool, children)
        elif kind in (K.FOR_STMT, K.CXX_FOR_RANGE_STMT):
            for child in children[:-1] if kind == K.FOR_STMT else []:
                self.walk(child, None, gives_bool)
            self.statement(children[-1], gives_bool)
        elif kind in (K.CASE_STMT, K.DEFAULT_STMT):
            self.statement(children[-1], gives_bool)
        elif kind == K.LAMBDA_EXPR:
            for child in children:
                if child.kind == K.COMPOUND_STMT:
                    self.walk(child, None, False)
        else:
            self.expression(node, parent, gives_bool, children)

    # Expressions

    def expression(self, node, parent, gives_bool, children):
        kind = node.kind
        if kind == K.BINARY_OPERATOR and len(children) == 2:
            self.operator(node, *children)
        elif kind == K.CALL_EXPR and node.spelling in ("operator==", "operator!="):
            arguments = [each for each in node.get_arguments() if each is not None]
            if len(arguments) == 2:
                self.operator(node, *arguments)
        elif kind == K.RETURN_STMT and gives_bool and self.follows(self.span(children[0])[1], b";"):
            self.add_turned(children[0], "returned bool turned")
        elif kind == K.CONDITIONAL_OPERATOR and self.follows(self.span(children[0])[1], b"?"):
            self.add_turned(children[0], "condition negated")
        elif kind in (K.INTEGER_LITERAL, K.FLOATING_LITERAL) and parent in OPERANDS:
            text = self.text_of(node)
            if re.fullmatch(r"[0-9][0-9a-zA-Z.'+-]*", text):
                self.add_choice(node, "constant", f"{text} + 1")
        seen_as = parent if kind == K.UNEXPOSED_EXPR else kind
        for child in children:
            self.walk(child, seen_as, gives_bool)

    def operator(self, node, left, right):
        sign = self.slice(self.span(left)[1], self.span(right)[0]).strip()
        kinds = {side.type.get_canonical().kind for side in (left, right)}
        is_plain = kinds <= FLOATING | WHOLE
        if sign in COMPARISONS:
            kind, other = "comparison", COMPARISONS[sign]
        elif sign in LOGIC:
            kind, other = "logic", LOGIC[sign]
        elif sign in ARITHMETIC and is_plain and (sign in "+-" or kinds <= FLOATING):
            kind, other = "arithmetic", ARITHMETIC[sign]
        else:
            return
        self.add_choice(node, kind, f"({self.text_of(left)}) {other} ({self.text_of(right)})")


def faults_of(name, path, text, arguments):
    return SourceReader(name, path, text, arguments).read()


def digest(*parts):
    sum_of_parts = hashlib.sha256()
    for part in parts:
        sum_of_parts.update(part if isinstance(part, bytes) else str(part).encode())
        sum_of_parts.update(b"\0")
    return sum_of_parts.hexdigest()[:16]
