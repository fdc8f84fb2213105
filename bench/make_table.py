#!/usr/bin/python3
"""Writes a table of trouble codes as a spreadsheet program exports it: the same bytes for the same row count.

UTF-8, cells separated by ';', lines ended by CR LF, eight columns, rows of 60 to 140 bytes."""

import argparse
import random

HEADER = ["DTC", "Description", "Status", "Severity", "Warning lamp", "Enable condition", "Healing", "Advice"]
SHORTEST, LONGEST = 60, 140
BLOCK = 10_000

PARTS = ["Kühlmitteltemperatursensor", "Drosselklappe", "Fuel rail pressure sensor", "Lambdasonde Bank 1",
         "Camshaft position \"A\"", "Air flow meter", "Glühkerze Zylinder 3", "Turbo boost",
         "O2 sensor; heater", "Rußpartikelfilter", "Crankshaft sensor", "Öldruckschalter", "Gear box CAN",
         "Intake air temperature"]
FAULTS = ["circuit open", "short to ground", "signal > maximum", "signal < minimum", "Kurzschluss nach U+",
          "no signal", "range/performance", "Unterbrechung", "intermittent & noisy", "unplausibel"]
ITEMS = [
    ["confirmed", "pending", "permanent", "bestätigt", ""],
    ["1", "2", "3", "4"],
    ["MIL", "SVS", "off", "blinks"],
    ["U > 9 V", "n > 600 1/min", "T < -7 °C; t > 60 s", "always", "engine off", ""],
    ["3 trips", "40 cycles", "by \"Clear DTC\"", "10", "20"],
    ["check wiring", "Stecker prüfen", "replace", "flash ECU", "see guide; \"red\" page", "none", ""],
]


def quoted(text):
    """The text as a CSV cell, in quotes only where it needs them."""
    return '"' + text.replace('"', '""') + '"' if '"' in text or ";" in text else text


def codes(rng, count):
    """SAE codes, half of them with a failure type byte: P0123, U212387."""
    systems = rng.choices("PPPCBU", k=count)
    numbers = rng.choices(range(0x4000), k=count)
    failures = rng.choices([""] * 64 + [f"{kind:02X}" for kind in range(0x11, 0x51)], k=count)
    return (f"{system}{number:04X}{failure}" for system, number, failure in zip(systems, numbers, failures))


def rows(rng):
    """Rows without end, those of a wrong length left out."""
    descriptions = [quoted(f"{part}, {fault}") for part in PARTS for fault in FAULTS]
    items = [[quoted(text) for text in texts] for texts in ITEMS]
    while True:
        columns = [codes(rng, BLOCK)] + [rng.choices(cells, k=BLOCK) for cells in [descriptions, *items]]
        for cells in zip(*columns):
            row = (";".join(cells) + "\r\n").encode()
            if SHORTEST <= len(row) <= LONGEST:
                yield row


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("rows", type=int, help="data rows, the header not counted")
    parser.add_argument("output")
    options = parser.parse_args()
    source = rows(random.Random(2024))
    with open(options.output, "wb") as table:
        table.write((";".join(HEADER) + "\r\n").encode())
        table.writelines(next(source) for _ in range(options.rows))


if __name__ == "__main__":
    main()
