#!/usr/bin/env python3
"""Reference values of the distribution functions, from mpmath, with 25 digits.

    python3 distributions.py > distributions.csv        (mpmath 1.4.1; about twenty minutes)
    python3 distributions.py IdfF CdfBin                (the rows of these functions only)

Arguments are doubles, written so that they read back exactly. mpmath's own functions serve while
the parameters are moderate. For large ones the tail is the density times an integral (gamma and beta
distribution) or a sum of terms (counts), both at 50 digits. Quantiles are solved for at 45 digits.
"""

import math
import platform
import random
import sys

import mpmath
from mpmath import mp, mpf

mp.dps = 50
SMALLEST = mpf(sys.float_info.min)
LARGEST = mpf(sys.float_info.max)


def integral(log_ratio, scale):
    """Integral over s > 0 of exp(log_ratio(s)), which falls from 1 on `scale`."""
    pieces = [mpf(0), 1, 3, 8, 18, 40, 90, 200]
    return mpmath.quad(lambda s: mpmath.exp(log_ratio(s)), [scale * piece for piece in pieces])


def gamma_tails(a, x):
    """Lower and upper tail, and the density of the logarithm, of a gamma variable."""
    density = mpmath.exp(a * mpmath.log(x) - x - mpmath.loggamma(a))
    if a < 3000:
        digits = mp.dps
        with mpmath.workdps(digits + 20 + int(abs(mpmath.log10(a)))):
            lower = mpmath.gammainc(a, 0, x, regularized=True)
            upper = mpmath.gammainc(a, x, mpmath.inf, regularized=True)
        return lower, upper, density
    sign = 1 if x > a else -1
    scale = 1 / max(abs(x - a), mpmath.sqrt(a))
    tail = density * integral(lambda s: a * sign * s - x * mpmath.expm1(sign * s), scale)
    return (1 - tail, tail, density) if sign > 0 else (tail, 1 - tail, density)


def beta_tails(a, b, x, y):
    """As gamma_tails, of a beta variable at x = 1 - y and its log odds."""
    if min(a, b) < 200 and x > y:
        upper, lower, density = beta_tails(b, a, y, x)
        return lower, upper, density
    with mpmath.workdps(mp.dps + (350 if min(a, b) < 200 else 0)):
        y = 1 - x if x < y else y
        log_beta = mpmath.loggamma(a) + mpmath.loggamma(b) - mpmath.loggamma(a + b)
        density = mpmath.exp(a * mpmath.log(x) + b * mpmath.log(y) - log_beta)
    if min(a, b) < 200:
        if b * x > a * y and density < mpf(10) ** -400:
            return mpf(1), mpf(0), density  # as below
        with mpmath.workdps(mp.dps + 350):
            lower = density * beta_series(a, b, x)
            upper = 1 - lower
        if upper < mpf(10) ** -330:
            upper = mpf(0)  # too few digits left: no row asks for it, the solver turns back
        return lower, upper, density
    mean = a / (a + b)
    sign = 1 if x > mean else -1
    scale = 1 / max(abs(b * x - a * y), mpmath.sqrt((a + b) * x * y))

    def log_ratio(s):
        return a * sign * s - (a + b) * mpmath.log1p(x * mpmath.expm1(sign * s))

    tail = density * integral(log_ratio, scale)
    return (1 - tail, tail, density) if sign > 0 else (tail, 1 - tail, density)


def beta_series(a, b, x):
    """I_x(a, b) over x^a y^b / B(a, b), all terms positive; about (a + b) x of them."""
    total = term = 1 / a
    k = 0
    while term > total * mpf(10) ** -(mp.dps + 3):
        term *= (a + b + k) * x / (a + 1 + k)
        total += term
        k += 1
    return total


def quantile(p, start, tails):
    """Root in t of the smaller tail's logarithm, by Newton's iteration with halved steps."""
    lower = p <= 0.5
    target = mpmath.log(mpf(p)) if lower else mpmath.log(1 - mpf(p))
    t, step = start, mpf(4000)
    for _ in range(400):
        if abs(t) > 4000:
            return None
        value = tails(t)
        tail = value[0] if lower else value[1]
        if tail < mpf(10) ** -340:  # no p is as small
            step /= 2
            t -= step
            continue
        step = (target - mpmath.log(tail)) * tail / value[2] * (1 if lower else -1)
        if abs(step) > 3000:
            return None
        t += step
        if abs(step) < mpf(10) ** -20 and abs(step) < mpf(10) ** -20 * max(1, abs(t)):
            return t
    raise ValueError("no convergence")


