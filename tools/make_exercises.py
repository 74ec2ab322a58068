#!/usr/bin/env python3
"""Builds the exercises shipped in data/ from their human-readable sources.

Input: tools/exercices/exercices.json (titles, levels, topics, configurations) and, for each
exercise, a text source in tools/exercices/textes/ holding the statement and the correction in a
small markup (described in tools/exercices/LISEZMOI.md).

Output, for each exercise NAME, in data/exercices/:
  NAME.E31                 the exercise file (11 records)
  NAME_enonce.rtf/.C10     the statement and its configuration
  NAME_correction.rtf/.C10 the correction and its configuration
  NAME.valeurs             the quantities the correction states, for the number checks
and data/tervox.PEM with data/exercices/prise_en_main.rtf and .C10 for the getting-started tour.

Record files: 128-byte records, each a 16-bit little-endian length and that many Windows-1252
bytes, the rest zeros. Standard library only.

Usage: python3 tools/make_exercises.py [--check]
  --check  writes nothing; exits with status 1 when a generated file differs from data/.
"""

import json
import re
import struct
import sys
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SOURCES = ROOT / "tools" / "exercices"
DATA = ROOT / "data"
FOLDER = "exercices"

RECORD = 128
NBSP = "\u00a0"
MINUS = "\u2212"

# The word each title must contain for its reaction (and, for the two reactions of
# dihydrogen, the oxidant too), so that a title names the reaction its configuration selects.
REACTION_WORDS = {
    1: ["méthane"],
    2: ["éthane"],
    3: ["propane"],
    4: ["butane"],
    5: ["dihydrogène", "dioxygène"],
    6: ["dihydrogène", "dichlore"],
    7: ["méthanol"],
    8: ["éthanol"],
}
FUEL_WORDS = ["méthane", "éthane", "propane", "butane", "dihydrogène", "méthanol", "éthanol"]

MAX_TITLE = 48  # the browser's preview label shows one short line


class ContentError(Exception):
    pass


# ---------------------------------------------------------------------------------------------
# Record files


def record(text):
    raw = text.encode("cp1252")
    if len(raw) > RECORD - 2:
        raise ContentError(f"record text over 126 bytes: {text!r}")
    return struct.pack("<H", len(raw)) + raw + bytes(RECORD - 2 - len(raw))


def record_file(texts):
    return b"".join(record(t) for t in texts)


