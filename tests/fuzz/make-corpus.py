#!/usr/bin/env python3
"""Writes the fuzzer's seed corpus: model files that load and broken ones.

    tests/fuzz/make-corpus.py BRENNVIK_REFERENCEAPP OUTPUT_DIR

Names say what to expect: good-* load, broken-* are refused, mutated-* (cut
short or with a byte changed) may go either way. The good files come from the reference application (the sample model and
generated ones, saved with --save-model) and from hand-written models that use
every field; the broken ones are those cut short, with bytes changed, and one
of each kind of mistake the loader names. Deterministic: the same application
gives the same files.
"""
import json
import os
import random
import subprocess
import sys
import tempfile

HEAD = '{"format": "brennvik-display-model", "version": 1,\n'


def with_root(item):
    return HEAD + '"displayModel": {"root":\n' + item + '}}'


def with_members(members):
    return HEAD + '"displayModel": {"root": {"name": "r", "id": "r"},\n' + members + '}}'


def with_primitive(primitive):
    return HEAD + '"displayModel": {}, "editor": {"primitives": [\n' + primitive + ']}}'


def nested(levels):
    item = ''.join('{"name": "%d", "children": [\n' % i for i in range(levels))
    return with_root(item + '{"name": "leaf"}' + ']}' * levels)


FULL = {
    "format": "brennvik-display-model", "version": 1,
    "displayModel": {
        "root": {"name": "Job", "businessProperties": [["project", "Door inner panel"]], "children": [
            {"kind": "ShellItem", "id": "blank", "name": "Blank", "shellType": "Blank", "shellName": "DC04",
             "selected": True, "selectionAllowed": False, "selectable": False,
             "businessProperties": [["thickness", "1.20 mm"]]},
            {"kind": "GeometryModuleItem", "id": "mod", "name": "Part geometry", "geometryItems": ["face", "lbl"],
             "children": [{"name": "Geometry", "children": [
                 {"id": "face", "name": "Face 1", "displayProperties": [["color", "#c0c0c8"]]}]}]},
            {"kind": "LabelableItem", "id": "mp", "name": "MP 01", "label": "t = 1.18 mm",
             "labelsAllowed": False, "visible": False},
            {"name": "Steps", "children": [{"id": "s1", "name": "OP10"}, {"id": "s2", "name": "OP20"}]}]},
        "activeContext": {"kind": 6, "name": "Process"},
        "kind6Provider": {"steps": ["s1", None, "s2"]},
        "kind6Index": 2,
        "kind7Source": {"key": "OP10-PU"},
        "kind7Lookup": {"root": "mod", "keyProperty": "tool id"},
        "defaultEntryOwner": {"entry": "blank"}},
    "labelModel": {"root": {"kind": "LabelableItem", "id": "lbl", "name": "Plot label", "label": "Force"},
                   "activeContext": {"kind": 7}, "defaultEntryOwner": {"entry": None}},
    "editor": {"primitives": [{"name": "Pick point 1", "visible": False, "selected": True, "selectable": False,
                               "properties": [["snap", "node"], ["snap", "edge"]]}]},
}

GOOD = {
    "minimal": HEAD + '"displayModel": {}}',
    "root-only": with_root('{"name": "r"}'),
    "nulls": HEAD + '"displayModel": {"root": null, "activeContext": null, "kind6Provider": null, '
             '"kind7Source": null, "kind7Lookup": null, "defaultEntryOwner": null}, '
             '"labelModel": null, "editor": null}',
    "empty-editor": HEAD + '"displayModel": {}, "editor": {}}',
    "bom": '\ufeff' + HEAD + '"displayModel": {"root": {"name": "r"}}}',
    "unicode": with_root('{"name": "Stempel \u00fc\u00df \u2013 \U0001F527", "businessProperties": '
                         '[["Werkzeug", "\\u00e4\\n\\t\\"q\\""]]}'),
    "full": json.dumps(FULL, indent=1, sort_keys=False),
    "full-compact": json.dumps(FULL, separators=(',', ':')),
    "deep-100": nested(100),
    "kind6-context": with_members('"activeContext": {"kind": 6}, "kind6Provider": {"steps": ["r", null]}, '
                                  '"kind6Index": 1'),
    "kind7-context": with_members('"activeContext": {"kind": 7, "name": "Tool"}, "kind7Source": {"key": "r"}, '
                                  '"kind7Lookup": {"root": "r"}'),
    "forward-reference": with_root('{"kind": "GeometryModuleItem", "name": "m", "geometryItems": ["late"], '
                                   '"children": [{"name": "g", "children": [{"name": "x", "id": "late"}]}]}'),
    "whitespace": '\n\n  \t' + HEAD.replace(' ', '\t') + '"displayModel"  :  {  }  }  \n\n',
    "primitive-repeat": with_primitive('{"name": "p", "properties": [["a", "1"], ["a", "1"]]}'),
    # Qt's parser takes an unknown escape as the character itself and a lone
    # surrogate as it is; both load and must still save and load back.
    "lenient-escape": with_root('{"name": "\\x41"}'),
    "lone-surrogate": with_root('{"name": "\\ud800"}'),
    "max-int-kind": with_members('"activeContext": {"kind": -2147483648}'),
}

