"""The memory of a process, searched from outside."""


def readable_parts(pid):
    """The writable areas of its memory: start and end."""
    with open(f"/proc/{pid}/maps", encoding="utf-8") as maps:
        for line in maps:
            area, rights = line.split()[:2]
            if rights.startswith("rw"):
                start, end = area.split("-")
                yield int(start, 16), int(end, 16)


def memory_holds(pid, text):
    """Whether the text is anywhere in the process, as UTF-8 or as UTF-16."""
    wanted = (text.encode("utf-8"), text.encode("utf-16-le"))
    with open(f"/proc/{pid}/mem", "rb", buffering=0) as memory:
        for start, end in readable_parts(pid):
            try:
                memory.seek(start)
                data = memory.read(end - start)
            except OSError:  # Gone since, or a device.
                continue
            if any(piece in data for piece in wanted):
                return True
    return False
