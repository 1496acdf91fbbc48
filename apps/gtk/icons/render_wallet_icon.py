#!/usr/bin/env python3
# Draws the wealth tab's wallet icon as GTK symbolic PNGs (black with coverage in alpha,
# which GTK recolours), so that no SVG loader is needed at start:
#   render_wallet_icon.py SIZE OUT.png
import zlib, struct, sys
def inside(x, y):
    # x, y in 16-unit icon space
    def rrect(x0, y0, x1, y1, r):
        if not (x0 <= x <= x1 and y0 <= y <= y1): return False
        cx = min(max(x, x0 + r), x1 - r); cy = min(max(y, y0 + r), y1 - r)
        return (x - cx) ** 2 + (y - cy) ** 2 <= r * r
    def circle(cx, cy, r): return (x - cx) ** 2 + (y - cy) ** 2 <= r * r
    body = rrect(1, 2, 15, 14, 2)
    notch = (11 <= x <= 15 and 5 <= y <= 11) or circle(11, 8, 3)
    clasp = ((11 <= x <= 15 and 6.5 <= y <= 9.5) or circle(11, 8, 1.5)) and not circle(11, 8, 0.75)
    return (body and not notch) or clasp
def png(size, path):
    ss = 8; rows = b''
    for py in range(size):
        row = b'\0'
        for px in range(size):
            hit = 0
            for sy in range(ss):
                for sx in range(ss):
                    x = (px + (sx + 0.5) / ss) * 16 / size; y = (py + (sy + 0.5) / ss) * 16 / size
                    hit += inside(x, y)
            row += bytes((0, 0, 0, round(255 * hit / (ss * ss))))
        rows += row
    def chunk(t, d): return struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d) & 0xffffffff)
    data = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', size, size, 8, 6, 0, 0, 0)) + \
        chunk(b'IDAT', zlib.compress(rows, 9)) + chunk(b'IEND', b'')
    open(path, 'wb').write(data)
png(int(sys.argv[1]), sys.argv[2])