BROKEN = {
    "empty": "", "whitespace-only": "  \n\t\n", "not-json": "model", "bom-only": "\ufeff",
    "bad-literal": HEAD + '"displayModel": tru}',
    "missing-comma": HEAD + '"displayModel": {} "editor": null}',
    "missing-colon": HEAD + '"displayModel" {}}',
    "trailing-comma": HEAD + '"displayModel": {},}',
    "text-after": HEAD + '"displayModel": {}} x',
    "invalid-utf8": None,  # written as bytes below
    "json-too-deep": '[' * 1100 + ']' * 1100,
    "top-level-array": '[' + HEAD[1:] + '"displayModel": {}}]',
    "top-level-string": '"brennvik-display-model"',
    "duplicate-key": HEAD + '"displayModel": {}, "version": 1}',
    "duplicate-key-deep": with_root('{"name": "r", "children": [{"name": "a", "name": "b"}]}'),
    "missing-format": '{"version": 1, "displayModel": {}}',
    "wrong-format": '{"format": "other", "version": 1, "displayModel": {}}',
    "version-string": '{"format": "brennvik-display-model", "version": "1", "displayModel": {}}',
    "version-fraction": '{"format": "brennvik-display-model", "version": 1.5, "displayModel": {}}',
    "version-2": '{"format": "brennvik-display-model", "version": 2, "displayModel": {}}',
    "version-huge": '{"format": "brennvik-display-model", "version": 1e400, "displayModel": {}}',
    "unknown-top-field": HEAD + '"displayModel": {}, "extra": 0}',
    "missing-display-model": HEAD + '"editor": null}',
    "display-model-array": HEAD + '"displayModel": []}',
    "editor-number": HEAD + '"displayModel": {}, "editor": 5}',
    "root-array": with_root('[]'),
    "missing-name": with_root('{"visible": true}'),
    "name-number": with_root('{"name": 5}'),
    "visible-string": with_root('{"name": "r", "visible": "yes"}'),
    "selectable-null": with_root('{"name": "r", "selectable": null}'),
    "properties-object": with_root('{"name": "r", "businessProperties": {}}'),
    "property-single": with_root('{"name": "r", "displayProperties": [["color"]]}'),
    "property-triple": with_root('{"name": "r", "displayProperties": [["a", "b", "c"]]}'),
    "property-number": with_root('{"name": "r", "displayProperties": [["color", 3]]}'),
    "duplicate-property": with_root('{"name": "r", "businessProperties": [["a", "1"], ["a", "2"]]}'),
    "children-object": with_root('{"name": "r", "children": {}}'),
    "child-string": with_root('{"name": "r", "children": [{"name": "a"}, "b"]}'),
    "unknown-kind": with_root('{"kind": "Mesh", "name": "r"}'),
    "shell-no-type": with_root('{"kind": "ShellItem", "name": "s", "shellName": "Die"}'),
    "label-no-label": with_root('{"kind": "LabelableItem", "name": "p"}'),
    "field-of-other-kind": with_root('{"name": "r", "label": "x"}'),
    "duplicate-id": with_root('{"name": "r", "id": "a", "children": [\n  {"name": "c", "id": "a"}]}'),
    "empty-id": with_root('{"name": "r", "id": ""}'),
    "dangling-geometry": with_root('{"kind": "GeometryModuleItem", "name": "m", "geometryItems": ["x"]}'),
    "null-geometry": with_root('{"kind": "GeometryModuleItem", "name": "m", "geometryItems": [null]}'),
    "geometry-twice": with_root('{"kind": "GeometryModuleItem", "name": "m", "geometryItems": ["m", "m"], "id": "m"}'),
    "dangling-step": with_members('"kind6Provider": {"steps": [null, "q"]}'),
    "step-number": with_members('"kind6Provider": {"steps": [4]}'),
    "dangling-lookup": with_members('"kind7Lookup": {"root": "nowhere"}'),
    "dangling-entry": with_members('"defaultEntryOwner": {"entry": "x"}'),
    "label-tree-dangling": HEAD + '"displayModel": {}, "labelModel": {"defaultEntryOwner": {"entry": "r"}}}',
    "context-no-kind": with_members('"activeContext": {"name": "c"}'),
    "context-kind-range": with_members('"activeContext": {"kind": 3000000000}'),
    "negative-index": with_members('"kind6Index": -1'),
    "index-past-steps": with_members('"kind6Provider": {"steps": ["r"]}, "kind6Index": 1'),
    "source-no-key": with_members('"kind7Source": {}'),
    "lookup-no-root": with_members('"kind7Lookup": {"keyProperty": "tool id"}'),
    "unknown-model-field": with_members('"kind8": 1'),
    "primitives-number": HEAD + '"displayModel": {}, "editor": {"primitives": 1}}',
    "primitive-no-name": with_primitive('{"visible": false}'),
    "primitive-id": with_primitive('{"name": "p", "id": "x"}'),
    "name-too-long": with_root('{"name": "' + 'n' * 1025 + '"}'),
    "value-too-long": with_root('{"name": "r", "businessProperties": [["a", "' + 'v' * 65537 + '"]]}'),
    "items-too-deep": nested(256),
    "number-bad": with_members('"kind6Index": 01'),
    "unterminated-string": HEAD + '"displayModel": {"root": {"name": "Ro',
}


