"""Writes cases for the decimal library with the results that Python's decimal module expects.

Usage: oracle.py FILE

One case a line: function | arguments | expected result, separated by "|". Numbers are integers at
the scale of their info or "nan", doubles are the hexadecimal digits of their bits. Results are
"status value", with further outputs behind. The seed is fixed: the file is always the same.
"""
import decimal
import math
import random
import re
import struct
import sys
from decimal import Decimal

MODES = [decimal.ROUND_UP, decimal.ROUND_DOWN, decimal.ROUND_CEILING, decimal.ROUND_FLOOR,
         decimal.ROUND_HALF_UP, decimal.ROUND_HALF_DOWN, decimal.ROUND_HALF_EVEN]
HALF_EVEN = 6
MAX_DIGITS = 38
LIMIT = 10**MAX_DIGITS - 1
DONE, NAN, DIVISION_BY_ZERO, OVERFLOW, BAD_ARGUMENT = 0, 1, 2, 3, -1
NULL_INT = -(2**31)
NULL_DOUBLE = "fff0000000000000"

rnd = random.Random(20170503)
decimal.setcontext(decimal.Context(prec=1000, traps=[decimal.InvalidOperation, decimal.DivisionByZero]))


# ---- What is expected ----

def value_of(integer, info):
    return Decimal(integer).scaleb(-info[0])


def rounded(value, scale, mode):
    """The integer of `value` at `scale`."""
    return int(value.scaleb(scale).to_integral_value(rounding=MODES[mode]))


def result(integer):
    return f"{DONE} {integer}" if abs(integer) <= LIMIT else f"{OVERFLOW} nan"


def sign(number):
    return (number > 0) - (number < 0)


def compare(left, right):
    """Order with NaN, None here, below all."""
    if left is None or right is None:
        return sign((left is not None) - (right is not None))
    return sign(left - right)


def arithmetic(name, left, right, scale, mode):
    """The result line of an operation on exact values; None is NaN."""
    if left is None or right is None:
        return f"{NAN} nan"
    if name == "Div" and right == 0:
        return f"{DIVISION_BY_ZERO} nan"
    value = {"Add": lambda: left + right, "Sub": lambda: left - right,
             "Mul": lambda: left * right, "Div": lambda: left / right}[name]()
    return result(rounded(value, scale, mode))


def plain_text(integer, scale):
    digits = str(abs(integer)).rjust(scale + 1, "0")
    whole, fraction = digits[:len(digits) - scale], digits[len(digits) - scale:]
    return ("-" if integer < 0 else "") + whole + ("." + fraction if scale else "")


NUMBER = re.compile(r"[ \t]*([+-]?(?:\d+\.?\d*|\.\d+))(?:[eE]([+-]?\d+))?")


def parsed(text, info):
    """Status, value and the number of bytes left."""
    match = NUMBER.match(text)
    if not match:
        blank = not text.strip(" \t")
        return f"{DONE} nan 0" if blank else f"{BAD_ARGUMENT} nan {len(text)}"
    mantissa, exponent = match[1], int(match[2] or 0)
    value = Decimal(f"{mantissa}e{max(-10**9, min(10**9, exponent))}")
    if value == 0:
        outcome = f"{DONE} 0"
    elif value.adjusted() > 2 * MAX_DIGITS:
        outcome = f"{OVERFLOW} nan"
    elif value.adjusted() < -2 * MAX_DIGITS:  # as any other number far below half a unit
        outcome = result(rounded(Decimal(1).copy_sign(value).scaleb(-2 * MAX_DIGITS), *info))
    else:
        with decimal.localcontext() as context:
            context.prec = len(text) + 2 * MAX_DIGITS  # no digit is lost before the rounding
            outcome = result(rounded(value, *info))
    return f"{outcome} {len(text) - match.end()}"


# ---- Random arguments ----

