#!/usr/bin/env python3
"""Fails when a source file includes a header of a folder its library does not build on.

usage: includes_follow_module_order.py SRC_DIR MODULE_ORDER_FILE

MODULE_ORDER_FILE has one line per folder, "folder: the folders it links, directly or not", as
the build writes it. A folder may include its own headers and those of the folders it links;
anything else would compile today (every folder shares one include root) and break the day the
header gains a source file, or quietly turn the module order upside down.
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([a-z_]+)/')


def read_order(path):
    order = {}
    for line in pathlib.Path(path).read_text().splitlines():
        folder, _, builds_on = line.partition(":")
        if folder.strip():
            order[folder.strip()] = set(builds_on.split())
    return order


def violations(src, order):
    for folder, builds_on in sorted(order.items()):
        allowed = builds_on | {folder}
        for file in sorted((src / folder).rglob("*")):
            if file.suffix not in (".h", ".cpp"):
                continue
            for number, line in enumerate(file.read_text(errors="replace").splitlines(), 1):
                match = INCLUDE.match(line)
                if match and match.group(1) not in allowed:
                    yield (f"{file.relative_to(src)}:{number}: includes {match.group(1)}/, "
                           f"which {folder}/ does not build on")


def main():
    src, order_file = pathlib.Path(sys.argv[1]), sys.argv[2]
    order = read_order(order_file)
    missing = [folder.name for folder in src.iterdir()
               if folder.is_dir() and folder.name not in order]
    problems = list(violations(src, order))
    problems += [f"{name}/ is not in the module order" for name in sorted(missing)]
    for problem in problems:
        print(problem)
    print(f"{len(order)} folders checked, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
