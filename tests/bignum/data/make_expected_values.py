#!/usr/bin/env python3
"""Prints expected_values.h: results of bignum_t<255> as Python's integers give them.

    python3 tests/bignum/data/make_expected_values.py > tests/bignum/data/expected_values.h
"""
import random

LIMIT = 10 ** 255


def add(a, b):
    """Signs that differ make a difference of magnitudes. None: a case for other tests."""
    if (a < 0) != (b < 0):
        return abs(a) - abs(b)
    return a + b if max(abs(a), abs(b)) < LIMIT // 10 else None


def subtract(a, b):
    return abs(a) - abs(b)


def multiply(a, b):
    product = abs(a * b)
    return product if product < LIMIT else "NaN"


def divide(a, b):
    return abs(a) // abs(b) if b else "NaN"


def operands():
    rng = random.Random(8)
    edges = [0, 1, 10, 99999999, 2 ** 64, 10 ** 254 - 1, 10 ** 254, LIMIT - 1]
    yield from ((a, b) for a in edges for b in edges)
    for digits in (1, 8, 9, 17, 60, 127, 128, 129, 255):
        for other in (1, 8, digits // 2 + 1, digits):
            a = rng.randrange(10 ** (digits - 1), 10 ** digits)
            b = rng.randrange(10 ** (other - 1), 10 ** other)
            # With a sign, 255 digits are more than a text may have.
            yield (a, b) if digits == 255 else (rng.choice((a, -a)), rng.choice((b, -b)))
            # A quotient limb that is estimated too large or too small.
            yield a // b * b, b
            yield a // b * b - 1 if a >= b else a, b


def main():
    print("// Made by make_expected_values.py; not to be changed by hand.")
    print("// clang-format off")
    for name, function in (("Sum", add), ("Difference", subtract), ("Product", multiply),
                           ("Quotient", divide)):
        print("ExpectedValue const k%ss[] = {" % name)
        for a, b in operands():
            result = function(a, b)
            if result is not None:
                print('    {"%s", "%s", "%s"},' % (a, b, result))
        print("};")


if __name__ == "__main__":
    main()
