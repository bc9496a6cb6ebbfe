"""The data sets of compare-runs.sh: those of examples/ and generated ones, each a Control File and
its data, by file name."""
import itertools
import math
import random

PLACES = ["NAME1=1", "NAMLEN=15", "ITEM1=16"]  # label: number, sex, $S8W3 weight, $S12W4 anchor


def scale(difficulty, categories):
    """The measures of the steps of an item."""
    return [difficulty + 0.9 * (k - (categories - 2) / 2) for k in range(categories - 1)]


def items(*counts):
    """An item for each number of categories, from easy to hard."""
    return [scale(3.2 * i / max(len(counts) - 1, 1) - 1.6, n) for i, n in enumerate(counts)]


def respond(rng, ability, steps, model):
    def passed(step):
        return rng.random() < 1 / (1 + math.exp(step - ability))

    if model == "S":  # up to the first step that fails
        return next((k for k, step in enumerate(steps) if not passed(step)), len(steps))
    if model == "F":  # down to the first step that holds
        return next((k for k in range(len(steps), 0, -1) if passed(steps[k - 1])), 0)
    odds = [1.0]
    for step in steps:
        odds.append(odds[-1] * math.exp(ability - step))
    return rng.choices(range(len(odds)), odds)[0]


def simulate(seed, persons, scales, missing=0.0, models="R"):
    """Rows of categories; -1 is a missing response."""
    rng = random.Random(seed)
    models = models.ljust(len(scales), models[-1])
    rows = []
    for _ in range(persons):
        ability = rng.gauss(0.3, 1.2)
        rows.append([-1 if rng.random() < missing else respond(rng, ability, steps, model)
                     for steps, model in zip(scales, models)])
    return rows


def person_label(n):
    weight = ("1", "2", "1.5", ".25", "0", "")[n % 17 if n % 17 < 6 else 0]
    anchor = ("-1.2", ".5")[n % 2] if n % 23 == 0 else ""
    return f"P{n:03} {'FMM'[n % 3]} {weight:>3} {anchor:>4}"


def item_labels(count):
    words = ("adding", "Borrowing", "carrying", "dividing", "equations", "fractions")
    return [f"I{i:02} {('1', '1', '2', '.5')[i % 4]:>3} {'.25' if i % 7 == 2 else '':>4} "
            + words[i * 5 % 6] for i in range(1, count + 1)]


def records(rows, codes, before="", between="", missing=" ", first=1, label=15):
    """A line for each row: label, responses; `codes` is a text or a list of codes."""
    codes = [*codes, missing * len(codes[0])]  # a missing response is the last one
    return "".join(person_label(n)[:label] + before + between.join(codes[c] for c in row) + "\n"
                   for n, row in enumerate(rows, first))


def control(count, *lines, labels=None, places=PLACES, end="DATA=data.txt"):
    labels = item_labels(count) if labels is None else labels
    return "\n".join([*places, f"NI={count}", *lines, end, "&END", *labels, "END LABELS", ""])


def plain(rows, codes, *lines, **how):
    return {"control.txt": control(len(rows[0]), f"CODES={codes}", *lines, **how),
            "data.txt": records(rows, codes)}


KINDS = {  # numbers of categories, models, persons, codes, further lines
    "dichotomous": (20 * [2], "R", 160, "01", ()),
    "scale3": (14 * [3], "R", 150, "012", ()),
    "scale5": (12 * [5], "R", 150, "12345", ("CSV=T",)),
    "partial": ([2, 3, 4, 5] * 3, "R", 180, "01234", ("GROUPS=0", "CSV=Y")),
    "groups": ([3] * 4 + [4] * 4 + [2] * 4, "R" * 4 + "S" * 4 + "F" * 4, 160, "0123",
               ("GROUPS=AAAABBBBCCCC", "MODELS=RRRRSSSSFFFF")),
    "success": (10 * [4], "S", 140, "0123", ("MODELS=S",)),
    "failure": (10 * [4], "F", 140, "0123", ("MODELS=F", "CSV=Y")),
    "own-steps": ([3, 4] * 5, "SF" * 5, 140, "0123", ("GROUPS=0", "MODELS=SFSFSFSFSF")),
}


def models_and_missing():
    for seed, (name, (counts, models, persons, codes, lines)) in enumerate(KINDS.items()):
        for suffix, missing in (("", 0), ("-missing", 0.2)):
            rows = simulate(2 * seed + (missing > 0), persons, items(*counts), missing, models)
            yield name + suffix, plain(rows, codes, *lines)