def single(value):
    """The value as the amount fields hold it: a single-precision float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def amount_text(value):
    """An amount as the Macro tab shows it once validated: "### ### ##0.0##", untrimmed."""
    if not 0 <= value <= 100000:
        raise ContentError(f"amount out of range: {value}")
    digits = Decimal(repr(single(value)))
    # Fifteen significant digits first, then three decimals, both half-up in decimal.
    digits = Decimal(f"{digits:.15g}").quantize(Decimal("0.001"), rounding=ROUND_HALF_UP)
    whole, frac = f"{digits:.3f}".split(".")
    frac = frac.rstrip("0") or "0"
    slots = whole.rjust(9, "#")  # nine integer places, "#" where no digit stands
    grouped = slots[0:3] + " " + slots[3:6] + " " + slots[6:9]
    return grouped.replace("#", "") + "," + frac


def configuration(reaction, cfg):
    """The eight records of a .C10 file."""
    return record_file(
        [
            "TERVO",
            f" {reaction - 1}",
            amount_text(cfg["a"]),
            amount_text(cfg["b"]),
            "1" if cfg.get("simultane") else "0",
            "1" if cfg.get("intermediaire") else "0",
            "1" if cfg.get("chaleur") else "0",
            "1" if cfg.get("isole") else "0",
        ]
    )


# ---------------------------------------------------------------------------------------------
# Markup to RTF

RTF_HEADER = (
    r"{\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fswiss Arial;}}"
    r"{\colortbl;\red0\green0\blue200;}" + "\n" + r"\uc1\f0\fs20" + "\n"
)

FORMULA = re.compile(r"(?<![\w.])(?:(?:Cl|C|H|O)\d*)+(?![\w])")
UNIT = r"(?:mol|kJ|J|g|kg|°C|%)"


def typography(text):
    """French spacing: no-break spaces before : ; ! ? », after «, in digit groups and
    between a number and its unit. "~" is an explicit no-break space."""
    text = text.replace("~", NBSP)
    text = re.sub(r" ([:;!?»])", NBSP + r"\1", text)
    text = re.sub(r"« ", "«" + NBSP, text)
    text = re.sub(r"(?<=\d) (?=\d{3}(?!\d))", NBSP, text)
    text = re.sub(r"(?<=\d) (?=" + UNIT + r"(?![\w]))", NBSP, text)
    return text


def program_number(value):
    """A number as the program prints it, written for a reader: a true minus sign."""
    return re.sub(r"(?<![\w,.])-(?=\d)", MINUS, value)


class Runs:
    """Text runs with their formats: a set of 'b', 'i', 'sup', 'sub'."""

    def __init__(self):
        self.items = []

    def add(self, text, fmt):
        if not text:
            return
        if self.items and self.items[-1][1] == fmt:
            self.items[-1] = (self.items[-1][0] + text, fmt)
        else:
            self.items.append((text, frozenset(fmt)))

    def plain(self):
        return "".join(t for t, _ in self.items)


class Tags:
    """What a correction states: (situation, key, value) in order of appearance."""

    def __init__(self):
        self.situation = "correction"
        self.lines = []

    def add(self, key, value):
        entry = (self.situation, key, value)
        if entry not in self.lines:
            self.lines.append(entry)


INLINE = re.compile(
    r"\\(?P<esc>[*_^~{}\\])"
    r"|\{\{(?P<tag>[^}]*)\}\}"
    r"|\^\{(?P<sup>[^}]*)\}"
    r"|_\{(?P<sub>[^}]*)\}"
    r"|(?P<bold>\*\*)"
    r"|(?P<ital>\*)"
)


def formulas(text, fmt, runs):
    """Plain text with the digits of chemical formulas as subscripts."""
    pos = 0
    for m in FORMULA.finditer(text):
        token = m.group(0)
        if not any(c.isdigit() for c in token):
            continue
        runs.add(text[pos : m.start()], fmt)
        for part in re.findall(r"\d+|\D+", token):
            runs.add(part, fmt | {"sub"} if part.isdigit() else fmt)
        pos = m.end()
    runs.add(text[pos:], fmt)


def inline(text, runs, tags, fmt=frozenset()):
    """Adds the runs of one paragraph's markup; typography and formulas come after."""
    start = frozenset(fmt)
    fmt = set(fmt)
    pos = 0
    for m in INLINE.finditer(text):
        runs.add(text[pos : m.start()], frozenset(fmt))
        pos = m.end()
        if m.group("esc") is not None:
            # An escaped "~" stays a tilde: typography only turns the bare one into a space.
            runs.add("\u0001" if m.group("esc") == "~" else m.group("esc"), frozenset(fmt))
        elif m.group("tag") is not None:
            tag = m.group("tag").strip()
            if tag.startswith("situation"):
                if tags is None:
                    raise ContentError("a situation outside a correction")
                tags.situation = tag[len("situation") :].strip()
                continue
            key, sep, value = tag.rpartition("=")
            if not sep or not key.strip():
                raise ContentError(f"a value tag without a key: {{{{{tag}}}}}")
            if tags is None:
                raise ContentError(f"a value tag outside a correction: {tag}")
            tags.add(key.strip(), value.strip())
            runs.add(program_number(value.strip()), frozenset(fmt))
        elif m.group("sup") is not None:
            runs.add(m.group("sup"), frozenset(fmt | {"sup"}))
        elif m.group("sub") is not None:
            runs.add(m.group("sub"), frozenset(fmt | {"sub"}))
        elif m.group("bold"):
            fmt ^= {"b"}
        elif m.group("ital"):
            fmt ^= {"i"}
    runs.add(text[pos:], frozenset(fmt))
    if fmt != start:
        raise ContentError(f"unclosed bold or italic in: {text}")


