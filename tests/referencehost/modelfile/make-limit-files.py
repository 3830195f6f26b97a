#!/usr/bin/env python3
"""Writes model files at the loader's default limits, for measuring its worst
cases with tests/referencehost/modelfile/modelfile_load under /usr/bin/time -v.

usage: make-limit-files.py DIRECTORY
"""
import json
import os
import sys

HEAD = '{"format": "brennvik-display-model", "version": 1, "displayModel": {"root": '


def write(directory, name, text):
    with open(os.path.join(directory, name), "w", encoding="utf-8") as out:
        out.write(text)


def properties(count, name_length, value_length):
    return ", ".join('["%s", "%s"]' % (str(i).rjust(name_length, "n"), "v" * value_length) for i in range(count))


def main(directory):
    os.makedirs(directory, exist_ok=True)
    # 1,000,000 items: a root and its children.
    children = ", ".join('{"name": "c%d"}' % i for i in range(999999))
    write(directory, "items.json", HEAD + '{"name": "r", "children": [' + children + "]}}}")
    # 256 levels of items.
    write(directory, "levels.json", HEAD + '{"name": "n", "children": [' * 255 + '{"name": "leaf"}' + "]}" * 255 + "}}")
    # 100,000 properties in one list, names of 1,024 characters.
    write(directory, "properties.json",
          HEAD + '{"name": "r", "businessProperties": [' + properties(100000, 1024, 1) + "]}}}")
    # The same with short names, and five such items under one root.
    short = properties(100000, 8, 1)
    write(directory, "properties-short.json", HEAD + '{"name": "r", "businessProperties": [' + short + "]}}}")
    five = ", ".join('{"name": "c%d", "businessProperties": [%s]}' % (i, short) for i in range(5))
    write(directory, "properties-five.json", HEAD + '{"name": "r", "children": [' + five + "]}}}")
    # A geometry module listing 100,000 items, its group's children.
    faces = ", ".join('{"id": "f%d", "name": "f%d"}' % (i, i) for i in range(100000))
    listed = ", ".join('"f%d"' % i for i in range(100000))
    write(directory, "geometry.json",
          HEAD + '{"kind": "GeometryModuleItem", "name": "m", "geometryItems": [' + listed
          + '], "children": [{"name": "Geometry", "children": [' + faces + "]}]}}}")
    # Property values of 65,536 characters up to the file size limit (512 MiB).
    write(directory, "texts.json", HEAD + '{"name": "r", "businessProperties": [' + properties(8000, 8, 65536) + "]}}}")
    # 100 MB of nested objects, refused for their nesting.
    write(directory, "nested.json", '{"a":' * (100 * 1000 * 1000 // 5))


if __name__ == "__main__":
    main(sys.argv[1])
