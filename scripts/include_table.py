"""include_table.py: holds every #include to the table of rooms in docs/architecture.md.

The table says for each room (a folder with what lies below it) which other rooms it may include. What is wrong is
printed line by line: an include that the table does not allow, an arrow of the table that no file uses, a folder that
belongs to no room, rooms that include one another in a circle, and the same for folders.
"""

import collections
import os
import re
import subprocess
import sys

PAGE = "docs/architecture.md"
HEADING = "## The rooms"
COLUMNS = ["room", "what it holds", "may include"]
ENDINGS = (".h", ".cpp", ".mm", ".inc")
INCLUDE = re.compile(r'\s*#\s*(?:include|import)\s+(?:"([^"]+)"|<([^>]+)>)')


class TableError(Exception):
    """The table cannot be read."""


def cells(line):
    return [cell.strip() for cell in line.strip().strip("|").split("|")]


def names(cell, room):
    """The names of a cell like "`abi`, `disc`"; "nothing" names none."""
    if cell == "nothing":
        return []
    found = [re.fullmatch(r"`([\w/*]+)`", part.strip()) for part in cell.split(",")]
    if not all(found):
        raise TableError(f'{PAGE}: "may include" of {room} is neither "nothing" nor names in backquotes: {cell}')
    return [match.group(1) for match in found]


def read_table(text):
    """Room to the names of its last column, in the table's order."""
    if HEADING not in text:
        raise TableError(f'{PAGE}: there is no section "{HEADING}"')
    lines = [line for line in text.split(HEADING, 1)[1].split("\n## ", 1)[0].splitlines() if line.startswith("|")]
    if not lines or cells(lines[0]) != COLUMNS:
        raise TableError(f'{PAGE}: the section "{HEADING}" has no table of the columns {", ".join(COLUMNS)}')
    table = {}
    for line in lines[2:]:
        row = cells(line)
        if len(row) != len(COLUMNS):
            raise TableError(f"{PAGE}: a row has {len(row)} cells: {line}")
        room = names(row[0], "a row")[0]
        if room in table:
            raise TableError(f"{PAGE}: the room {room} has two rows")
        table[room] = names(row[2], room)
    return table


def rooms_named(name, table):
    """The rooms a name of the last column stands for: one, or with "/*" all that lie below a folder."""
    if name.endswith("/*"):
        return [room for room in table if room.startswith(name[:-1])]
    return [name] if name in table else []


def room_of(folder, table):
    """The innermost room a folder lies in, or None. A room with rooms below it holds its own files alone."""
    inner = [room for room in table if folder == room or folder.startswith(room + "/")]
    room = max(inner, key=len, default=None)
    if room and room != folder and any(other.startswith(room + "/") for other in table):
        return None
    return room


def includes(root, files):
    """(file, line number, included file) of every include within the project; None where there is no such file."""
    for file in files:
        with open(os.path.join(root, file), encoding="utf-8") as lines:
            for number, line in enumerate(lines, 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                quoted, bracketed = match.groups()
                target = quoted or bracketed
                if os.path.isfile(os.path.join(root, target)):
                    yield file, number, target
                elif quoted:
                    yield file, number, None


def circles(graph):
    """The groups of nodes each of which reaches all others of its group; `graph` is node to the nodes it leads to."""

    def reached(start):
        seen, waiting = set(), [start]
        while waiting:
            for node in graph.get(waiting.pop(), ()):
                if node not in seen:
                    seen.add(node)
                    waiting.append(node)
        return seen

    reach = {node: reached(node) for node in graph}
    groups = {tuple(sorted(other for other in reach[node] if node in reach.get(other, ()))) for node in graph}
    return sorted(group for group in groups if group)


def faults_of_table(table):
    for room, allowed in table.items():
        for name in allowed:
            if not rooms_named(name, table):
                yield f"{PAGE}: {room} may include {name}, which is no room of the table"
    graph = {room: {other for name in allowed for other in rooms_named(name, table)} for room, allowed in table.items()}
    for group in circles(graph):
        yield f"{PAGE}: the table lets these rooms include one another: {', '.join(group)}"


def faults_of_folders(files, table):
    folders = sorted({os.path.dirname(file) for file in files})
    for folder in folders:
        if room_of(folder, table) is None:
            yield f"{folder}: a folder with sources that belongs to no room of {PAGE}"
    for room in table:
        if not any(room_of(folder, table) == room for folder in folders):
            yield f"{PAGE}: the room {room} holds no source"


def faults_of_includes(found, table):
    used = set()
    folders = collections.defaultdict(set)
    for file, number, target in found:
        if target is None:
            yield f"{file}:{number}: includes a file that is not there; paths begin at the project's root"
            continue
        home, other = os.path.dirname(file), os.path.dirname(target)
        if home != other:
            folders[home].add(other)
        here, there = room_of(home, table), room_of(other, table)
        if here is None or here == there:
            continue
        granted = [name for name in table[here] if there in rooms_named(name, table)]
        used.update((here, name) for name in granted)
        if not granted:
            yield f"{file}:{number}: includes {target}, but {PAGE} does not let {here} include {there}"
    for room, allowed in table.items():
        for name in allowed:
            if (room, name) not in used:
                yield f"{PAGE}: {room} may include {name}, but no file does"
    for group in circles(folders):
        yield f"these folders include one another in a circle: {', '.join(group)}"


def faults(root, files):
    """Everything that is wrong, as lines of text. `files` are paths from `root`."""
    with open(os.path.join(root, PAGE), encoding="utf-8") as page:
        table = read_table(page.read())
    sources = [file for file in files if file.endswith(ENDINGS)]
    return [
        *faults_of_table(table),
        *faults_of_folders(sources, table),
        *faults_of_includes(includes(root, sources), table),
    ]


def main():
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard"], check=True, capture_output=True, text=True
    ).stdout.splitlines()
    # What is deleted but not yet committed is still listed.
    try:
        found = faults(".", [file for file in listed if os.path.isfile(file)])
    except TableError as error:
        found = [str(error)]
    for fault in found:
        print(fault, file=sys.stderr)
    if found:
        sys.exit(f"include_table.py: {len(found)} includes, folders or rows are not as {PAGE} has them")


if __name__ == "__main__":
    main()
