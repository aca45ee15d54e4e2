#!/usr/bin/env python3
"""The ABI of a shared library: what applications that were built with it rely on.

abi.py write LIBRARY FOLDER     describes the library in FOLDER
abi.py compare LIBRARY FOLDER   prints what is incompatible with that description; exit code 1 if
                                anything is

NAME.symbols lists the exported symbols, which all architectures share, with the version that first
had them, as dpkg's symbols files do. NAME-ARCHITECTURE.types lists the classes that the symbols
belong to and those that they are made of: size, bases, fields, virtual functions, enumerators,
constants, and what functions return. It is read from debug information. Types of other libraries
are named but not looked into. What was added breaks no application, unless it moves something else:
new symbols, functions, types and enumerators are no difference.
"""

import re
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

ARCHITECTURES = {"Advanced Micro Devices X86-64": "amd64", "AArch64": "arm64", "ARM": "armhf"}
FOREIGN = re.compile(r"Q[A-Z]|Qt(::|$)|std(::|$)|_|el(::|$)")
SCOPES = {"class_type", "structure_type", "union_type", "enumeration_type", "namespace"}
CLASSES = {"class_type", "structure_type", "union_type"}
KEPT = SCOPES | {
    "enumerator", "member", "inheritance", "subprogram", "variable", "formal_parameter", "typedef",
    "pointer_type", "reference_type", "rvalue_reference_type", "const_type", "volatile_type",
    "base_type", "array_type", "subrange_type", "subroutine_type", "ptr_to_member_type",
    "template_type_param", "unspecified_type",
}
MEMBERS = {"subprogram", "variable", "member", "inheritance"}
# Lines of a type of which a newer library may have more.
OPEN_KINDS = ("function", "virtual", "static", "constant", "enumerator")

Symbol = namedtuple("Symbol", "name size is_object")


def run(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def elf_header(library, field):
    return re.search(rf"^ *{field}: *(.*)$", run("readelf", "-h", library), re.MULTILINE)[1]


def exported_symbols(library):
    symbols = {}
    for line in run("readelf", "--dyn-syms", "--wide", library).splitlines():
        columns = line.split()
        if len(columns) == 8 and columns[4] in ("GLOBAL", "WEAK") and columns[6] != "UND":
            size, kind, name = int(columns[2], 0), columns[3], columns[7].split("@")[0]
            symbols[name] = Symbol(name, size, kind == "OBJECT")
    return symbols


def demangled(names):
    names = list(names)
    return dict(zip(names, run("c++filt", input="\n".join(names)).splitlines()))


class Entry:
    """One entry of the debug information, with those below it."""

    __slots__ = ("tag", "parent", "attributes", "children")

    def __init__(self, tag, parent):
        self.tag = tag
        self.parent = parent
        self.attributes = {}
        self.children = []

    def get(self, attribute):
        return self.attributes.get(attribute)

    def number(self, attribute):
        value = self.get(attribute)
        return None if value is None else int(re.search(r"-?(0x[0-9a-f]+|\d+)", value)[0], 0)

    def below(self, *tags):
        return [child for child in self.children if child.tag in tags]


class DebugInformation:
    def __init__(self, library):
        self.entries = {}
        self._read(library)

    def _read(self, library):
        head = re.compile(r" <([0-9a-f]+)><([0-9a-f]+)>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)")
        text = re.compile(r"\((?:alt )?indirect [^)]*\): ")
        path, entry = {}, None
        command = ["readelf", "--debug-dump=info", library]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              text=True, errors="replace") as dump:
            for line in dump.stdout:
                if line.startswith("    <"):
                    if entry is not None:
                        attribute, value = line[line.index("DW_AT_") + 6:].split(":", 1)
                        entry.attributes[attribute.rstrip()] = text.sub("", value.strip(), count=1)
                elif found := head.match(line):
                    depth, offset, tag = int(found[1], 16), int(found[2], 16), found[3]
                    parent = path.get(depth - 1)
                    entry = Entry(tag, parent) if self._is_of_use(tag, parent) else None
                    path[depth] = entry
                    if entry is not None:
                        self.entries[offset] = entry
                        if parent is not None:
                            parent.children.append(entry)

    @staticmethod
    def _is_of_use(tag, parent):
        """Not what is local to a function, and of a foreign class its name alone."""
        if tag not in KEPT or parent is None:
            return tag in KEPT
        if parent.tag == "subprogram":
            return tag == "formal_parameter"
        is_foreign = parent.tag in CLASSES and FOREIGN.match(parent.get("name") or "_")
        return not (is_foreign and tag in MEMBERS)

    def type_of(self, entry):
        reference = entry.get("type")
        return None if reference is None else self.entries.get(int(reference.strip("<>"), 16))

    def plain(self, entry):
        """The type that a typedef stands for."""
        while entry is not None and entry.tag == "typedef":
            entry = self.type_of(entry)
        return entry

    def name(self, entry):
        """The name of a type as it is written, typedefs resolved."""
        entry = self.plain(entry)
        if entry is None:
            return "void"
        inner = self.type_of(entry)
        if entry.tag == "const_type":
            return self.name(inner) + " const"
        if entry.tag == "volatile_type":
            return self.name(inner) + " volatile"
        if entry.tag in ("pointer_type", "reference_type", "rvalue_reference_type"):
            mark = {"p": "*", "r": "&"}[entry.tag[0]] if entry.tag[1] != "v" else "&&"
            if self.plain(inner) is not None and self.plain(inner).tag == "subroutine_type":
                return self.name(inner).replace(" (", f" ({mark})(", 1)
            return self.name(inner) + mark
        if entry.tag == "subroutine_type":
            arguments = [self.name(self.type_of(each)) for each in entry.below("formal_parameter")]
            return f"{self.name(inner)} ({', '.join(arguments)})"
        if entry.tag == "array_type":
            bounds = [each.number("upper_bound") for each in entry.below("subrange_type")]
            return self.name(inner) + "".join(f"[{'' if b is None else b + 1}]" for b in bounds)
        return self.scope(entry) + (entry.get("name") or "(unnamed)")

    def scope(self, entry):
        parent = entry.parent
        if parent is None or parent.tag not in SCOPES:
            return ""
        return self.scope(parent) + (parent.get("name") or "(anonymous)") + "::"


