"""Helpers shared by the title lists: most standard titles come in families that differ only by
the ending (circuit, range, low, high), the bank or the cylinder, so a family is written once."""

TITLES = {}

CIRCUIT = ["Circuit", "Circuit Range/Performance", "Circuit Low", "Circuit High", "Circuit Intermittent"]
CIRCUIT_ERRATIC = CIRCUIT[:4] + ["Circuit Intermittent/Erratic"]
SPEED = ["Circuit", "Circuit Range/Performance", "Circuit No Signal", "Circuit Intermittent"]
CONTROL = ["Control Circuit/Open", "Control Circuit Low", "Control Circuit High"]
CONTROL_RANGE = ["Control Circuit/Open", "Control Circuit Range/Performance", "Control Circuit Low",
                 "Control Circuit High"]
SOLENOID = ["", "Performance or Stuck Off", "Stuck On", "Electrical", "Intermittent"]
LETTERS = "ABCDEFGHIJKL"


def put(number, title):
    if number in TITLES:
        raise ValueError(f"P{number:04d} written twice")
    TITLES[number] = " ".join(title.split())


def run(start, titles):
    """Consecutive codes from start, one title each; None leaves a number unassigned."""
    for offset, title in enumerate(titles):
        if title is not None:
            put(start + offset, title)


def family(start, stem, endings, tail=""):
    """stem + each ending (+ tail), on consecutive codes."""
    run(start, [f"{stem} {ending} {tail}" for ending in endings])