def cut_and_flip(name, text, out, rng):
    """Writes truncations and single-byte changes of text."""
    data = text.encode('utf-8')
    for i, cut in enumerate(sorted(rng.sample(range(1, len(data)), min(8, len(data) - 1)))):
        write(out, '%s-cut%d' % (name, i), data[:cut])
    for i in range(6):
        pos = rng.randrange(len(data))
        mutated = bytearray(data)
        mutated[pos] = rng.choice(b'{}[],:"\\0 \xff\x00tn1-')
        write(out, '%s-flip%d' % (name, i), bytes(mutated))


def write(out, name, data):
    if isinstance(data, str):
        data = data.encode('utf-8')
    with open(os.path.join(out, name + '.json'), 'wb') as f:
        f.write(data)


def main():
    app, out = sys.argv[1], sys.argv[2]
    os.makedirs(out, exist_ok=True)
    env = dict(os.environ, QT_QPA_PLATFORM='offscreen', QT_LOGGING_RULES='qt.qpa.*=false')
    with tempfile.TemporaryDirectory() as tmp:
        for name, extra in [('sample', []), ('generated-12', ['--generate', '12']),
                            ('generated-40', ['--generate', '40'])]:
            path = os.path.join(tmp, name + '.json')
            subprocess.run([app, *extra, '--save-model', path, '--screenshot', os.path.join(tmp, 'shot.png')],
                           env=env, check=True, stdout=subprocess.DEVNULL)
            with open(path, 'rb') as f:
                write(out, 'good-' + name, f.read())
    for name, text in GOOD.items():
        write(out, 'good-' + name, text)
    for name, text in BROKEN.items():
        if text is not None:
            write(out, 'broken-' + name, text)
    write(out, 'broken-invalid-utf8', (HEAD + '"displayModel": {"root": {"name": "\xff"}}}').encode('latin-1'))
    rng = random.Random(20261123)
    cut_and_flip('mutated-full', GOOD['full'], out, rng)
    cut_and_flip('mutated-forward', GOOD['forward-reference'], out, rng)
    with open(os.path.join(out, 'good-generated-12.json'), encoding='utf-8') as f:
        cut_and_flip('mutated-generated', f.read(), out, rng)


if __name__ == '__main__':
    main()
