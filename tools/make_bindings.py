"""Writes out/bindings/: every export of the library for other languages, from out/reference.json.

Each language has a head in tools/bindings/, written by hand: how the library is found, and how texts go in and out.
Behind it stands one function an export, made here. docs/bindings.md tells what holds for all of them.
"""
import json
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[1]
HEADS = ROOT / "tools/bindings"
WIDTH = 118

TEXTS = ("Text", "OptText", "RawText")
RESERVED = {
    "cpp": {"template", "operator", "default", "class", "new", "delete", "register", "union", "export"},
    "python": {"from", "in", "is", "class", "def", "lambda", "not", "or", "and", "pass", "global", "import"},
    "csharp": {"string", "object", "params", "in", "out", "ref", "base", "event", "operator", "class", "new", "default", "lock", "is"},
    "javascript": {"in", "class", "new", "default", "function", "delete", "var", "with", "export", "import"},
    "autohotkey": {"class", "in", "is", "not", "and", "or", "global", "static", "local", "this", "super"},
}


def full_width_ranges():
    """First and last of each range of full-width characters, by the library's own table and its rules beside it."""
    source = (ROOT / "src/text/full_width_table.cpp").read_text(encoding="utf-8")
    wide = [range(0x3000, 0xA000), range(0xAC00, 0xD800), range(0xE000, 0xFB00), range(0xFF01, 0xFF61), range(0xFFE0, 0xFFE7)]
    characters = {character for each in wide for character in each}
    for first, words in re.findall(r"// U\+(\w+) to .*?\{\n(.*?)\};", source, re.S):
        for number, word in enumerate(re.findall(r"0x(\w+)", words)):
            characters |= {int(first, 16) + 32 * number + bit for bit in range(32) if int(word, 16) >> bit & 1}
    firsts = sorted(character for character in characters if character - 1 not in characters)
    lasts = sorted(character for character in characters if character + 1 not in characters)
    return zip(firsts, lasts)


def head_of(name):
    """A head with the ranges in their place, as many on a line as fit."""
    text = (HEADS / name).read_text(encoding="utf-8")
    ranges = ", ".join(f"0x{first:04X}, 0x{last:04X}" for first, last in full_width_ranges())
    before = re.search(r"^( *)(.*)@WIDE@", text, re.M)
    folded = textwrap.fill(before[2] + ranges, WIDTH, initial_indent=before[1], subsequent_indent=before[1] + "    ", break_long_words=False)
    return text.replace(before[0], folded)


def read_rows(path):
    return json.loads(path.read_text(encoding="utf-8"))


def named(row, language):
    """Parameters with names that the language takes."""
    for parameter in row["parameters"]:
        name = parameter["name"]
        yield parameter["type"], name + "_" if name in RESERVED[language] else name


def first_sentence(doc):
    return re.split(r"(?<=[.:;])\s", doc.strip(), maxsplit=1)[0].rstrip(":;").strip()


def comment(row, mark, indent=""):
    lines = textwrap.wrap(row["doc"].strip(), WIDTH - len(indent) - len(mark) - 1, break_long_words=False, break_on_hyphens=False)
    lines += [line for parameter in row["parameters"] if parameter["doc"]
              for line in textwrap.wrap(f"{parameter['name']}: {parameter['doc']}", WIDTH - len(indent) - len(mark) - 3,
                                        initial_indent="  ", subsequent_indent="    ", break_long_words=False, break_on_hyphens=False)]
    return "".join(f"{indent}{mark} {line}\n" for line in lines)


def families(rows):
    """(family, its rows), in the order of the catalogue."""
    family, found = None, []
    for row in rows:
        if row["family"] != family:
            if found:
                yield family, found
            family, found = row["family"], []
        found.append(row)
    yield family, found


# --- C++: a header over wfinfo.h ---

CPP_PARAMETER = {"Text": "Text", "OptText": "Text", "RawText": "Text", "WideText": "const wchar_t*", "Int32": "int",
                 "UInt32": "unsigned int", "Int64": "long long", "Handle": "void*", "Record": "void*", "Bytes": "const void*",
                 "Value": "Value"}
CPP_RESULT = {"Str": "std::string", "OptStr": "std::optional<std::string>", "Int": "long long", "Int32": "int",
              "UInt32": "unsigned int", "Handle": "void*", "Void": "void"}


def cpp_function(row):
    parameters = list(named(row, "cpp"))
    rest = bool(parameters) and parameters[-1][0] == "Rest"
    fixed = parameters[:-1] if rest else parameters
    declared = ", ".join([f"{CPP_PARAMETER[kind]} {name}" for kind, name in fixed] + (["Values... rest"] if rest else []))
    passed = [f"{name}.c_str()" if kind in TEXTS else f"{name}.slot()" if kind == "Value" else name for kind, name in fixed]
    passed += ["Value(rest).slot()..."] if rest else []
    call = f"::{row['name']}({', '.join(passed)})"
    result = row["result_type"]
    body = {"Str": f"return copied({call});", "OptStr": f"return copied_or_null({call});", "Void": f"{call};"}.get(result, f"return {call};")
    head = "template <class... Values>\n" if rest else ""
    inline = "" if rest else "inline "
    return f"{comment(row, '//')}{head}{inline}{CPP_RESULT[result]} {row['name']}({declared}) {{ {body} }}\n"


