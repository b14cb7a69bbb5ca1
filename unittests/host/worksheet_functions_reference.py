"""Writes worksheet_functions_reference.csv: run it with python3 and mpmath in this folder.

Every value comes from a series whose terms are all positive, or from a complement taken with as many digits as
it loses (far above the mean of a gamma distribution from its continued fraction), so that 40 digits are right;
20 are written.
"""

import mpmath
from mpmath import mp, mpf

mp.dps = 60
out = open("worksheet_functions_reference.csv", "w", encoding="ascii")
out.write(
    "# Values of the worksheet functions to 20 digits.\n"
    "# Origin: mpmath %s, by worksheet_functions_reference.py beside this file.\n"
    "# function,arguments (exact doubles)...,value\n" % mpmath.__version__
)


def row(function, *values):
    *arguments, value = values
    if not (value == 0 or mpf("1e-290") <= abs(value) < mpf("1e300")):
        return
    cells = [function] + [repr(float(a)) for a in arguments] + [mpmath.nstr(value, 20, min_fixed=0, max_fixed=0)]
    out.write(",".join(cells) + "\n")
    out.flush()


def positive_series(ratio):
    """1 + r(0) + r(0) r(1) + ..."""
    total, term, n = mpf(1), mpf(1), 0
    while term > total * mpf(10) ** (-mp.dps - 2):
        term *= ratio(n)
        total += term
        n += 1
    return total


def lower_gamma(a, x):
    front = mpmath.exp(a * mpmath.log(x) - x - mpmath.loggamma(a + 1))
    return front * positive_series(lambda n: x / (a + 1 + n))


def upper_gamma(a, x):
    if x < a:
        return 1 - lower_gamma(a, x)
    if x > 2 * a + 100:
        return mpmath.exp(a * mpmath.log(x) - x - mpmath.loggamma(a)) * legendre_fraction(a, x)
    digits = 20 + int(max(0, (x - a - a * mpmath.log(x / a)) / mpmath.log(10)))
    with mp.workdps(mp.dps + digits):
        return 1 - lower_gamma(mpf(a), mpf(x))


def legendre_fraction(a, x):
    value = mpf(0)
    for n in range(400, 0, -1):
        value = n * (n - a) / (x + 2 * n + 1 - a - value)
    return 1 / (x + 1 - a - value)


def lower_beta(a, b, x, y):
    if x < 0.003 or (x <= a / (a + b) and y > 0.003):
        return beta_front(a, b, x, y) * beta_series(a, b, x)
    digits = 20 + int(max(0, -mpmath.log10(beta_front(a, b, x, y))))
    with mp.workdps(mp.dps + digits):
        a, b, y = mpf(a), mpf(b), mpf(y)
        return 1 - beta_front(b, a, y, 1 - y) * beta_series(b, a, y)


def beta_front(a, b, x, y):
    log_beta = mpmath.loggamma(a) + mpmath.loggamma(b) - mpmath.loggamma(a + b)
    return mpmath.exp(a * mpmath.log(x) + b * mpmath.log(y) - log_beta) / a


def beta_series(a, b, x):
    return positive_series(lambda n: x * (a + b + n) / (a + 1 + n))


def invert(log_lower, log_upper, slope, p, upper, start, width):
    """v where the tail is p; the tails are functions of v, slope is the density in v."""
    tail, sign = (log_upper, -1) if upper else (log_lower, 1)
    target = mpmath.log(p)
    if p > 0.5:
        tail, sign, target = (log_lower if upper else log_upper), -sign, mpmath.log(1 - p)
    too_low = lambda v: sign * (tail(v) - target) < 0
    with mp.workdps(20):
        low = high = start
        step = width / 4
        while not too_low(low):
            low -= step
            step *= 1.15
        step = width / 4
        while too_low(high):
            high += step
            step *= 1.15
        while high - low > width / 1000:
            middle = (low + high) / 2
            if too_low(middle):
                low = middle
            else:
                high = middle
    v = (low + high) / 2
    for _ in range(40):
        value = tail(v)
        step = -sign * (value - target) * mpmath.exp(value) / slope(v)
        v += step
        if abs(step) < mpf(10) ** -35 * width:
            return v
    raise ArithmeticError("no convergence")


def gamma_inverse(a, p, upper):
    a = mpf(a)
    density = lambda v: mpmath.exp(a * v - mpmath.exp(v) - mpmath.loggamma(a))
    v = invert(
        lambda v: mpmath.log(lower_gamma(a, mpmath.exp(v))),
        lambda v: mpmath.log(upper_gamma(a, mpmath.exp(v))),
        density, mpf(p), upper, mpmath.log(a), 1 / mpmath.sqrt(a))
    return mpmath.exp(v)


def odds(v):
    e = mpmath.exp(v)
    return e / (1 + e), 1 / (1 + e)


