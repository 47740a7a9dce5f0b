#!/usr/bin/env python3
"""ctypes_reader: reads the parameters of a file in Python, through the shared library.

Use: ctypes_reader.py LIBRARY FILE
SPDX-License-Identifier: MIT
"""
import ctypes as c
import os
import sys


#! [records]
class Node(c.Structure):
    pass


class Group(c.Structure):
    pass


class Param(c.Structure):
    pass


class Lexer(c.Structure):
    _fields_ = [
        ("slots", c.c_void_p * 8),  # all NULL: the defaults
        ("top", c.POINTER(Group)),
        ("valid", c.c_char),
        ("fd", c.c_void_p),
        ("fname", c.c_char_p),
        ("row", c.c_char_p),
        ("nrow", c.c_long),
    ]


Node._fields_ = [
    ("prev", c.POINTER(Node)),
    ("next", c.POINTER(Node)),
    ("group", c.POINTER(Group)),
    ("ref", c.POINTER(Node)),
    ("type", c.c_int),
]
Group._fields_ = [
    ("link", Node),
    ("row", c.c_long),
    ("cat", c.c_char_p),
    ("name", c.c_char_p),
    ("type", c.c_int),
    ("elem", Node),
]
Param._fields_ = [
    ("link", Node),
    ("row", c.c_long),
    ("key", c.c_char_p),
    ("val", c.c_char_p),
    ("eval", c.c_void_p),
    ("vval", c.c_void_p),
]
INSTANCE = 3  # cf_grpinst: a group as written in the file
#! [records]


#! [load]
def load(library):
    cf = c.CDLL(library)
    group, param, node = c.POINTER(Group), c.POINTER(Param), c.POINTER(Node)
    for name, result, *arguments in [
        ("cflex", c.c_int, c.POINTER(Lexer), c.c_void_p, c.c_char_p),
        ("cfdelgrp", None, group),
        ("cfiterator", node, group),
        ("cfend", c.c_int, node),
        ("cfgrp", group, node),
        ("cfpar", param, node),
        ("cfevalpar", c.c_int, param, c.c_void_p),
        ("cfbool", c.c_byte, param),
        ("cfintx", c.c_longlong, param),
        ("cfflt", c.c_double, param),
    ]:
        function = getattr(cf, name)
        function.restype, function.argtypes = result, arguments
    return cf
#! [load]


#! [walk]
def value(cf, par):
    """The value, of the first type that accepts its text: a number, a truth value, a text."""
    kinds = [
        (cf.cfevintx, cf.cfintx),
        (cf.cfevflt, cf.cfflt),
        (cf.cfevbool, lambda evaluated: bool(cf.cfbool(evaluated))),
    ]
    for evaluator, getter in kinds:
        if cf.cfevalpar(par, c.cast(evaluator, c.c_void_p)):
            return getter(par)
    return par.contents.val.decode(errors="replace")


def path(par):
    """Names of the groups around a parameter, outermost first, and its key."""
    words = [par.contents.key.decode()]
    group = par.contents.link.group
    while group:
        if group.contents.type == INSTANCE:
            head = group.contents.cat, group.contents.name
            words.insert(0, b" ".join(filter(None, head)).decode())
        group = group.contents.link.group
    return " / ".join(words)


def parameters(cf, top):
    """All parameters of a tree, in order. Lists end in anchors, so it takes no recursion."""
    it = cf.cfiterator(top)
    while True:
        if cf.cfend(it):
            group = it.contents.group
            if c.addressof(group.contents) == c.addressof(top.contents):
                return
            it = group.contents.link.next
        elif cf.cfgrp(it):
            it = cf.cfiterator(cf.cfgrp(it))
        else:
            if cf.cfpar(it):
                yield cf.cfpar(it)
            it = it.contents.next
#! [walk]


def main(library, fname):
    cf, libc = load(library), c.CDLL(None, use_errno=True)
    libc.fopen.restype, libc.fopen.argtypes = c.c_void_p, [c.c_char_p, c.c_char_p]
    libc.fclose.argtypes = [c.c_void_p]
    file = libc.fopen(os.fsencode(fname), b"r")
    if not file:
        return f"{fname}: {os.strerror(c.get_errno())}"
    lexer = Lexer()
    clean = cf.cflex(lexer, file, os.fsencode(fname))
    libc.fclose(file)
    if clean:
        for par in parameters(cf, lexer.top):
            print(f"{path(par)}: {value(cf, par)!r} (line {par.contents.row})")
    cf.cfdelgrp(lexer.top)
    return 0 if clean else 1


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