class Description:
    """The exported symbols and the types of a library."""

    def __init__(self, library):
        machine = elf_header(library, "Machine")
        if machine not in ARCHITECTURES:
            sys.exit(f"{library} is for a machine without a description: {machine}")
        self.name = Path(library).name.split(".")[0]
        self.architecture = ARCHITECTURES[machine]
        self.version = Path(library).resolve().name.partition(".so.")[2]
        self.soname = re.search(r"\(SONAME\).*\[(.*)\]", run("readelf", "-d", library))[1]
        self.symbols = exported_symbols(library)
        self._address = 8 if elf_header(library, "Class") == "ELF64" else 4
        self._debug = DebugInformation(library)
        if not self._debug.entries:
            sys.exit(f"{library} has no debug information to describe its ABI from")
        self._names = demangled(self.symbols)
        self.types = {}
        for entry in list(self._debug.entries.values()):
            if entry.tag in CLASSES and self._has_exports(entry):
                self._add(entry)

    def _has_exports(self, entry):
        return any(child.get("linkage_name") in self.symbols for child in entry.children)

    def _add(self, entry):
        """Adds a type, and those that it is made of."""
        entry = self._debug.plain(entry)
        if entry is None:
            return
        name = self._debug.name(entry)
        if entry.tag in CLASSES and not FOREIGN.match(name):
            self._add_class(name, entry)
        elif entry.tag == "enumeration_type" and not FOREIGN.match(name):
            self._add_enumeration(name, entry)
        elif entry.tag == "base_type":
            pass
        elif entry.tag in CLASSES:
            for parameter in entry.below("template_type_param"):
                self._add(self._debug.type_of(parameter))
        else:
            self._add(self._debug.type_of(entry))

    def _add_enumeration(self, name, entry):
        underlying = self._debug.name(self._debug.type_of(entry))
        lines = [f"enumerator {each.get('name')} = {each.number('const_value')}"
                 for each in entry.below("enumerator")]
        self.types[name] = [f"enum {name}: {underlying}"] + lines

    def _add_class(self, name, entry):
        # Debug information has a nested type only where it is used.
        for nested in entry.below("enumeration_type", *CLASSES):
            self._add(nested)
        if name in self.types or entry.get("declaration") is not None:
            return
        self.types[name] = lines = [f"class {name}: {entry.number('byte_size')} bytes"]
        used = [self._debug.type_of(each) for each in entry.below("template_type_param")]
        functions = []
        for child in entry.children:
            kind = self._debug.type_of(child)
            if child.tag == "inheritance":
                virtual = "virtual " if child.get("virtuality") else ""
                place = "" if virtual else f" at {child.number('data_member_location')}"
                lines.append(f"base {virtual}{self._debug.name(kind)}{place}")
            elif child.tag == "subprogram":
                functions += self._function(name, child)
                used += [self._debug.type_of(each) for each in child.below("formal_parameter")]
            elif child.tag in ("member", "variable"):
                lines.append(self._field(child, self._debug.name(kind)))
            else:
                continue
            used.append(kind)
        table = self._table_size(name)
        if table is not None:
            lines.append(f"table of {table} entries")
        lines += sorted(functions)
        for each in used:
            self._add(each)

    def _field(self, member, kind):
        name = member.get("name") or "(unnamed)"
        if member.number("const_value") is not None:
            return f"constant {kind} {name} = {member.number('const_value')}"
        if member.get("declaration") is not None or member.tag == "variable":
            return f"static {kind} {name}"
        place = member.number("data_member_location")
        if member.get("bit_size") is not None:
            place = f"bit {member.number('data_bit_offset')}, {member.number('bit_size')} bits"
        return f"field {kind} {name} at {place}"

    def _function(self, class_name, function):
        """A function that is exported or pure virtual; what constructors return is not stated."""
        symbol = function.get("linkage_name")
        slot = function.get("vtable_elem_location")
        if symbol is None or (symbol not in self._names and slot is None):
            return []
        if symbol not in self._names:
            self._names.update(demangled([symbol]))
        signature = self._names[symbol].replace(class_name + "::", "", 1)
        lines = []
        if slot is not None:
            number = int(re.search(r"DW_OP_constu: (\d+)", slot)[1])
            lines.append(f"virtual {number:02} {signature}")
        if function.get("name").strip("~") != class_name.split("::")[-1]:
            static = "" if function.get("object_pointer") else "static "
            lines.append(f"function {static}{self._debug.name(self._debug.type_of(function))} {signature}")
        return lines

    def _table_size(self, name):
        wanted = "vtable for " + name
        for symbol, text in self._names.items():
            if text == wanted:
                return self.symbols[symbol].size // self._address
        return None