def beta_inverse(a, b, p, upper):
    """The odds x / (1 - x)."""
    a, b = mpf(a), mpf(b)

    def density(v):
        x, y = odds(v)
        return mpmath.exp(a * mpmath.log(x) + b * mpmath.log(y)
                          + mpmath.loggamma(a + b) - mpmath.loggamma(a) - mpmath.loggamma(b))

    def log_lower(v):
        x, y = odds(v)
        return mpmath.log(lower_beta(a, b, x, y))

    def log_upper(v):
        x, y = odds(v)
        return mpmath.log(lower_beta(b, a, y, x))

    width = mpmath.sqrt(1 / a + 1 / b)
    return mpmath.exp(invert(log_lower, log_upper, density, mpf(p), upper, mpmath.log(a / b), width))


PS = [1e-290, 1e-100, 1e-30, 1e-10, 1e-4, 0.01, 0.05, 0.3, 0.5, 0.8, 0.975, 0.9999, 1 - 1e-10]
DFS = [1, 2, 3, 5, 10, 30, 100, 10000, 1000000]


def two_tails(t, n):
    t, n = mpf(t), mpf(n)
    return lower_beta(n / 2, mpf(1) / 2, n / (n + t * t), t * t / (n + t * t))


def normal_rows():
    lower = lambda z: mpmath.erfc(-mpf(z) / mpmath.sqrt(2)) / 2
    for z in [-36.3, -30.1, -20.7, -12.3, -8.1, -5.3, -4, -3, -1.96, -1, -0.6744897, -0.1, -1e-5, 0, 1e-9, 0.3, 0.7, 1.5,
              2.326, 4.5, 6, 8.2]:
        row("NormSDist", z, lower(z))
    for p in PS + [0.025, 0.075, 0.425, 0.5000001, 0.575, 0.925, 1e-15, 1e-200]:
        row("NormSInv", p, -mpmath.sqrt(2) * mpmath.erfinv(1 - 2 * mpf(p)) if p > 1e-16 else normal_tail(mpf(p)))
    for x, mean, sd in [(42.5, 40, 1.5), (-3.2, 17, 1.25), (1e-3, 0, 1e-3), (1e6, 1.2e6, 1e4)]:
        z = (mpf(x) - mpf(mean)) / mpf(sd)
        row("NormDist", x, mean, sd, 1, lower(z))
        row("NormDist", x, mean, sd, 0, mpmath.npdf(z) / mpf(sd))
    for x, mean, sd in [(4, 3.5, 1.2), (1e-20, 0.1, 2), (1e5, 3, 0.6), (0.3, -1, 0.25)]:
        row("LogNormDist", x, mean, sd, lower((mpmath.log(mpf(x)) - mpf(mean)) / mpf(sd)))
    for p, mean, sd in [(0.039084, 3.5, 1.2), (1e-12, 0, 1), (0.999, -2, 0.3)]:
        z = -mpmath.sqrt(2) * mpmath.erfinv(1 - 2 * mpf(p))
        row("LogInv", p, mean, sd, mpmath.exp(mpf(mean) + mpf(sd) * z))
        row("NormInv", p, mean, sd, mpf(mean) + mpf(sd) * z)


def normal_tail(p):
    z = -mpmath.sqrt(-2 * mpmath.log(p))
    for _ in range(200):
        value = mpmath.erfc(-z / mpmath.sqrt(2)) / 2
        z -= (mpmath.log(value) - mpmath.log(p)) * value / mpmath.npdf(z)
    return z


def student_rows():
    for n in DFS:
        for p in PS:
            t = mpmath.sqrt(n * beta_inverse(0.5, n / 2, p, True))
            row("TInv", p, n, t)
            x = float(t)
            row("TDist", x, n, 2, two_tails(x, n))
        for x in [1e-8, 0.7, 3.1]:
            row("TDist", x, n, 1, two_tails(x, n) / 2)


def chi_rows():
    for n in DFS:
        for p in PS:
            x = 2 * gamma_inverse(mpf(n) / 2, p, True)
            row("ChiInv", p, n, x)
            if x > mpf("1e-300"):
                row("ChiDist", float(x), n, upper_gamma(mpf(n) / 2, mpf(float(x)) / 2))


def f_rows():
    pairs = [(1, 1), (1, 2), (1, 30), (2, 1), (2, 7), (3, 5), (5, 3), (10, 10), (4, 100), (100, 4), (30, 100), (120, 60),
             (1, 1e6), (1e6, 3), (1000, 1500), (10000, 100), (1e6, 1e6), (1e5, 1e6)]
    for m, n in pairs:
        for p in PS:
            x = beta_inverse(mpf(m) / 2, mpf(n) / 2, p, True) * n / m
            row("FInv", p, m, n, x)
            if not mpf("1e-290") < x < mpf("1e290"):
                continue
            r = mpf(float(x)) * m
            row("FDist", float(x), m, n, lower_beta(mpf(n) / 2, mpf(m) / 2, n / (n + r), r / (n + r)))


