#!/usr/bin/env python3
"""Reference values for location_converter_test.cpp.

Evaluates the datum conversions at 50 significant digits with mpmath, written from the
formulas rather than from the C++ code, so that the double-precision converter is checked
against an independent evaluation. Run once; paste the printed table into the test.
"""
from mpmath import mp, mpf, sin, cos, sqrt, atan2, fabs

mp.dps = 50
PI = mpf("3.141592653589793")
X_PI = mpf("52.35987755982988")
A = mpf("6378245.0")
A_1_EE = mpf("6335552.717000426")
EE = mpf("0.006693421622965943")


def out_of_china(lat, lon):
    return lon < mpf("72.004") or lon > mpf("137.8347") or lat < mpf("0.8293") or lat > mpf("55.8271")


def t_lat(x, y):
    r = -100 + 2 * x + 3 * y + mpf("0.2") * y * y + mpf("0.1") * x * y + mpf("0.2") * sqrt(fabs(x))
    r += (20 * sin(6 * PI * x) + 20 * sin(2 * PI * x)) * 2 / 3
    r += (20 * sin(PI * y) + 40 * sin(PI * y / 3)) * 2 / 3
    r += (160 * sin(PI * y / 12) + 320 * sin(PI * y / 30)) * 2 / 3
    return r


def t_lon(x, y):
    r = 300 + x + 2 * y + mpf("0.1") * x * x + mpf("0.1") * x * y + mpf("0.1") * sqrt(fabs(x))
    r += (20 * sin(6 * PI * x) + 20 * sin(2 * PI * x)) * 2 / 3
    r += (20 * sin(PI * x) + 40 * sin(PI * x / 3)) * 2 / 3
    r += (150 * sin(PI * x / 12) + 300 * sin(PI * x / 30)) * 2 / 3
    return r


def wgs_to_gcj(lat, lon):
    if out_of_china(lat, lon):
        return lat, lon
    x, y = lon - 105, lat - 35
    rad = lat / 180 * PI
    magic = 1 - EE * sin(rad) ** 2
    dlat = t_lat(x, y) * 180 / ((A_1_EE / (magic * sqrt(magic))) * PI)
    dlon = t_lon(x, y) * 180 / ((A / sqrt(magic)) * cos(rad) * PI)
    return lat + dlat, lon + dlon


def gcj_to_bd(lat, lon):
    z = sqrt(lon * lon + lat * lat) + mpf("0.00002") * sqrt(lat * PI)
    t = atan2(lat, lon) + mpf("0.000003") * cos(lon * PI)
    return z * sin(t) + mpf("0.006"), z * cos(t) + mpf("0.0065")


def bd_to_gcj(lat, lon):
    x, y = lon - mpf("0.0065"), lat - mpf("0.006")
    z = sqrt(x * x + y * y) - mpf("0.00002") * sin(y * X_PI)
    t = atan2(y, x) - mpf("0.000003") * cos(x * X_PI)
    return z * sin(t), z * cos(t)


def haversine(lat1, lon1, lat2, lon2, r=6371000):
    p1, p2 = lat1 * mp.pi / 180, lat2 * mp.pi / 180
    dp, dl = p2 - p1, (lon2 - lon1) * mp.pi / 180
    h = sin(dp / 2) ** 2 + cos(p1) * cos(p2) * sin(dl / 2) ** 2
    return 2 * r * mp.asin(sqrt(h))


def f(v):
    return mp.nstr(v, 17, min_fixed=-30, max_fixed=30)


points = [("39.908692", "116.397477"), ("31.230416", "121.473701"), ("35.104672", "118.356448"),
          ("22.543099", "114.057868"), ("43.825592", "87.616848"), ("29.652491", "91.172112"),
          ("45.756967", "126.642464"), ("18.252847", "109.511909"), ("36.0", "72.004"),
          ("0.8293", "100.0")]
print("// WGS-84 in, GCJ-02 out, BD-09 of that GCJ-02, GCJ-02 back from that BD-09")
for la, lo in points:
    lat, lon = mpf(la), mpf(lo)
    g = wgs_to_gcj(lat, lon)
    b = gcj_to_bd(*g)
    back = bd_to_gcj(*b)
    print("{{%s, %s}, {%s, %s}, {%s, %s}, {%s, %s}}," % (la, lo, f(g[0]), f(g[1]), f(b[0]), f(b[1]),
                                                         f(back[0]), f(back[1])))
print("// haversine metres")
for a, b in [(("39.908692", "116.397477"), ("31.230416", "121.473701")),
             (("35.104672", "118.356448"), ("35.114672", "118.366448"))]:
    print(a, b, f(haversine(mpf(a[0]), mpf(a[1]), mpf(b[0]), mpf(b[1]))))


def gcj_to_wgs(lat, lon):
    min_lat, max_lat, min_lon, max_lon = lat - mpf("0.5"), lat + mpf("0.5"), lon - mpf("0.5"), lon + mpf("0.5")
    counter = 30

    def inside(p, q):
        return min(p[0], q[0]) <= lat <= max(p[0], q[0]) and min(p[1], q[1]) <= lon <= max(p[1], q[1])

    while True:
        mid = ((min_lat + max_lat) / 2, (min_lon + max_lon) / 2)
        a, b, c, m = (wgs_to_gcj(min_lat, min_lon), wgs_to_gcj(min_lat, max_lon),
                      wgs_to_gcj(max_lat, min_lon), wgs_to_gcj(*mid))
        if counter < 1 or fabs(m[0] - lat) + fabs(m[1] - lon) <= mpf("0.00001"):
            return mid, 30 - counter
        if inside(a, m):
            max_lat, max_lon = mid
        elif inside(b, m):
            max_lat, min_lon = mid[0], mid[1]
        elif inside(c, m):
            min_lat, max_lon = mid[0], mid[1]
        else:
            min_lat, min_lon = mid
        counter -= 1


print("// polynomial offsets")
for x, y in [("11.397477", "4.908692"), ("-17.383152", "-5.347509"), ("0", "0")]:
    print(x, y, f(t_lat(mpf(x), mpf(y))), f(t_lon(mpf(x), mpf(y))))
print("// GCJ-02 -> WGS-84 search (refinements made)")
for la, lo in [("39.910095", "116.403721"), ("22.54", "114.06"), ("36.0", "72.4")]:
    r, n = gcj_to_wgs(mpf(la), mpf(lo))
    print(la, lo, f(r[0]), f(r[1]), n)

print("// store row distances: BD-09 store -> GCJ-02 -> WGS-84 (search), haversine to member")
for (blat, blon), (ulat, ulon) in [(("35.110488340143743", "118.36885948897596"), ("35.104672", "118.356448")),
                                   (("0", "0"), ("35.1", "118.3"))]:
    g = bd_to_gcj(mpf(blat), mpf(blon))
    w, _ = gcj_to_wgs(*g)
    print(blat, blon, ulat, ulon, f(haversine(w[0], w[1], mpf(ulat), mpf(ulon))))