def patterns():
    """Extreme entries, categories that nobody used, responses that fall apart into subsets."""
    rows = simulate(101, 90, items(*12 * [3]), 0.1)
    for row in rows:
        row[0], row[11] = 2, 0  # extreme items; so are some persons, others have no response
    rows[3:6] = [[c] * 12 for c in (2, 0, -1)]
    rows[6:9] = [[2] * 5 + [-1] * 7, [-1] * 11 + [0], [-1] * 11 + [1]]
    yield "extreme", plain(rows, "012")

    rows = [[c if c != 2 else 1 for c in row] for row in simulate(102, 120, items(*10 * [5]))]
    yield "unused", plain(rows, "01234", "STKEEP=Y", "CSV=Y")
    yield "unused-dropped", plain(rows, "01234", "STKEEP=N")
    yield "unused-in-groups", plain(rows, "01234", "GROUPS=AAAAA00000", "MODELS=RRRRRRRSFF")

    rows = simulate(103, 120, items(*12 * [2]))
    yield "subsets", plain([[c if (i < 6) == (n % 2 > 0) else -1 for i, c in enumerate(row)]
                            for n, row in enumerate(rows)], "01")

    rng = random.Random(108)
    rows = []
    for _ in range(150):  # a contest in each row: one of two items wins
        first, second = rng.sample(range(12), 2)
        won = rng.random() < 1 / (1 + math.exp((second - first) / 4))
        rows.append([int(won) if i == first else int(not won) if i == second else -1
                     for i in range(12)])
    yield "pairs", plain(rows, "01", "PAIRED=Y")


def codings():
    wide = [f"{k:2}" for k in range(13)]
    rows = simulate(104, 120, items(*10 * [13]), 0.05)
    yield "wide", {"control.txt": control(10, "XWIDE=2", f'CODES="{"".join(wide)}"', "ITLEN=8"),
                   "data.txt": records(rows, wide)}

    rng = random.Random(105)
    key = "BADCABDCDACBBADC"
    rows = simulate(105, 130, items(*16 * [2]), 0.03)
    answers = [[-1 if c < 0 else "ABCD".index(right) if c else rng.randrange(4)
                for c, right in zip(row, key)] for row in rows]
    yield "choice", plain(answers, "ABCD", f"KEY1={key}")

    rows = simulate(106, 120, items(*11 * [4]), 0.05)
    yield "letters", plain(rows, "abcd", "NEWSCR=0123")
    yield "reversed", plain(rows, "0123", "NEWSCR=3210", "RESCORE=10010000001")


def layouts():
    codes = "0123"
    rows = simulate(106, 120, items(*11 * [4]), 0.05)
    quoted = [f'"{code}"' for code in codes]
    for name, value, mark, how in (("commas", '","', ",", {"missing": ""}),
                                   ("tabs", "T", "\t", {"missing": ""}),
                                   ("bars", "|", "|", {"missing": "-"}),
                                   ("quoted", "Y", ",", {"missing": "", "codes": quoted}),
                                   ("blanks", "B", "  ", {"missing": "x", "label": 4})):
        yield name, {"control.txt": control(11, f"CODES={codes}", f"DELIM={value}", "NAMLEN=15",
                                            places=["NAME1=1", "ITEM1=2"]),
                     "data.txt": records(rows, **{"codes": codes, **how}, before=mark,
                                         between=mark)}

    lines = records(rows, codes).splitlines()
    yield "two-lines", {
        "control.txt": control(11, f"CODES={codes}", "FORMAT=(15A1,/,2X,5A,T1,2A,/,4(A))"),
        "data.txt": "".join(f"{line[:15]}\n{line[15:22]}\n{line[22:26]}\n" for line in lines)}
    yield "two-files", {"control.txt": control(11, f"CODES={codes}", end="DATA=one.txt+two.txt"),
                        "one.txt": records(rows[:70], codes),
                        "two.txt": records(rows[70:], codes, first=71)}
    yield "data-in-control", {
        "control.txt": control(11, f"CODES={codes}", end="; no data file") + records(rows, codes)}


def labelled():
    """Labels in UTF-8, and labels of the bytes that boxes are drawn with; a character for a byte,
    so that the responses keep their column."""
    words = "zwölf Äpfel façade Ελλάδα 日本語の項目 été Ærø İ ñandú ß".split()
    letters = [word.encode("utf-8").decode("latin-1") for word in words]
    boxes = [f"{chr(176 + 5 * i)}\xb3 box \xc4\xbf" for i in range(10)]
    rows = simulate(107, 100, items(*10 * [3]), 0.05)
    for name, labels in (("utf8", letters), ("boxes", boxes)):
        lines = [line[:5] + labels[n % 10][:9].ljust(10) + line[15:]
                 for n, line in enumerate(records(rows, "012").splitlines(True))]
        yield name, {
            "control.txt": control(10, "CODES=012", f"TITLE={' '.join(labels)}",
                                   f"PERSON={labels[1]}", f"ITEM={labels[8]}", labels=labels),
            "data.txt": "".join(lines)}


def generated():
    """All of them can be run as they stand and have 10 items or more."""
    bases = itertools.chain(models_and_missing(), patterns(), codings(), layouts(), labelled())
    return {name: {file: text.encode("latin-1") for file, text in files.items()}
            for name, files in bases}


def examples(directory):
    """The Control File and the data of each example."""
    return {place.name: {file.name: file.read_bytes() for file in sorted(place.glob("*.txt"))}
            for place in sorted(directory.iterdir()) if (place / "control.txt").exists()}