def any_scale():
    return rnd.choice([0, 0, 1, 2, 2, 4, 6, 18, 19, 37, 38, rnd.randint(0, 38)])


def any_info():
    return any_scale(), rnd.randint(0, 6)


def clamp(integer):
    return max(-LIMIT, min(LIMIT, integer))


def any_integer():
    """Numbers of every length, and the neighbours of the borders that an implementation may have."""
    near = rnd.randint(-1, 1)
    magnitude = rnd.choice([
        lambda: rnd.randrange(10**rnd.randint(0, MAX_DIGITS)),
        lambda: rnd.randrange(10**rnd.randint(0, 9)),
        lambda: 10**rnd.randint(0, MAX_DIGITS) + near,
        lambda: 5 * 10**rnd.randint(0, MAX_DIGITS - 1) + near,
        lambda: 2**rnd.randint(0, 126) + near,
        lambda: rnd.randint(0, 3),
        lambda: LIMIT - rnd.randint(0, 2),
    ])()
    return clamp(rnd.choice([-1, 1]) * magnitude)


def any_number():
    return None if rnd.random() < 0.02 else any_integer()


def tie(digits, at_most=LIMIT):
    """A number of a multiple of 10^digits and a half, or just beside it."""
    if digits == 0:
        return any_integer()
    most = max(at_most // 10**digits - 1, 0)
    integer = rnd.randint(0, rnd.choice([min(most, 30), most])) * 10**digits + 5 * 10**(digits - 1)
    return clamp(rnd.choice([-1, 1]) * (integer + rnd.choice([-1, 0, 0, 1])))


def any_double():
    def bits(pattern):
        return struct.unpack("<d", struct.pack("<Q", pattern))[0]

    return rnd.choice([-1, 1]) * rnd.choice([
        lambda: bits(rnd.getrandbits(63)),
        lambda: bits(rnd.getrandbits(52)),  # subnormal
        lambda: rnd.randint(0, 10**rnd.randint(1, 17)) / 10**rnd.randint(0, 8),
        lambda: rnd.randint(0, 10**6) + 0.5,
        lambda: float(2**rnd.randint(0, 130) + rnd.randint(-2, 2)),
        lambda: float(10**rnd.randint(0, 40)) * rnd.randint(1, 9),
        lambda: 10.0**rnd.randint(-45, 0) * rnd.randint(1, 99),
        lambda: math.ldexp(rnd.randint(1, 2**53), rnd.randint(-180, 80)),
        lambda: rnd.choice([math.inf, math.nan, 0.0, sys.float_info.max, 5e-324, 1e38, 9.999999999999999e37]),
    ])()


def any_text(info):
    def digits(longest):
        return "".join(rnd.choice("0123456789" if rnd.random() < 0.7 else "059") for _ in range(rnd.randint(0, longest)))

    number = rnd.choice([
        lambda: digits(5) + rnd.choice(["", ".", "." + digits(5)]),
        lambda: digits(45) + rnd.choice(["", ".", "." + digits(60)]),
        lambda: plain_text(abs(tie(rnd.randint(1, 20), 10**30)), rnd.randint(0, 38)),
        lambda: "0" * rnd.randint(0, 80) + "." + "0" * rnd.randint(0, 80) + digits(5) + "0" * rnd.randint(0, 50),
        lambda: plain_text(LIMIT + rnd.randint(-1, 1), info[0]) + rnd.choice(["", ".4", "5", "49", "9"]),
    ])()
    exponent = rnd.choice(["", "", f"e{rnd.randint(-90, 90)}", f"E{rnd.randint(-9, 9):+}", "e", "e+", "E-x"])
    return (rnd.choice(["", "", "", " ", " \t "]) + rnd.choice(["", "", "", "", "-", "-", "-", "+", "+", "- "]) + number + exponent +
            rnd.choice(["", "", "", " ", "x", ".", ".5", "-", "e5"]))


def edited(text):
    """`text` with one byte removed, doubled or replaced."""
    at = rnd.randint(0, len(text))
    return text[:at] + rnd.choice(["", text[at:at + 1] * 2, rnd.choice("+-.eE \t0x/:")]) + text[at + 1:]


# ---- Cases ----

def shown(number):
    return "nan" if number is None else number


def values(*pairs):
    return [None if integer is None else value_of(integer, info) for integer, info in pairs]


def compare_cases():
    for _ in range(3000):
        a, b = any_number(), any_number()
        if rnd.random() < 0.2:
            b = a
        yield "Cmp", a, b, compare(a, b)


def rescaling_compare_cases():
    for _ in range(8000):
        info_a, info_b = any_info(), any_info()
        a, b = any_number(), any_number()
        if a is not None and rnd.random() < 0.5:  # equal or nearly so
            b = clamp(rounded(value_of(a, info_a), info_b[0], 1) + rnd.randint(-1, 1))
        yield "RescalingCmp", *info_a, *info_b, a, b, compare(*values((a, info_a), (b, info_b)))


def one_scale_cases():
    whole = (0, HALF_EVEN)
    for name in ("Add", "Sub", "Mul", "Div"):
        for _ in range(4000):
            a, b = any_number(), any_number()
            if rnd.random() < 0.4:
                b = rnd.randint(-1000, 1000)
            if name == "Div" and rnd.random() < 0.3:  # halves
                b = 2 * rnd.randint(1, 10**rnd.randint(1, 18))
                a = clamp(b // 2 * rnd.randrange(-99, 99, 2) + rnd.randint(-1, 1))
            yield name, a, b, arithmetic(name, *values((a, whole), (b, whole)), *whole)


def tie_operands(name, info_a, info_b, info_out):
    """Operands whose exact result tends to lie at half a unit of the outcome."""
    if name in ("Add", "Sub"):
        digits = max(info_a[0] - info_out[0], 0)
        return tie(digits), clamp(10**max(info_b[0] - info_out[0], 0) * rnd.randint(-9, 9))
    if name == "Mul":
        digits = max(info_a[0] + info_b[0] - info_out[0], 0)
        factor = 2 ** rnd.randint(0, 5)
        return clamp(tie(min(digits, 38)) // factor), factor
    b = 2 * 10**rnd.randint(0, 18)
    return clamp(b // 2 * rnd.randrange(-99, 99, 2)), b


def rescaling_cases():
    for name in ("Add", "Sub", "Mul", "Div"):
        for _ in range(8000):
            info_a, info_b, info_out = any_info(), any_info(), any_info()
            a, b = any_number(), any_number()
            if rnd.random() < 0.3:
                a, b = tie_operands(name, info_a, info_b, info_out)
            expected = arithmetic(name, *values((a, info_a), (b, info_b)), *info_out)
            yield "Rescaling" + name, *info_a, *info_b, *info_out, a, b, expected


def rescale_cases():
    for _ in range(8000):
        old, new = any_info(), any_info()
        integer = tie(max(old[0] - new[0], 0)) if rnd.random() < 0.5 else any_number()
        expected = f"{NAN} nan" if integer is None else result(rounded(value_of(integer, old), *new))
        yield "Rescale", integer, *old, *new, expected


def whole_cases():
    for name, fixed_mode in (("Round", None), ("Floor", 3), ("Ceil", 2)):
        for _ in range(4000):
            info = any_info()
            integer = tie(info[0]) if rnd.random() < 0.5 else any_number()
            mode = info[1] if fixed_mode is None else fixed_mode
            expected = (f"{NAN} nan" if integer is None else
                        result(rounded(value_of(integer, info), 0, mode) * 10**info[0]))
            yield name, integer, *info, expected


def double_cases():
    for _ in range(10000):
        info, x = any_info(), any_double()
        if math.isnan(x) or x == -math.inf:
            expected = f"{NAN} nan"
        elif x == math.inf:
            expected = f"{OVERFLOW} nan"
        else:
            expected = parsed(repr(x), info).rsplit(" ", 1)[0]
        yield "Dbl2Num", *info, bits_of(x), expected


def bits_of(x):
    return struct.pack(">d", x).hex()


def number_to_double_cases():
    for _ in range(10000):
        info, integer = any_info(), any_number()
        if rnd.random() < 0.4:  # halfway between two doubles
            integer = clamp((2**53 + 2 * rnd.getrandbits(51) + 1) * 2**rnd.randint(0, 60) + rnd.choice([-1, 0, 0, 1]))
        expected = f"{NAN} {NULL_DOUBLE}" if integer is None else f"{DONE} {bits_of(integer / 10**info[0])}"
        yield "Num2Dbl", integer, *info, expected


def int_cases():
    for _ in range(2000):
        info = any_info()
        x = rnd.choice([rnd.randint(-9, 9), rnd.randint(NULL_INT, 2**31 - 1), NULL_INT, NULL_INT + 1, 2**31 - 1])
        yield "Int2Num", *info, x, f"{NAN} nan" if x == NULL_INT else result(x * 10**info[0])
    for _ in range(6000):
        info, integer = any_info(), any_number()
        if rnd.random() < 0.4:
            integer = tie(info[0])
        elif rnd.random() < 0.5:  # around the borders of int
            border = rnd.choice([2**31 - 1, NULL_INT, 0]) * 10**info[0]
            integer = clamp(border + rnd.choice([-1, 1]) * rnd.choice([0, 1, 5 * 10**info[0] // 10, 10**info[0]]))
        whole = None if integer is None else rounded(value_of(integer, info), 0, info[1])
        if whole is None:
            expected = f"{NAN} {NULL_INT}"
        else:
            expected = f"{DONE} {whole}" if abs(whole) < 2**31 else f"{OVERFLOW} {NULL_INT}"
        yield "Num2Int", *info, integer, expected


def text_cases():
    for _ in range(20000):
        info = any_info()
        text = any_text(info)
        if rnd.random() < 0.2:
            text = edited(text)
        yield "Str2Num", text, *info, parsed(text, info)
    for length in (1000, 20000):  # one digit decides, far behind the scale
        for mode in range(7):
            for text in ("-2.5" + "0" * length, "2.5" + "0" * length + "1", "0." + "0" * length + "1",
                         "0" * length + "7", "1" + "0" * length + f"e-{length}", "0." + "9" * length,
                         "." + "0" * length + f"25e{length + 1}"):
                yield "Str2Num", text, 0, mode, parsed(text, (0, mode))


def to_text_cases():
    for _ in range(10000):
        info, integer = any_info(), any_number()
        scale, mode = rnd.choice([-1, any_scale()]), rnd.choice([-1, rnd.randint(0, 6)])
        wanted = info[0] if scale == -1 else scale, info[1] if mode == -1 else mode
        if rnd.random() < 0.3:
            integer = tie(max(info[0] - wanted[0], 0))
        shown_at = None if integer is None else rounded(value_of(integer, info), *wanted)
        text = "" if shown_at is None or abs(shown_at) > LIMIT else plain_text(shown_at, wanted[0])
        status = NAN if shown_at is None else DONE if text else OVERFLOW
        size = rnd.choice([4096, len(text) + 1, 42])
        yield "Num2Str", integer, *info, scale, mode, size, f"{status} {text}"
        if text:
            yield "Num2Str", integer, *info, scale, mode, rnd.randint(1, len(text)), f"{BAD_ARGUMENT} "


FAMILIES = (compare_cases, rescaling_compare_cases, one_scale_cases, rescaling_cases, rescale_cases, whole_cases,
            double_cases, number_to_double_cases, int_cases, text_cases, to_text_cases)

with open(sys.argv[1], "w", encoding="ascii") as file:
    for family in FAMILIES:
        for case in family():
            print(*map(shown, case), sep="|", file=file)
