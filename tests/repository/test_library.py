"""The built library from outside: its imports, exports, hardening, and what was printed from the catalogue."""
import collections
import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import size_by_origin  # noqa: E402

OUT = pathlib.Path(os.environ["WFINFO_OUT"])


PLAIN = {**os.environ, "LC_ALL": "C"}  # the tools' own words, not translated ones


def headers(*options):
    return subprocess.run(["x86_64-w64-mingw32-objdump", *options, str(OUT / "WFINFO.dll")], capture_output=True,
                          text=True, check=True, env=PLAIN).stdout


def symbols():
    return subprocess.run(["x86_64-w64-mingw32-nm", str(OUT / "WFINFO.dll")], capture_output=True, text=True, check=True).stdout


def exported_names():
    table = headers("-p").split("[Ordinal/Name Pointer] Table")[1]
    return re.findall(r"^\s*\[\s*\d+\]\s+(\w+)\s*$", table, re.M)


class Library(unittest.TestCase):
    def test_only_kernel_user_and_the_c_runtime_are_imported(self):
        imported = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers("-p"))}
        self.assertEqual(imported - {"kernel32.dll", "user32.dll", "msvcrt.dll"}, set())

    def test_hardening_is_on(self):
        text = headers("-p")
        for flag in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
            self.assertIn(flag, text)
        self.assertIn(".reloc", headers("-h"), "address randomisation needs relocations")

    def test_no_wide_vector_is_moved_as_if_the_stack_were_aligned_for_it(self):
        # Windows aligns a stack to 16 bytes; the compiler believes that its vectors of 32 and 64 bytes lie there aligned.
        moves = re.findall(r"vmov(?:dqa(?:32|64)?|aps|apd)\b.*[yz]mm.*\(.*|vmov(?:dqa(?:32|64)?|aps|apd)\b.*\(.*[yz]mm.*", headers("-d"))
        self.assertEqual(moves, [])

    def test_nothing_is_constructed_at_load(self):
        # The list of constructors: a mark of -1, addresses, a 0. The compiler's start-up code has one of its own.
        names = collections.defaultdict(list)
        for address, name in re.findall(r"^([0-9a-f]+) \w (\S+)$", symbols(), re.M):
            if not name.startswith("."):  # of a section
                names[int(address, 16)].append(name)
        start = next(address for address, found in names.items() if "__CTOR_LIST__" in found)
        dump = headers("-s", f"--start-address={start:#x}", f"--stop-address={start + 512:#x}")
        data = b"".join(bytes.fromhex(line[:35].replace(" ", "")) for line in re.findall(r"^ [0-9a-f]+ (.{35})", dump, re.M))
        entries = struct.unpack(f"<{len(data) // 8}Q", data)
        self.assertEqual(entries[0], 2**64 - 1)
        listed = entries[1:entries.index(0)]
        self.assertEqual([names[entry] for entry in listed], [["register_frame_ctor"]])

    def test_the_exceptions_part_of_the_cxx_library_is_not_linked(self):
        self.assertEqual(re.findall(r" (_ZN10__cxxabiv1\w+|_ZN9__gnu_cxx\w+|__cxa_\w+|__gxx_\w+|_Unwind_\w+)$", symbols(), re.M), [])

    def test_the_number_formatting_of_the_c_runtime_is_not_linked(self):
        # With what it draws in it is a twentieth of the library.
        self.assertEqual(re.findall(r" (\w*(?:pformat|gdtoa|vsnprintf))$", symbols(), re.M), [])

    def test_the_library_stays_small(self):
        # Programs that send a mail load it. Without symbols it has 400 KB; a growth of more than some KB has one cause.
        self.assertLess(size_by_origin.stripped_size(), 400_000)

    def test_what_the_linker_left_out_counts_nowhere(self):
        # In a map whose headings are translated.
        pieces = [" .text$_ZN3oneEv\n                0x0000000000000000       0x40 one.cpp.obj",
                  "リンカスクリプトおよびメモリマップ",
                  " .text          0x0000000180001000      0x350 lib/dllcrt2.o",
                  " .rdata$zzz     0x0000000180050000       0x20 two.cpp.obj"]
        self.assertEqual(list(size_by_origin.contributions("\n".join(pieces))),
                         [(".text", 0x350, "lib/dllcrt2.o"), (".rdata", 0x20, "two.cpp.obj")])

    def test_the_page_tells_where_its_bytes_come_from(self):
        # Small changes need no new table; one of two KB and more does: python3 tools/size_by_origin.py --write
        def kilobytes(table):
            cells = [[cell.strip() for cell in line.strip("|").split("|")] for line in table.splitlines()[2:]]
            return {line[0]: float(line[-1]) for line in cells}
        page = kilobytes(size_by_origin.on_the_page((SOURCE / size_by_origin.PAGE).read_text(encoding="utf-8")))
        now = kilobytes(size_by_origin.shown())
        self.assertEqual(page.keys(), now.keys())
        self.assertEqual([(name, page[name], now[name]) for name in now if abs(page[name] - now[name]) >= 2], [])
        whole = now.pop("all of it")
        self.assertAlmostEqual(sum(now.values()), whole, delta=0.1 * len(now))

    def test_exports_are_exactly_the_catalogue(self):
        rows = json.loads((OUT / "reference.json").read_text(encoding="utf-8"))
        self.assertEqual(sorted(exported_names()), sorted(row["name"] for row in rows))

    def test_definition_file_and_header_list_the_same_exports(self):
        names = sorted(exported_names())
        definition = (OUT / "WFINFO.def").read_text(encoding="utf-8").split("EXPORTS\n")[1]
        # An export that is written by hand is entered through a function generated for its row.
        listed = [re.fullmatch(r"\s+(\w+)(?: = (\w+))?", line) for line in definition.splitlines()]
        self.assertEqual(sorted(line[1] for line in listed), names)
        self.assertEqual([line[0] for line in listed if line[2] not in (None, "Entered_" + line[1])], [])
        header = re.sub(r"/\*.*?\*/", "", (OUT / "wfinfo.h").read_text(encoding="utf-8"), flags=re.S)
        self.assertEqual(sorted(re.findall(r"\b(\w+)\([^()]*\);", header)), names)

    def test_the_header_compiles_alone_as_c_and_as_c_plus_plus(self):
        for language, standard in (("c", "c11"), ("c++", "c++20")):
            result = subprocess.run(["gcc", "-x", language, f"-std={standard}", "-Wall", "-Wextra", "-Werror",
                                     "-fsyntax-only", str(OUT / "wfinfo.h")], capture_output=True, text=True)
            self.assertEqual(result.returncode, 0, result.stderr)

    def test_the_reference_is_whole(self):
        reference = (OUT / "reference.md").read_text(encoding="utf-8")
        for name in exported_names():
            self.assertIn(f"### `{name}`", reference)

    def test_each_entry_of_the_reference_tells_the_result_and_ends_in_its_example_and_where_to_look(self):
        reference = (OUT / "reference.md").read_text(encoding="utf-8")
        rows = {row["name"]: row for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8"))}
        # A heading inside an example is none.
        entries = re.split(r"^### `(\w+)`\n", reference, flags=re.M)
        self.assertEqual(len(entries) // 2, len(rows))
        for name, entry in zip(entries[1::2], entries[2::2]):
            with self.subTest(name):
                self.assertRegex(entry, r"(?m)^- Result: ")
                row = rows[name]
                example = f"\n```\n{row['example']}```\n" if row["example"] else ""
                example += f"\nRun with: `{row['run_with']}`\n" if row["run_with"] else ""
                example += f"\nNeeds: {row['needs']}.\n" if row["needs"] else ""
                self.assertRegex(re.sub(r"\n## .*", "", entry).rstrip() + "\n",
                                 re.escape(example) + r"\nSee also: (\[`\w+`\]\(#\w+\)(, )?)+\.\n\Z")

    def test_links_to_codes_lead_to_their_sections(self):
        reference = (OUT / "reference.md").read_text(encoding="utf-8")
        page = (pathlib.Path(__file__).resolve().parents[2] / "docs/host-protocol-by-code.md").read_text(encoding="utf-8")
        sections = {heading.lower().replace(" ", "-") for heading in re.findall(r"^### (.*)$", page, re.M)}
        links = set(re.findall(r"host-protocol-by-code\.md#([\w-]+)", reference))
        self.assertGreater(len(links), 300)
        self.assertEqual(sorted(links - sections), [])

    def test_the_version_resource_is_there(self):
        self.assertIn(".rsrc", headers("-h"))


if __name__ == "__main__":
    unittest.main()
