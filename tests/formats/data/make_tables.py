#!/usr/bin/env python3
"""Writes the tables of this directory: values and the results that are expected of them.

They are computed with Python's whole numbers, its decimal numbers and its calendar, none of which
the library knows. Run it without arguments; its output is the same every time.
"""

import calendar
import math
import pathlib
import random
import struct
from decimal import ROUND_HALF_EVEN, Decimal, localcontext

HERE = pathlib.Path(__file__).resolve().parent
LARGEST = 1.7976931348623157e308


def bits(value):
    return "0x%016Xu" % struct.unpack("<Q", struct.pack("<d", value))[0]


def fixed(value, decimals):
    """The decimal text of a number, exact but for one rounding, half to even."""
    if math.isnan(value):
        return "nan"
    if math.isinf(value):
        return "-inf" if value < 0 else "inf"
    with localcontext() as context:
        context.prec = 2000
        rounded = Decimal(value).quantize(Decimal(1).scaleb(-decimals), ROUND_HALF_EVEN)
    return format(rounded, "f")


def trimmed(value):
    text = fixed(value, 12)
    return text.rstrip("0").rstrip(".") if "." in text else text


def nudged(value, precision):
    """Rounded half away from zero, and one step farther from it."""
    if value == 0 or math.isnan(value):
        return 0.0
    if math.isinf(value):
        return math.nan
    whole = math.floor(abs(value))
    scale = 10.0**precision
    rounded = math.floor((abs(value) - whole) * scale + 0.5) / scale
    return math.copysign(math.nextafter(rounded, LARGEST) + whole, value)


def doubles(chance):
    values = [0.0, -0.0, 1.5, 2.0, 0.1 + 0.2, 1e-13, -1e-13, 100.0, 1e15, 0.125, -2.5, 2.675, 0.25]
    values += [5e-13, 1.5e-12, 0.5, -0.5, 0.05, 0.95, 0.995, 9.9999999999995, 999.9999999999999]
    values += [2.0**-12, 2.0**-13, 2.0**-12 - 2.0**-65, 2.0**-11 + 2.0**-64, 5e-324, 2.0**52 + 0.5]
    values += [2.0**53, 2.0**63, 2.0**64, 2.0**64 - 2048, -(2.0**64), 1e22, 1e300, LARGEST]
    values += [math.inf, -math.inf, math.nan, 1 / 3, -2 / 3, 4294967295.9999, 123456.789]
    values += [k / 8192 for k in (1, 3, 5, 8191, 24577)]  # ties at 13 decimals
    for _ in range(150):
        values.append(chance.choice((1, -1)) * chance.random() * 10.0 ** chance.randint(-6, 12))
    for _ in range(50):
        values.append(struct.unpack("<d", struct.pack("<Q", chance.getrandbits(64)))[0])
    for _ in range(60):  # as people write them
        values.append(round(chance.uniform(-1000, 1000), chance.randint(0, 6)))
    return [value for value in values if not (math.isnan(value) and math.copysign(1, value) < 0)]


def double_rows(chance):
    for value in doubles(chance):
        yield '{%s, 12, true, L"%s"}' % (bits(value), trimmed(value))
        for precision in sorted(chance.sample(range(1, 17), 2)):
            text = fixed(nudged(value, precision), precision)
            yield '{%s, %d, false, L"%s"}' % (bits(value), precision, text)


def clamped(value, lowest, highest):
    return max(lowest, min(highest, value))


def int16(value):
    return (value + 0x8000) % 0x10000 - 0x8000


def integer_rows(chance):
    edges = [0, 1, 9, 10, 32767, 32768, 65535, 65536, 65537, 2**31 - 1, 2**31, 2**31 + 1]
    edges += [2**32 - 1, 2**32, 2**32 + 1, 2**63 - 1, 2**63, 2**64 - 1, 2**64, 2**64 + 1, 10**30]
    edges += [4294967299, 42949672959, 42949672960, 42949672965]  # one digit behind 2^32
    edges += [chance.getrandbits(chance.randint(1, 70)) for _ in range(60)]
    for edge in edges:
        for value in (edge, -edge):
            signed = clamped(value, -(2**31), 2**31 - 1)
            unsigned = value % 2**32 if edge < 2**32 else 2**32 - 1
            range_error = "true" if signed != value else "false"
            sign = chance.choice(("", "+")) if value >= 0 else "-"
            space = chance.choice(("", " ", "\\t\\n\\v\\f\\r "))
            rest = chance.choice(("", "x", " 7", ".5", "-", "e3", ",000"))
            zeros = "0" * chance.choice((0, 0, 1, 12))
            text = space + sign + zeros + str(edge) + rest
            lowest = "-2147483647 - 1"
            yield '{L"%s", %s, %du, %d, %s}' % (
                text, lowest if signed == -(2**31) else signed, unsigned, int16(signed),
                range_error)


def increment_rows(chance):
    for _ in range(200):
        zeros = chance.choice((0, 0, 1, 3))
        length = chance.choice((0, 1, 2, 5, 20, 100, 254, 255))
        digits = str(chance.randint(10 ** (length - 1), 10**length - 1)) if length else ""
        if chance.random() < 0.3:
            digits = "9" * length
        increment = chance.choice((1, -1, 5, -5, 99, 1000, 2147483647, -2147483647))
        before = chance.choice(("", "P", "P-", "7P", "P.", "\\u0663"))
        text = before + "0" * zeros + digits
        total = int(digits or "0") + increment
        if total < 0:
            expected = "nullptr"
        else:
            kept = zeros - 1 if zeros and len(str(total)) > len(digits) else zeros
            expected = 'L"%s"' % (before + "0" * kept + str(total))
        yield '{L"%s", %d, %s}' % (text, increment, expected)


def time_rows(chance):
    fields = [(1901, 12, 13, 20, 45, 52), (2038, 1, 19, 3, 14, 7), (1970, 1, 1, 0, 0, 0)]
    fields += [(1969, 12, 31, 23, 59, 58), (2000, 2, 29, 12, 0, 0), (2023, 2, 29, 0, 0, 0)]
    fields += [(2024, 1, 32, 0, 0, 0), (2024, 1, 0, 0, 0, 0), (2024, 1, 1, -1, 60, 61)]
    for _ in range(100):
        fields.append((chance.randint(1902, 2037), chance.randint(1, 12), chance.randint(1, 31),
                       chance.randint(0, 23), chance.randint(0, 59), chance.randint(0, 59)))
    for field in fields:
        year, month, day, hour, minute, second = field
        days = calendar.timegm((year, month, 1, 0, 0, 0)) // 86400 + day - 1
        seconds = ((days * 24 + hour) * 60 + minute) * 60 + second
        text = "-2147483647 - 1" if seconds == -(2**31) else seconds
        yield "{%s, %s}" % (", ".join(map(str, field)), text)


def write(name, rows):
    chance = random.Random(name)
    with open(HERE / name, "w", encoding="ascii") as out:
        out.write("// Made by make_tables.py.\n// clang-format off\n")
        for row in rows(chance):
            out.write(row + ",\n")


write("double_text.inc", double_rows)
write("integer_text.inc", integer_rows)
write("increments.inc", increment_rows)
write("utc_times.inc", time_rows)