def cpp(rows):
    text = head_of("head.hpp")
    for family, found in families(rows):
        mapi = family == "Simple MAPI"
        text += f"\n// --- {family} ---\n" + ("\n#ifndef WFINFO_NO_MAPI\n" if mapi else "")
        text += "".join("\n" + cpp_function(row) for row in found) + ("\n#endif  // WFINFO_NO_MAPI\n" if mapi else "")
    return text + "\n}  // namespace wfinfo\n"


# --- Python: ctypes ---

PYTHON_TYPE = {"Text": "_text", "OptText": "_text", "RawText": "_text", "WideText": "_wide", "Int32": "c_int", "UInt32": "c_uint",
               "Int64": "c_longlong", "Handle": "c_void_p", "Record": "c_void_p", "Bytes": "c_void_p", "Value": "_value"}
PYTHON_RESULT = {"Str": "_result", "OptStr": "_result", "Int": "c_longlong", "Int32": "c_int", "UInt32": "c_uint",
                 "Handle": "c_void_p", "Void": "None"}


def python_function(row):
    parameters = list(named(row, "python"))
    rest = bool(parameters) and parameters[-1][0] == "Rest"
    fixed = parameters[:-1] if rest else parameters
    declared = ", ".join(["self", *(name for _, name in fixed)] + (["*rest"] if rest else []))
    kinds = "".join(f"{PYTHON_TYPE[kind]}, " for kind, _ in fixed)
    given = "".join(f"{name}, " for _, name in fixed) + ("*rest" if rest else "")
    doc = comment(row, "", "        ").replace("\\", "\\\\").replace('"""', "'''")
    doc = "\n".join("        " + line[9:] if line.startswith("         ") else line for line in doc.splitlines()).strip()
    if doc.endswith('"'):
        doc += " "
    return (f"    def {row['name']}({declared}):\n        \"\"\"{doc}\"\"\"\n"
            f"        return self._call(\"{row['name']}\", {PYTHON_RESULT[row['result_type']]}, ({kinds}), ({given}))\n")


def python(rows):
    text = head_of("head.py")
    for family, found in families(rows):
        text += f"\n    # --- {family} ---\n" + "".join("\n" + python_function(row) for row in found)
    return text


# --- C#: P/Invoke ---

CSHARP_NATIVE = {"Text": "byte[]", "OptText": "byte[]", "RawText": "byte[]", "WideText": "string", "Int32": "int", "UInt32": "uint",
                 "Int64": "long", "Handle": "IntPtr", "Record": "IntPtr", "Bytes": "IntPtr", "Value": "long"}
CSHARP_TAKEN = CSHARP_NATIVE | {"Text": "string", "OptText": "string", "RawText": "string", "Value": "WfinfoValue"}
CSHARP_RESULT = {"Str": "IntPtr", "OptStr": "IntPtr", "Int": "long", "Int32": "int", "UInt32": "uint", "Handle": "IntPtr", "Void": "void"}
CSHARP_GIVEN = CSHARP_RESULT | {"Str": "string", "OptStr": "string"}
REST_VALUES = 8  # of a call that takes any number: Windows passes them as it passes the others


def csharp_function(row):
    parameters = list(named(row, "csharp"))
    rest = bool(parameters) and parameters[-1][0] == "Rest"
    fixed = parameters[:-1] if rest else parameters
    native = [f"{CSHARP_NATIVE[kind]} {name}" for kind, name in fixed] + [f"long rest{n}" for n in range(REST_VALUES) if rest]
    wide = ", CharSet = CharSet.Unicode" if any(kind == "WideText" for kind, _ in fixed) else ""
    taken = ", ".join([f"{CSHARP_TAKEN[kind]} {name}" for kind, name in fixed] + (["params WfinfoValue[] rest"] if rest else []))
    passed = [f"HostText.Bytes({name})" if kind in TEXTS else f"{name}_.Slot" if kind == "Value" else name for kind, name in fixed]
    passed += [f"rest_.Slot({n})" for n in range(REST_VALUES) if rest]
    call = f"Native.{row['name']}({', '.join(passed)})"
    result = row["result_type"]
    call = f"HostText.Copied({call})" if result in ("Str", "OptStr") else call
    kept = [f"using (var {name}_ = {name}.Kept()) " for kind, name in fixed if kind == "Value"]
    kept += [f"using (var rest_ = WfinfoValue.KeptAll(rest, {REST_VALUES})) "] if rest else []
    body = f"{''.join(kept)}{'' if result == 'Void' else 'return '}{call};"
    summary = first_sentence(row["doc"]).replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    return (f"    [DllImport(Library, ExactSpelling = true{wide})]\n    internal static extern {CSHARP_RESULT[result]} {row['name']}({', '.join(native)});\n",
            f"  /// <summary>{summary}</summary>\n  public static {CSHARP_GIVEN[result]} {row['name']}({taken}) {{ {body} }}\n")