def finish(runs):
    """French spacing over the whole paragraph (each rule swaps one character for one), then
    the digits of formulas lowered, outside superscripts and subscripts."""
    plain = runs.plain()
    fixed = typography(plain).replace("\u0001", "~")
    assert len(fixed) == len(plain)
    out = Runs()
    pos = 0
    for text, fmt in runs.items:
        piece = fixed[pos : pos + len(text)]
        pos += len(text)
        if "sup" in fmt or "sub" in fmt:
            out.add(piece, fmt)
        else:
            formulas(piece, fmt, out)
    return out


FALLBACK = {MINUS: "-", "\u0394": "D", "\u2192": ">", "\u2248": "~"}


def rtf_text(text):
    out = []
    for ch in text:
        code = ord(ch)
        if ch == "\\" or ch == "{" or ch == "}":
            out.append("\\" + ch)
        elif ch == NBSP:
            out.append(r"\~")
        elif ch == "\t":
            out.append(r"\tab ")
        elif 32 <= code < 127:
            out.append(ch)
        else:
            try:
                byte = ch.encode("cp1252")
                out.append(f"\\'{byte[0]:02x}")
            except UnicodeEncodeError:
                # The blank ends the control word; the next character is what a reader
                # without Unicode shows instead.
                signed = code if code < 32768 else code - 65536
                out.append(f"\\u{signed} {FALLBACK.get(ch, '?')}")
    return "".join(out)


def rtf_runs(runs):
    out = []
    for text, fmt in runs.items:
        words = ""
        if "b" in fmt:
            words += r"\b"
        if "i" in fmt:
            words += r"\i"
        if "sup" in fmt:
            words += r"\super"
        if "sub" in fmt:
            words += r"\sub"
        body = rtf_text(text)
        out.append("{" + words + " " + body + "}" if words else body)
    return "".join(out)


# Tab stops of a table: the first column left, the others centred, in twips. The statement
# area is about 4 300 twips wide.
TABLE_TABS = {
    3: r"\tqc\tx2300\tqc\tx3600",
    4: r"\tqc\tx1750\tqc\tx2750\tqc\tx3750",
    5: r"\tqc\tx1250\tqc\tx2080\tqc\tx2910\tqc\tx3740",
}


def paragraphs(source):
    """Splits the markup into (kind, text) blocks."""
    blocks = []
    current = None
    for line in source.splitlines():
        stripped = line.strip()
        if not stripped:
            current = None
            continue
        if stripped.startswith("%"):  # a comment for the author
            continue
        kind = None
        if stripped.startswith("## "):
            kind, stripped = "heading", stripped[3:]
        elif stripped.startswith("# "):
            kind, stripped = "title", stripped[2:]
        elif stripped.startswith(">> "):
            kind, stripped = "centre", stripped[3:]
        elif stripped.startswith("|"):
            kind = "row"
        elif re.match(r"^\{\{situation[^}]*\}\}\s*\|", stripped):
            # A situation written before a row goes into its first cell.
            tag, _, row = stripped.partition("}}")
            kind, stripped = "row", "|" + tag + "}}" + row.strip()[1:].lstrip()
        elif re.match(r"^\d+\. ", stripped):
            kind = "item"
        elif stripped.startswith("- "):
            kind, stripped = "bullet", stripped[2:]
        elif stripped.startswith("! "):
            kind, stripped = "note", stripped[2:]
        if kind is not None:
            current = [kind, stripped]
            blocks.append(current)
            if kind in ("title", "heading", "row"):
                current = None
        elif current is not None:
            current[1] += " " + stripped
        else:
            current = ["text", stripped]
            blocks.append(current)
    return blocks


