# Draws the ratios to the floor as bars, one group an operation, as an SVG picture.
from xml.sax.saxutils import escape

WIDTH = 760
LEFT = 190  # where the bars begin
BAR = 14
GAP = 5
GROUP = 34  # above the bars of an operation
MOST = 8.0  # a longer bar is cut, its number is not

COLOURS = {"component": "#1f6f8b", "by_name": "#6aa5ba", "page": "#9cc4d2"}
OTHERS = "#c9b79c"
NAMES = {
    "component": "pelm, from C++", "by_name": "pelm, by name", "page": "pelm, from a page",
    "poco": "POCO Data", "poco_reused": "POCO Data, reused",
    "qt": "Qt SQL", "qt_reused": "Qt SQL, reused", "soci": "SOCI", "soci_reused": "SOCI, reused",
    "sqlitecpp": "SQLiteCpp", "sqlitecpp_reused": "SQLiteCpp, reused",
}


def text(x, y, words, extra=""):
    return f'<text x="{x:.0f}" y="{y:.0f}" {extra}>{escape(words)}</text>'


def bars(top, medians, floor):
    """The bars of one operation, the shortest first; returns their SVG and where they end."""
    scale = (WIDTH - LEFT - 60) / MOST
    lines = []
    for participant, time in sorted(medians.items(), key=lambda item: item[1]):
        if participant == floor:
            continue
        ratio = time / medians[floor]
        length = min(ratio, MOST) * scale
        lines.append(text(LEFT - 8, top + BAR - 3, NAMES.get(participant, participant), 'text-anchor="end"'))
        lines.append(f'<rect x="{LEFT}" y="{top}" width="{length:.1f}" height="{BAR}" '
                     f'fill="{COLOURS.get(participant, OTHERS)}"/>')
        lines.append(text(LEFT + length + 5, top + BAR - 3, f"{ratio:.2f}"))
        top += BAR + GAP
    return lines, top


def drawn(table, floor, storage="memory"):
    """Of one storage; an operation without a floor is left out."""
    scale = (WIDTH - LEFT - 60) / MOST
    y = 40
    lines = [text(12, 22, "Times as long as the same records by hand in C, in memory (shorter is better)",
                  'font-weight="bold"')]
    for operation, storages in table.items():
        medians = storages.get(storage, {})
        if floor not in medians or len(medians) < 2:
            continue
        lines.append(text(12, y + 18, operation, 'font-weight="bold"'))
        here, end = bars(y + GROUP - 8, medians, floor)
        one = LEFT + scale
        lines += here
        lines.append(f'<line x1="{one:.1f}" y1="{y + GROUP - 12}" x2="{one:.1f}" y2="{end}" '
                     'stroke="#333" stroke-dasharray="3 3"/>')
        y = end + 8
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {y + 8:.0f}" width="{WIDTH}" '
            f'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="#fff"/>\n')
    return head + "\n".join(lines) + "\n</svg>\n"
