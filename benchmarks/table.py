"""The table of the benchmarks: what was measured, beside what, and whether the aim is met."""

import math

AIM_GROWTH = 1.1


def exponent(points):
    """Slope of the least-squares line through the logarithms of sizes and times."""
    logs = [(math.log(size), math.log(value)) for size, value in points]
    mean_x = sum(x for x, _ in logs) / len(logs)
    mean_y = sum(y for _, y in logs) / len(logs)
    return (sum((x - mean_x) * (y - mean_y) for x, y in logs) /
            sum((x - mean_x) ** 2 for x, _ in logs))


def seconds(value):
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("µs", 1e-6)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value / 1e-9:.3g} ns"


def amount(value):
    return f"{value:,.0f}"


class Table:
    """Rows of what, ours, the other, ratio, aim, and whether it is met."""

    HEAD = ("What", "Ours", "The other", "Ratio", "Aim", "Met")

    def __init__(self):
        self.rows = []

    def compare(self, what, ours, other, most=None, show=seconds):
        ratio = ours / other if other else math.inf
        # Only two decimals are repeatable.
        met = "" if most is None else "yes" if round(ratio, 2) <= most else "NO"
        aim = "" if most is None else f"≤ {most:g}"
        self.rows.append((what, show(ours), show(other), f"{ratio:.3f}", aim, met))

    def growth(self, what, points):
        slope = exponent(points)
        sizes = f"{amount(points[0][0])} to {amount(points[-1][0])}"
        self.rows.append((f"{what}, {sizes}", seconds(points[-1][1]), "", f"n^{slope:.2f}",
                          f"≤ n^{AIM_GROWTH}", "yes" if slope <= AIM_GROWTH else "NO"))

    def fact(self, what, ours, other=""):
        self.rows.append((what, ours, other, "", "", ""))

    def text(self):
        rows = [self.HEAD] + self.rows
        widths = [max(len(row[i]) for row in rows) for i in range(len(self.HEAD))]
        lines = []
        for number, row in enumerate(rows):
            cells = [cell.ljust(width) if i == 0 else cell.rjust(width)
                     for i, (cell, width) in enumerate(zip(row, widths))]
            lines.append("| " + " | ".join(cells) + " |")
            if number == 0:
                dashes = ["-" * width if i == 0 else "-" * (width - 1) + ":"
                          for i, width in enumerate(widths)]
                lines.append("| " + " | ".join(dashes) + " |")
        return "\n".join(lines)