def beta_log_odds(p, a, b):
    def tails(t):
        return beta_tails(a, b, 1 / (1 + mpmath.exp(-t)), 1 / (1 + mpmath.exp(t)))

    return quantile(p, mpmath.log(a / b), tails)


def cdf_norm(x, mean, sd):
    return mpmath.erfc(-(mpf(x) - mpf(mean)) / mpf(sd) / mpmath.sqrt(2)) / 2


def idf_norm(p):
    lower = p <= 0.5
    small = mpf(p) if lower else 1 - mpf(p)
    if small > 0.25:
        z = mpmath.sqrt(2) * mpmath.erfinv(1 - 2 * small)
    else:
        log_small = mpmath.log(small)
        z = mpmath.findroot(
            lambda v: mpmath.log(mpmath.erfc(v / mpmath.sqrt(2)) / 2) - log_small,
            mpmath.sqrt(-2 * log_small) * mpf("0.9"),
        )
    return -z if lower else z


def cdf_chi(x, df):
    return gamma_tails(mpf(df) / 2, mpf(x) / 2)[0]


def sf_chi(x, df):
    return gamma_tails(mpf(df) / 2, mpf(x) / 2)[1]


def idf_chi(p, df):
    a = mpf(df) / 2
    t = quantile(p, mpmath.log(a), lambda v: gamma_tails(a, mpmath.exp(v)))
    return None if t is None else 2 * mpmath.exp(t)


def sf_f(x, df1, df2):
    odds = mpf(df1) * mpf(x)
    return beta_tails(mpf(df1) / 2, mpf(df2) / 2, odds / (odds + df2), df2 / (odds + df2))[1]


def idf_f(p, df1, df2):
    t = beta_log_odds(p, mpf(df1) / 2, mpf(df2) / 2)
    return None if t is None else mpf(df2) / mpf(df1) * mpmath.exp(t)


def idf_beta(p, a, b):
    t = beta_log_odds(p, mpf(a), mpf(b))
    return None if t is None else 1 / (1 + mpmath.exp(-t))


def log_binomial(n, k):
    return mpmath.loggamma(n + 1) - mpmath.loggamma(k + 1) - mpmath.loggamma(n - k + 1)


def tail_sum(first, ratio):
    total = term = first
    while term > total * mpf(10) ** -32:
        term *= ratio()
        total += term
    return total


def cdf_bin(x, n, p):
    k, n, p = mpmath.floor(x), mpf(n), mpf(p)
    state = [k]

    def down():
        state[0] -= 1
        return (state[0] + 1) / (n - state[0]) * (1 - p) / p

    def up():
        state[0] += 1
        return (n - state[0] + 1) / state[0] * p / (1 - p)

    def term(j):
        return mpmath.exp(log_binomial(n, j) + j * mpmath.log(p) + (n - j) * mpmath.log(1 - p))

    if k < n * p:
        return tail_sum(term(k), down)
    state[0] = k + 1
    return 1 - tail_sum(term(k + 1), up)


def cdf_hyper(x, n, k, total):
    j, n, k, total = mpmath.floor(x), mpf(n), mpf(k), mpf(total)
    state = [j]

    def down():
        i = state[0]
        state[0] -= 1
        return i * (total - k - n + i) / ((k - i + 1) * (n - i + 1))

    def up():
        i = state[0]
        state[0] += 1
        return (k - i) * (n - i) / ((i + 1) * (total - k - n + i + 1))

    def term(i):
        return mpmath.exp(
            log_binomial(k, i) + log_binomial(total - k, n - i) - log_binomial(total, n)
        )

    if j < n * k / total:
        return tail_sum(term(j), down)
    state[0] = j + 1
    return 1 - tail_sum(term(j + 1), up)


def log_gamma(x):
    return mpmath.loggamma(mpf(x))


def around(center, spread, steps):
    """Places at so many spreads from the center, above 0."""
    return [place for place in (center + step * spread for step in steps) if place > 0]


