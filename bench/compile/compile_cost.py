#!/usr/bin/env python3
"""What records cost to compile: generates records of ten members and compiles them as users would.

usage: compile_cost.py RESULTS.json [RECORDS]    (default 180)

  one user     a file that includes every public header of the message and the record rooms, defines one record,
               writes and reads it
  a record     what each further record adds: modules of 20 records, header and tables, against as many empty modules
  also used    the same when each record is also made, encoded and decoded once in its module; shown only, most of
               that is the record's own constructors

Times are CPU time of the compiler (CXX, default g++) at -O2, the least of three runs.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
INCLUDES = ROOT / "core" / "src"
COMPILER = os.environ.get("CXX", "g++")
PER_MODULE = 20
RUNS = 3

# Type, name and row of each member; every third record has a list of records in place of the second nested one.
MEMBERS = [
    ("int", "count", "member<&{0}::count>(1259)"),
    ("std::string", "name", "member<&{0}::name>(1026)"),
    ("HBX::HBXOptionalProperty<int>", "limit", "member<&{0}::limit>(1067)"),
    ("HBX::HBXOptionalProperty<std::string>", "description", "member<&{0}::description>(1496)"),
    ("std::vector<std::string>", "values", "list<&{0}::values>(1281, 1018)"),
    ("std::int64_t", "size", "member<&{0}::size>(3056)"),
    ("bool", "disabled", "optional<&{0}::disabled>(1705)"),
    ("std::string", "domain", "optional<&{0}::domain>(1374)"),
    ("{1}Item", "status", "member<&{0}::status>(1192)"),
]
NESTED = ("{1}Item", "other", "member<&{0}::other>(1421)")
LIST = ("std::vector<{1}Item>", "items", "list<&{0}::items>(3172, 3173)")

RECORD = """struct {name} {{
{members}
    static const HBX::HBXRecordTable table;
    using Reader = HBX::HBXTableReader<{name}>;
    using Writer = HBX::HBXTableWriter<{name}>;
}};
"""
TABLE = """constexpr HBX::HBXRow k{name}Rows[] = {{
{rows}
}};
constinit const HBX::HBXRecordTable {name}::table = HBX::recordTable<{name}>("{name}", 408, {type}, k{name}Rows);
"""
ITEM = [("int", "state", "member<&{0}::state>(1421)"), ("std::string", "id", "member<&{0}::id>(1010)")]
USE = """int use{0}(std::string& bytes) {{
    {0} record;
    return HBX::encodeRecord(record, bytes) + HBX::decodeRecord(bytes, record);
}}
"""


def record(name, module, members):
    lines = "".join(f"    {kind.format(name, module)} {member}{{}};\n" for kind, member, _ in members)
    return RECORD.format(name=name, members=lines)


def table(name, module, members, number):
    rows = ",\n".join("    HBX::" + row.format(name, module) for _, _, row in members)
    return TABLE.format(name=name, rows=rows, type=6000 + number)


def write_module(folder, number, count, used):
    """Module.h and Module.cpp with `count` records."""
    module = f"Module{number}"
    records = [(f"{module}Item", ITEM)] if count else []
    for i in range(count):
        records.append((f"{module}Record{i}", MEMBERS + [LIST if i % 3 == 0 else NESTED]))
    header = "#pragma once\n#include <cstdint>\n#include <string>\n#include <vector>\n"
    header += "#include <HBXMessage/HBXRecord.h>\n"
    header += "".join(record(name, module, members) for name, members in records)
    source = f'#include "{module}.h"\n#include <HBXMessage/HBXRecordTable.h>\n#include <HBXMessage/HBXEncoding.h>\n'
    source += "".join(table(name, module, members, i) for i, (name, members) in enumerate(records))
    if used:
        source += "".join(USE.format(name) for name, _ in records[1:])
    (folder / f"{module}.h").write_text(header)
    (folder / f"{module}.cpp").write_text(source)
    return folder / f"{module}.cpp"


def write_user(folder):
    """One file over all public headers, with one record."""
    headers = sorted(
        header.relative_to(INCLUDES)
        for room in ("HBXMessage", "HBXFunctionalityCore")
        for header in (INCLUDES / room).rglob("*.h")
        if "internal" not in header.parts
    )
    members = MEMBERS + [LIST]
    source = "".join(f"#include <{header}>\n" for header in headers)
    source += record("UserItem", "User", ITEM) + record("User", "User", members)
    source += table("UserItem", "User", ITEM, 0) + table("User", "User", members, 1) + USE.format("User")
    (folder / "User.cpp").write_text(source)
    return folder / "User.cpp"


def compile_seconds(sources):
    """CPU seconds for compiling the files one by one, the least of all runs."""
    best = None
    for _ in range(RUNS):
        before = os.times()
        for source in sources:
            command = [COMPILER, "-std=c++20", "-O2", "-fPIC", f"-I{INCLUDES}", "-c", str(source), "-o", os.devnull]
            subprocess.run(command, check=True)
        after = os.times()
        spent = after.children_user + after.children_system - before.children_user - before.children_system
        best = spent if best is None else min(best, spent)
    return best


def result(name, seconds):
    return {"run_name": name, "run_type": "iteration", "cpu_time": seconds, "time_unit": "s"}


def main(target, count):
    modules = -(-count // PER_MODULE)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        results = [result("user", compile_seconds([write_user(folder)]))]
        base = compile_seconds([write_module(folder, i, 0, False) for i in range(modules)])
        for what, used in (("record", False), ("record_used", True)):
            sources = []
            for i in range(modules):
                here = min(PER_MODULE, count - i * PER_MODULE)
                sources.append(write_module(folder, i, here, used))
            results.append(result(what, (compile_seconds(sources) - base) / count))
    pathlib.Path(target).write_text(json.dumps({"benchmarks": results}), encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 180)