def csharp(rows):
    natives, functions = "", ""
    for family, found in families(rows):
        functions += f"\n  // --- {family} ---\n"
        for row in found:
            native, function = csharp_function(row)
            natives += native
            functions += "\n" + function
    head = head_of("head.cs")
    return (f"{head}\npublic static class Wfinfo {{\n{functions}}}\n\ninternal static class Native {{\n"
            f"  private const string Library = \"WFINFO.dll\";\n\n{natives}}}\n")


# --- JavaScript: koffi under Node ---

JAVASCRIPT_TYPE = {"Text": "text", "OptText": "text", "RawText": "text", "WideText": "wide", "Int32": "int32", "UInt32": "uint32",
                   "Int64": "int64", "Handle": "handle", "Record": "handle", "Bytes": "handle", "Value": "value", "Rest": "rest"}
JAVASCRIPT_RESULT = {"Str": "text", "OptStr": "text", "Int": "int64", "Int32": "int32", "UInt32": "uint32", "Handle": "handle", "Void": "void"}


def javascript(rows):
    text = head_of("head.js")
    text += "\n// Name: result, then a type for each parameter, with its name.\nconst exports_ = {\n"
    for family, found in families(rows):
        text += f"  // --- {family} ---\n"
        for row in found:
            parameters = "".join(f", '{JAVASCRIPT_TYPE[kind]} {name}'" for kind, name in named(row, "javascript"))
            text += f"  /** {first_sentence(row['doc']).replace('*/', '* /')} */\n"
            text += f"  {row['name']}: ['{JAVASCRIPT_RESULT[row['result_type']]}'{parameters}],\n"
    return text + "};\n\nmodule.exports = { load, reportErrorsTo, toHost, fromHost };\n"


# --- AutoHotkey v2 ---

AUTOHOTKEY_TYPE = {"Text": "Ptr", "OptText": "Ptr", "RawText": "Ptr", "WideText": "WStr", "Int32": "Int", "UInt32": "UInt", "Int64": "Int64",
                   "Handle": "Ptr", "Record": "Ptr", "Bytes": "Ptr", "Value": "Int64"}
AUTOHOTKEY_RESULT = {"Str": "Ptr", "OptStr": "Ptr", "Int": "Int64", "Int32": "Int", "UInt32": "UInt", "Handle": "Ptr", "Void": "Int"}


def autohotkey_function(row):
    parameters = list(named(row, "autohotkey"))
    rest = bool(parameters) and parameters[-1][0] == "Rest"
    fixed = parameters[:-1] if rest else parameters
    declared = ", ".join([name for _, name in fixed] + (["rest*"] if rest else []))
    lines, passed = [], []
    for kind, name in fixed:
        if kind in TEXTS:
            lines.append(f"{name}_ := WfinfoText.Bytes({name})")
            passed.append(f"'{AUTOHOTKEY_TYPE[kind]}', WfinfoText.Address({name}_)")
        elif kind == "Value":
            lines.append(f"{name}_ := WfinfoText.Value({name})")
            passed.append(f"'Int64', WfinfoText.Slot({name}_)")
        else:
            passed.append(f"'{AUTOHOTKEY_TYPE[kind]}', {name}")
    if rest:
        lines.append("kept := WfinfoText.Values(rest)")
        passed.append("WfinfoText.Slots(kept)*")
    result = row["result_type"]
    call = f"DllCall('WFINFO\\{row['name']}', {', '.join([*passed, repr(AUTOHOTKEY_RESULT[result])])})"
    lines.append(f"return {'WfinfoText.Copied(' + call + ')' if result in ('Str', 'OptStr') else call}")
    body = "".join(f"        {line}\n" for line in lines)
    return f"    ; {first_sentence(row['doc'])}\n    static {row['name']}({declared}) {{\n{body}    }}\n"


def autohotkey(rows):
    text = head_of("head.ahk") + "\nclass Wfinfo {\n"
    for family, found in families(rows):
        text += f"\n    ; --- {family} ---\n" + "".join("\n" + autohotkey_function(row) for row in found)
    return text + "}\n"


BINDINGS = {"cpp/wfinfo.hpp": cpp, "python/wfinfo.py": python, "csharp/Wfinfo.cs": csharp, "javascript/wfinfo.js": javascript,
            "autohotkey/wfinfo.ahk": autohotkey}


def main(reference, folder):
    rows = read_rows(pathlib.Path(reference))
    for name, printed in BINDINGS.items():
        path = pathlib.Path(folder, name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(printed(rows), encoding="utf-8", newline="\n")
    module = pathlib.Path(folder, "powershell/wfinfo.psm1")
    module.parent.mkdir(exist_ok=True)
    module.write_text((HEADS / "wfinfo.psm1").read_text(encoding="utf-8"), encoding="utf-8", newline="\r\n")


if __name__ == "__main__":
    main(*sys.argv[1:3])