def rows():
    probabilities = [5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-3, 0.025, 0.3, 0.5 - 2**-54, 0.5,
                     0.5 + 2**-53, 0.7, 0.95, 0.975, 1 - 1e-6, 1 - 1e-12, 1 - 2**-53]
    for x in [-37.5, -30, -12.3, -5, -1.96, -1e-3, -1e-300, 0, 1e-17, 0.5, 1.96, 5, 8.2, 9, 40]:
        yield "CdfStdNorm", cdf_norm, (x, 0, 1), (x,)
        yield "SfStdNorm", cdf_norm, (-x, 0, 1), (x,)
    for args in [(3.0, 1.0, 0.5), (1e20, 1e20 + 3e5, 1e4), (-1e308, 1e308, 1e307),
                 (0.1 + 0.2, 0.3, 1e-17), (1e-300, 2e-300, 1e-301), (1.0, 1 + 2**-45, 2**-50)]:
        yield "CdfNorm", cdf_norm, args, args
    for p in probabilities + [2**-1022, 1e-5, 0.2, 0.25, 0.4999, 0.5 + 1e-9, 0.6, 0.999, 1 - 1e-9]:
        yield "IdfStdNorm", idf_norm, (p,), (p,)

    dfs = [1e-300, 1e-10, 1e-3, 0.5, 1.0, 2.0, 3.0, 7.5, 39.9, 40.0, 41.0, 300.0, 1e4, 1e6, 1e10, 1e15, 1e300]
    for df in dfs:
        sd = (2 * df) ** 0.5
        places = around(df, sd, [-30, -6, -2, -0.3, 0, 0.3, 2, 6, 30])
        if df < 1e3:
            places += [1e-300, 1e-10, 1e-3, 0.5, 1.1, 2.2, 30.0, 700.0, 1400.0]
        if df in (41.0, 300.0):  # about the ends of the uniform expansion
            places += [0.3 * df, 0.305 * df, 2.35 * df, 2.36 * df]
        for x in places:
            if x == x and x < 1e301:
                yield "CdfChi", cdf_chi, (x, df), (x, df)
                yield "SfChi", sf_chi, (x, df), (x, df)
        for p in probabilities + [1 - 1e-8]:
            if df > 1e-9 or p > 0.5:
                yield "IdfChi", idf_chi, (p, df), (p, df)

    shapes = [(1e-10, 5.0), (1e-3, 0.02), (0.5, 0.5), (0.5, 100.5), (1.0, 1.0), (1.0, 30.0), (2.5, 1e4),
              (3.0, 1e8), (7.0, 1e12), (19.5, 40.0), (19.5, 3e5), (20.0, 20.0), (25.0, 1e4),
              (25.0, 1e12), (300.5, 700.5), (1e4, 1e6), (1e9, 1e9), (1e10, 30.0), (1e15, 1e15), (1e300, 1e300)]
    some = [1e-300, 1e-10, 0.025, 0.5, 0.7, 0.975, 1 - 1e-6, 1 - 1e-12]
    for a, b in shapes:
        for first, second in [(a, b), (b, a)]:
            for p in some:
                yield "IdfBeta", idf_beta, (p, first, second), (p, first, second)
                yield "IdfF", idf_f, (p, 2 * first, 2 * second), (p, 2 * first, 2 * second)
            if a == b:
                break

    for a, b in [(1e-3, 0.02), (0.5, 0.5), (0.5, 100.5), (1.0, 30.0), (2.5, 1e4), (19.5, 40.0), (19.5, 3e5), (25.0, 1e4)]:
        for x in (0.9, 1.0, 4.0, 1e9):
            yield "SfF", sf_f, (x, 2 * a, 2 * b), (x, 2 * a, 2 * b)

    for n, p in [(1, 0.3), (10, 0.5), (25, 0.5), (30, 1e-10), (30, 1 - 2**-53), (1000, 1 / 3), (10**6, 0.01),
                 (2**31, 0.5), (2**31, 1e-9), (2**31, 1 - 2**-33), (2**33 + 1, 0.999), (10**15, 1e-13),
                 (2**53, 1e-12), (10**9, 2**-60), (3 * 10**6, 1e-5)]:
        mean, sd = n * p, (n * p * (1 - p)) ** 0.5
        for x in [0.0, 0.5, n - 1.0] + [mean + z * sd for z in (-35, -8, -3, -1, 0, 1, 3, 8)]:
            if 0 <= x < n:
                yield "CdfBin", cdf_bin, (x, n, p), (x, float(n), p)

    for n, k, total in [(1, 1, 2), (5, 5, 10), (10, 20, 50), (30, 30, 31), (100, 5, 1000), (500, 700, 1000),
                        (10**4, 10**5, 10**6), (10**3, 10**9, 2**32), (10**6, 10**6, 10**9),
                        (10**9, 3 * 10**9, 10**10), (4 * 10**11, 10**12, 4 * 10**12), (10**7, 2**52, 2**53)]:
        mean = n * k / total
        sd = (mean * (1 - k / total) * (total - n) / (total - 1)) ** 0.5
        steps = (-30, -8, -3, -1, 0, 1, 3) if sd < 2e5 else (-30, -12)
        for x in [max(0.0, n + k - total), min(n, k) - 1.0] * (sd < 1e3) + [mean + z * sd for z in steps]:
            if max(0, n + k - total) <= x < min(n, k):
                yield "CDFHyper", cdf_hyper, (x, n, k, total), (x, float(n), float(k), float(total))

    for x in [5e-324, 1e-300, 1e-10, 0.3, 0.5, 1 - 1e-3, 1 - 2**-53, 1 + 2**-52, 1 + 1e-8, 1.2, 1.5, 2 - 2**-52,
              2 - 1e-7, 2 + 2**-51, 2.1, 3.0, 10.5, 171.6, 1e5, 1e10, 1e17, 1e300, 2.5e305]:
        yield "lyradnlgam", log_gamma, (x,), (x,)

    source = random.Random(7)
    for _ in range(60):
        a, b = (10 ** source.uniform(-2, 7) for _ in range(2))
        p = source.choice([source.random(), 10 ** source.uniform(-30, -1)])
        yield "IdfChi", idf_chi, (p, a), (p, a)
        yield "IdfBeta", idf_beta, (p, a, b), (p, a, b)
        yield "IdfF", idf_f, (p, b, a), (p, b, a)

    # Two tiny shapes: p next to b / (a + b), where alone the quantile is a normal double.
    for p, a, b in [(0.9885004719719346, 9.483847068699534e-09, 8.152305690960984e-07),
                    (0.991821431201728, 8.161868853634121e-08, 9.9e-06),
                    (0.7417430966651843, 3.4468324173333404e-06, 9.9e-06),
                    (0.009300888426322509, 5.595793658632384e-10, 5.253446970387258e-12),
                    (0.005388796095418951, 1.2728650878409674e-13, 6.8963735660786555e-16),
                    (0.0018880471321306325, 1.3126421887641636e-07, 2.483019083491966e-10),
                    (0.0010307345135168748, 8.579177207899516e-09, 8.851961144370655e-12),
                    (0.0052669102606179505, 4.715812140075122e-12, 2.4969270253141664e-14),
                    (0.999796723230265, 2.049029874086721e-11, 1.0077950059178718e-07),
                    (0.9997034737299303, 4.327014206934237e-12, 1.4588019320616674e-08),
                    (0.023969080318225314, 1.3835536481339263e-06, 3.39865582484992e-08),
                    (0.0003318742461798062, 1.4593459501377388e-12, 4.844801235495665e-16)]:
        yield "IdfBeta", idf_beta, (p, a, b), (p, a, b)
        yield "IdfF", idf_f, (p, 2 * a, 2 * b), (p, 2 * a, 2 * b)


def main():
    print("# source: test/support/references/distributions.py")
    print(f"# program: mpmath {mpmath.__version__} at 50 digits and more, Python {platform.python_version()}")
    print("# command: python3 distributions.py > distributions.csv")
    print("# function, arguments as declared in foundation/math.h, value; values that are no normal double are left out")
    seen = set()
    for name, function, arguments, printed in rows():
        if len(sys.argv) > 1 and name not in sys.argv[1:]:
            continue
        line = ",".join([name] + [repr(float(argument)) for argument in printed])
        if line in seen:
            continue
        seen.add(line)
        # The shapes' digits on top: sums and differences of their size cancel.
        mp.dps = 50 + max([0] + [abs(int(math.log10(shape))) for shape in arguments[1:] if shape > 0])
        value = function(*arguments)
        if value is not None and SMALLEST <= abs(value) <= LARGEST:
            print(f"{line},{mpmath.nstr(value, 25)}", flush=True)


if __name__ == "__main__":
    main()