def to_rtf(source, tags):
    out = [RTF_HEADER]
    blocks = paragraphs(source)
    for index, (kind, text) in enumerate(blocks):
        runs = Runs()
        if kind == "row":
            cells = [c.strip() for c in text.strip().strip("|").split("|")]
            first_row = index == 0 or blocks[index - 1][0] != "row"
            last_row = index + 1 == len(blocks) or blocks[index + 1][0] != "row"
            if len(cells) not in TABLE_TABS:
                raise ContentError(f"a table row needs 3 to 5 cells: {text}")
            tabs = TABLE_TABS[len(cells)]
            for n, cell in enumerate(cells):
                if n:
                    runs.add("\t", frozenset())
                inline(cell, runs, tags, frozenset({"b"}) if first_row or n == 0 else frozenset())
            after = r"\sa120" if last_row else r"\sa20"
            body = rtf_runs(finish(runs))
            out.append(r"\pard" + tabs + after + r"{\fs18 " + body + r"}\par" + "\n")
            continue
        if kind == "item":
            number, _, text = text.partition(" ")
            runs.add(number + "\t", frozenset({"b"}))
        elif kind == "bullet":
            runs.add("\u2013\t", frozenset())
        inline(text, runs, tags)
        body = rtf_runs(finish(runs))
        if kind == "title":
            out.append(r"\pard\qc\sa200{\b\fs28\cf1 " + body + r"}\par" + "\n")
        elif kind == "heading":
            out.append(r"\pard\sb160\sa80{\b\cf1 " + body + r"}\par" + "\n")
        elif kind == "centre":
            out.append(r"\pard\qc\sa120 " + body + r"\par" + "\n")
        elif kind in ("item", "bullet"):
            out.append(r"\pard\li340\fi-340\tx340\sa80 " + body + r"\par" + "\n")
        elif kind == "note":
            out.append(r"\pard\li200\sa120{\i " + body + r"}\par" + "\n")
        else:
            out.append(r"\pard\sa120 " + body + r"\par" + "\n")
    out.append("}\n")
    return "".join(out).encode("ascii")


def split_source(path, with_correction=True):
    """A text source: '=== énoncé' then '=== correction' sections."""
    text = path.read_text(encoding="utf-8")
    parts = re.split(r"^=== *(énoncé|correction) *$", text, flags=re.M)
    sections = {parts[i]: parts[i + 1] for i in range(1, len(parts) - 1, 2)}
    wanted = {"énoncé", "correction"} if with_correction else {"énoncé"}
    if set(sections) != wanted:
        raise ContentError(f"{path.name}: needs the sections {sorted(wanted)}")
    return sections["énoncé"], sections.get("correction")


# ---------------------------------------------------------------------------------------------
# The companion file of the number checks


def amounts_text(cfg):
    return f"a={amount_text(cfg['a']).strip()} b={amount_text(cfg['b']).strip()}"


def valeurs(name, tags):
    lines = [
        f"# {name} : les grandeurs que la correction écrit, avec leur valeur telle qu'elle",
        "# l'écrit (le signe moins en - et les espaces en blancs simples).",
        f"# Par défaut, la situation est celle de la configuration de la correction",
        f"# ({name}_correction.C10) ; une ligne « situation reaction=N a=… b=… isole=0|1 »",
        "# vaut pour les lignes qui la suivent, « situation correction » y revient.",
    ]
    situation = "correction"
    for where, key, value in tags.lines:
        if where != situation:
            lines.append(f"situation {where}")
            situation = where
        lines.append(f"{key} = {value}")
    return ("\n".join(lines) + "\n").encode("utf-8")


# ---------------------------------------------------------------------------------------------


def spaced(text):
    """Titles and topic lines: the no-break space before : ; ! ? as in the texts."""
    return re.sub(r" ([:;!?])", NBSP + r"\1", text)


