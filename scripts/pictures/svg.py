"""Text of SVG elements, and the few shapes that several pictures share."""


def num(value, digits=3):
    """A coordinate without needless zeros."""
    text = f"{value:.{digits}f}"
    if "." in text:
        text = text.rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def picture(width, height, *elements):
    """A whole file; None among the elements leaves no trace."""
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" '
             f'height="{height}" viewBox="0 0 {width} {height}">']
    lines += ["  " + element for element in elements if element]
    return "\n".join(lines + ["</svg>", ""])


def attributes(paint):
    """Keyword arguments as attributes: stroke_width=1 is stroke-width="1"."""
    text = ""
    for key, value in paint.items():
        if isinstance(value, (int, float)):
            value = num(value)
        text += f' {key.replace("_", "-")}="{value}"'
    return text


def path(data, **paint):
    """A path; one without points is no element."""
    if not data:
        return None
    return f'<path{attributes(paint)} d="{data}"/>'


def circle(x, y, radius, **paint):
    return (f'<circle{attributes(paint)} cx="{num(x)}" cy="{num(y)}" '
            f'r="{num(radius)}"/>')


def rect(left, top, right, bottom, **paint):
    return path(f"M{num(left)} {num(top)}H{num(right)}V{num(bottom)}"
                f"H{num(left)}Z", **paint)


def line(*points, **paint):
    """An open stroke through the points, with round ends and joints."""
    steps = "L".join(f"{num(x)} {num(y)}" for x, y in points)
    return path("M" + steps, fill="none", stroke_linecap="round",
                stroke_linejoin="round", **paint)


def rounded(left, top, right, bottom, upper, lower):
    """A closed path: a rectangle with its own radius above and below."""
    def arc(radius, dx, dy):
        if not radius:
            return ""
        return f"a{num(radius)} {num(radius)} 0 0 1 {num(dx)} {num(dy)}"

    return (f"M{num(left + upper)} {num(top)}H{num(right - upper)}"
            + arc(upper, upper, upper) + f"V{num(bottom - lower)}"
            + arc(lower, -lower, lower) + f"H{num(left + lower)}"
            + arc(lower, -lower, -lower) + f"V{num(top + upper)}"
            + arc(upper, upper, -upper) + "Z")


def smooth(points, digits=2):
    """A closed curve through the points (Catmull-Rom turned into Bezier)."""
    count = len(points)
    data = f"M{num(points[0][0], digits)} {num(points[0][1], digits)}"
    for i in range(count):
        before, start = points[i - 1], points[i]
        end, after = points[(i + 1) % count], points[(i + 2) % count]
        control = [
            (start[0] + (end[0] - before[0]) / 6,
             start[1] + (end[1] - before[1]) / 6),
            (end[0] - (after[0] - start[0]) / 6,
             end[1] - (after[1] - start[1]) / 6),
            end]
        data += "C" + " ".join(f"{num(x, digits)} {num(y, digits)}"
                               for x, y in control)
    return data + "Z"


def stop(offset, colour, opacity=None):
    opacity = "" if opacity is None else f' stop-opacity="{num(opacity)}"'
    return f'<stop offset="{num(offset)}" stop-color="{colour}"{opacity}/>'


def vertical_gradient(name, top, bottom, *stops):
    return (f'<linearGradient id="{name}" gradientUnits="userSpaceOnUse" '
            f'x1="0" y1="{num(top)}" x2="0" y2="{num(bottom)}">'
            + "".join(stops) + "</linearGradient>")


def radial_gradient(name, x, y, radius, *stops):
    return (f'<radialGradient id="{name}" gradientUnits="userSpaceOnUse" '
            f'cx="{num(x)}" cy="{num(y)}" r="{num(radius)}">'
            + "".join(stops) + "</radialGradient>")