def beta_rows():
    shapes = [(0.01, 0.01), (0.01, 3), (0.3, 0.7), (0.5, 0.5), (0.02, 200), (1, 1), (1, 7.5), (2.5, 0.2), (3, 4), (0.7, 40),
              (15.5, 2), (60, 55.5), (400, 3), (2000, 1700), (1e5, 1e5), (3e5, 12), (1e6, 0.4), (5e5, 5e5), (1e6, 2e4)]
    for a, b in shapes:
        for p in PS:
            o = beta_inverse(a, b, p, False)
            x = o / (1 + o)
            row("BetaInv", p, a, b, x)
            d = float(x)
            if 1e-290 < d < 1:
                row("BetaDist", d, a, b, lower_beta(mpf(a), mpf(b), mpf(d), 1 - mpf(d)))
    for a, b, x in [(3, 1e-4, 0.9), (1e-4, 3, 1e-9), (20, 1e-3, 0.5), (1e-7, 1e-7, 0.25), (2, 3, 1e-100), (1e-3, 500, 1e-5)]:
        row("BetaDist", x, a, b, lower_beta(mpf(a), mpf(b), mpf(x), 1 - mpf(x)))


def gamma_rows():
    for a in [0.001, 0.05, 0.3, 0.9, 1, 1.7, 4.25, 19.5, 150, 2.5e4, 4e6]:
        for p in PS:
            row("GammaInv", p, a, 1, gamma_inverse(a, p, False))
    row("GammaInv", 0.068094, 9, 2, 2 * gamma_inverse(9, 0.068094, False))
    # (p Gamma(a + 1))^(1 / a) to far more than 20 digits.
    row("GammaInv", 0.01, 0.006, 1e60, mpf(1e60) * (mpf(0.01) * mpmath.gamma(mpf(0.006) + 1)) ** (1 / mpf(0.006)))
    for x in [1e-290, 1e-10, 0.3, 0.999, 1.0001, 1.5, 1.99999, 2.00001, 2.7, 6, 9.99, 25.5, 1e3, 1e10, 1e100]:
        row("GammaLn", x, mpmath.loggamma(mpf(x)))


def count_rows():
    for n, p, ks in [(10, 0.5, (0, 3, 6, 9)), (40, 0.01, (0, 1, 7, 30, 40)), (1000, 0.3, (0, 150, 299, 300, 360, 1000)),
                     (100000, 0.001, (40, 100, 180, 700)), (1000000, 0.6, (590000, 600000, 601000, 615000))]:
        q = 1 - mpf(p)
        for k in ks:
            mass = mpmath.exp(mpmath.loggamma(n + 1) - mpmath.loggamma(k + 1) - mpmath.loggamma(n - k + 1)
                              + k * mpmath.log(mpf(p)) + (n - k) * mpmath.log(q))
            row("BinomDist", k, n, p, 0, mass)
            cumulated = mass * positive_series(lambda i: (k - i) * q / ((n - k + 1 + i) * mpf(p)) if i < k else mpf(0))
            row("BinomDist", k, n, p, 1, cumulated)
    for mean, ks in [(0.01, (0, 1, 5)), (3.5, (0, 2, 3, 9, 40)), (100, (0, 60, 100, 170)), (1e6, (990000, 1000000, 1003000)),
                     (2e-5, (0, 3, 50))]:
        m = mpf(mean)
        for k in ks:
            mass = mpmath.exp(k * mpmath.log(m) - m - mpmath.loggamma(k + 1))
            row("Poisson", k, mean, 0, mass)
            row("Poisson", k, mean, 1, mass * positive_series(lambda i: (k - i) / m if i < k else mpf(0)))
    choose = lambda n, k: mpmath.exp(mpmath.loggamma(n + 1) - mpmath.loggamma(k + 1) - mpmath.loggamma(n - k + 1))
    for k, n, m, total in [(1, 4, 8, 20), (0, 5, 5, 10), (5, 5, 5, 10), (3, 10, 40, 1000), (50, 100, 5000, 9000),
                           (0, 300, 4000, 100000), (400, 1000, 500000, 1000000), (7, 7, 7, 7)]:
        row("HypGeomDist", k, n, m, total, choose(m, k) * choose(total - m, n - k) / choose(total, n))
    for x, rate in [(0.2, 10), (1e-12, 3), (55, 1.5)]:
        x, rate = mpf(x), mpf(rate)
        row("ExponDist", x, rate, 1, -mpmath.expm1(-rate * x))
        row("ExponDist", x, rate, 0, rate * mpmath.exp(-rate * x))
    for x, shape, scale in [(105, 20, 100), (1e-9, 1.5, 2), (3, 0.4, 0.01), (900, 2.5, 80)]:
        x, shape, scale = mpf(x), mpf(shape), mpf(scale)
        hazard = (x / scale) ** shape
        row("Weibull", x, shape, scale, 1, -mpmath.expm1(-hazard))
        row("Weibull", x, shape, scale, 0, shape / scale * (x / scale) ** (shape - 1) * mpmath.exp(-hazard))


for make in (normal_rows, count_rows, gamma_rows, student_rows, chi_rows, f_rows, beta_rows):
    make()