def read_symbols(file):
    """Symbol to the version that first had it."""
    if not file.exists():
        return {}
    return dict(re.findall(r"^ (\S+)@Base (\S+)$", file.read_text(), re.MULTILINE))


def read_types(file):
    types = {}
    for line in file.read_text().splitlines():
        if line.startswith("    "):
            lines.append(line.strip())
        else:
            lines = types[re.match(r"\w+ (.*): ", line)[1]] = [line]
    return types


def files_of(description, folder):
    name = description.name
    return folder / f"{name}.symbols", folder / f"{name}-{description.architecture}.types"


def write(description, folder):
    symbols_file, types_file = files_of(description, folder)
    known = read_symbols(symbols_file)
    with symbols_file.open("w") as file:
        package = description.soname.replace(".so.", "").lower()
        print(f"{description.soname} {package} #MINVER#", file=file)
        for name in sorted(description.symbols):
            print(f" {name}@Base {known.get(name, description.version)}", file=file)
    with types_file.open("w") as file:
        for name in sorted(description.types):
            head, *lines = description.types[name]
            print(head, *("    " + line for line in lines), sep="\n", file=file)
    print(symbols_file, types_file, sep="\n")


def differences(stored, present):
    """What an application that was built with the stored type misses in the present one."""
    for line in stored:
        if line not in present:
            yield f"was     {line}"
    for line in present:
        if line not in stored and not line.startswith(OPEN_KINDS):
            yield f"became  {line}"


def compare(description, folder):
    symbols_file, types_file = files_of(description, folder)
    for file in (symbols_file, types_file):
        if not file.exists():
            sys.exit(f"There is no {file}: packaging/accept-abi.sh makes it")
    gone = sorted(set(read_symbols(symbols_file)) - set(description.symbols))
    found = [f"no symbol {name}  {text}" for name, text in demangled(gone).items()] if gone else []
    for name, stored in read_types(types_file).items():
        changes = list(differences(stored, description.types.get(name, [])))
        if changes:
            found += [name] + ["    " + change for change in changes]
    print(*found, sep="\n", end="\n" if found else "")
    return not found


def main(arguments):
    if len(arguments) != 3 or arguments[0] not in ("write", "compare"):
        sys.exit(__doc__)
    description = Description(arguments[1])
    folder = Path(arguments[2])
    if arguments[0] == "write":
        write(description, folder)
        return 0
    return 0 if compare(description, folder) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