def check_title(entry):
    title = entry["titre"]
    if len(title) > MAX_TITLE:
        raise ContentError(f"title over {MAX_TITLE} characters: {title}")
    words = re.findall(r"[\wéèêàç]+", title.lower())
    wanted = REACTION_WORDS[entry["reaction"]]
    for w in wanted:
        if w not in words:
            raise ContentError(f"title does not name reaction {entry['reaction']}: {title}")
    others = [w for w in FUEL_WORDS if w in words and w not in wanted]
    if others or ("dichlore" in words and entry["reaction"] != 6):
        raise ContentError(f"title names another reaction: {title}")


def build():
    manifest = json.loads((SOURCES / "exercices.json").read_text(encoding="utf-8"))
    files = {}
    names = set()
    for entry in manifest["exercices"]:
        name = entry["fichier"]
        if name in names:
            raise ContentError(f"two exercises named {name}")
        names.add(name)
        try:
            check_title(entry)
            if entry["niveau"] not in (1, 2, 3):
                raise ContentError("level must be 1, 2 or 3")
            if not 1 <= len(entry["notions"]) <= 5:
                raise ContentError("one to five topic lines")
            statement, correction = split_source(SOURCES / "textes" / f"{name}.txt")
            tags = Tags()
            reaction = entry["reaction"]
            files[f"{FOLDER}/{name}_enonce.rtf"] = to_rtf(statement, None)
            files[f"{FOLDER}/{name}_correction.rtf"] = to_rtf(correction, tags)
            if not tags.lines:
                raise ContentError("the correction states no checked value")
            files[f"{FOLDER}/{name}_enonce.C10"] = configuration(reaction, entry["enonce"])
            files[f"{FOLDER}/{name}_correction.C10"] = configuration(reaction, entry["correction"])
            files[f"{FOLDER}/{name}.valeurs"] = valeurs(name, tags)
            topics = [spaced(t) for t in entry["notions"]] + [""] * (5 - len(entry["notions"]))
            files[f"{FOLDER}/{name}.E31"] = record_file(
                [
                    f"{name}_enonce.rtf",
                    f"{name}_enonce.C10",
                    f"{name}_correction.rtf",
                    f"{name}_correction.C10",
                    str(entry["niveau"]),
                    *topics,
                    spaced(entry["titre"]),
                ]
            )
        except (ContentError, KeyError) as err:
            raise ContentError(f"{name}: {err}") from err

    tour = manifest["prise_en_main"]
    statement, _ = split_source(SOURCES / "textes" / "prise_en_main.txt", with_correction=False)
    files[f"{FOLDER}/prise_en_main.rtf"] = to_rtf(statement, None)
    files[f"{FOLDER}/prise_en_main.C10"] = configuration(tour["reaction"], tour["configuration"])
    # Read from the program folder itself, so the names carry the exercise folder.
    files["tervox.PEM"] = record_file(
        [
            f"{FOLDER}/prise_en_main.rtf",
            f"{FOLDER}/prise_en_main.C10",
            "",
            "",
            "1",
            *([spaced(t) for t in tour["notions"]] + [""] * (5 - len(tour["notions"]))),
            spaced(tour["titre"]),
        ]
    )
    return files


def main(argv):
    check = "--check" in argv
    try:
        files = build()
    except ContentError as err:
        print(f"make_exercises: {err}", file=sys.stderr)
        return 2
    generated = {DATA / rel for rel in files}
    stale = [p for p in (DATA / FOLDER).glob("*") if p not in generated]
    differ = []
    for rel, content in sorted(files.items()):
        path = DATA / rel
        if path.exists() and path.read_bytes() == content:
            continue
        differ.append(rel)
        if not check:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
    if check:
        for rel in differ:
            print(f"differs from its source: data/{rel}", file=sys.stderr)
        for p in stale:
            print(f"not made from a source: {p.relative_to(ROOT)}", file=sys.stderr)
        return 1 if differ or stale else 0
    for p in stale:
        p.unlink()
    print(f"{len(files)} files, {len(differ)} written")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
