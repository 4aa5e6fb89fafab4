"""Checks that every source file includes only headers of its own floor or of the floors below
it, as the CMake object libraries link them: platform, hostmap, features, framework, the
formats (each on its own; rate maps may use the JOB files' reading), then the dispatcher. The
exchange module beside the library (src/exchange) links the shared library, so it includes
public headers (<tl_gis/...>) and its own, never the library's internal ones."""
import re
import sys
from pathlib import Path

root = Path(sys.argv[1])
FORMATS = {"job", "pmh", "dxf", "midmif", "shp", "flight"}
BELOW_FORMAT = {"pmh": {"job"}}


def floor(path):
    """(level, format) of a header or source path relative to src/ or include/tl_gis/."""
    parts = path.parts
    if parts[0] == "exchange":
        return None
    if parts[0] == "platform":
        return 0, None
    if parts[0] == "hostmap":
        return 1, None
    if parts[0] == "features":
        return 2, None
    if parts[0] == "gis" and len(parts) > 2 and parts[1] in FORMATS:
        return 4, parts[1]
    if parts[0] == "gis" and path.stem in ("gis_map", "format_table"):
        return 5, None
    if parts[0] == "gis":
        return 3, None
    return None


def allowed(source, header):
    if source is None or header is None:
        return True
    (level, fmt), (hlevel, hfmt) = source, header
    if hlevel < level:
        return True
    if hlevel > level:
        return False
    return fmt == hfmt or hfmt in BELOW_FORMAT.get(fmt, set())


include = re.compile(r'^#include [<"](?:tl_gis/)?([^>"]+)[>"]', re.M)
problems = []
for base in (root / "src", root / "include" / "tl_gis"):
    for file in sorted(base.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        source = floor(file.relative_to(base))
        for name in include.findall(file.read_text(encoding="utf-8")):
            header = floor(Path(name)) if "/" in name else None
            if not allowed(source, header):
                problems.append(f"{file.relative_to(root)} includes {name}")
internal = re.compile(r'^#include "([^"]+/[^"]+)"', re.M)
for file in sorted((root / "src" / "exchange").glob("*")):
    if file.suffix in (".h", ".cpp"):
        for name in internal.findall(file.read_text(encoding="utf-8")):
            problems.append(f"{file.relative_to(root)} includes the library's internal {name}")
print("\n".join(problems) if problems else "every include stays on its floor or below")
sys.exit(1 if problems else 0)
