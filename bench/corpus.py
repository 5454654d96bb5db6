#!/usr/bin/python3
"""The history that every figure is measured with: texts of random English-like words, written
straight into a store.

    corpus.py [--count 10000] [--html 20000] STORE [SETTINGS]

Of the texts 95 % have 50 to 500 bytes and 5 % have 20 to 100 kB: 1,000 of them are 3 MB and 10,000
are 34 MB. They are the same at each run. With --html each entry has HTML of so many bytes as well.
"""
import argparse
import base64
import contextlib
import hashlib
import json
import os
import random
import sqlite3
import uuid

SEED = 7
LARGE_SHARE = 0.05
SMALL_BYTES = (50, 500)
LARGE_BYTES = (20_000, 100_000)
STEP_MICROSECONDS = 61_000_000  # Between two copies of the history.
NEWEST_MICROSECONDS = 1_717_750_000_000_000
TAG = "errand"

# What is common in English stands here more often than what is rare.
ONSETS = ("b b b c c c c d d d d f f f g g h h h l l l m m m m n n n p p p p r r r r s s s s s t t "
          "t t t v w w st st tr pl gr br ch sh th th cl fr sp pr dr sc wh k j y qu z").split()
VOWELS = "a a e e i o o u ea ou ai oo ee ie".split()
CODAS = "    n n n r r r s s t t l l d d m ng ck st nd p ll rt nt x".split(" ")
ENDINGS = "                ing ed er ly s ion al ment ness ful".split(" ")
COMMON = ("the of and to in is that it was for on are with as his they be at one have this from or "
          "had by not but what all were when we there can an your which their said if do").split()


def make_words(rng, count=6000):
    """Words that can be pronounced; the short ones are used more often than the rare ones."""
    words = set()
    while len(words) < count:
        syllables = rng.choice((1, 1, 2, 2, 3))
        word = "".join(rng.choice(ONSETS) + rng.choice(VOWELS) + rng.choice(CODAS)
                       for _ in range(syllables))
        words.add(word + rng.choice(ENDINGS))
    return sorted(words)


def make_text(rng, words, size):
    pieces, length = [], 0
    while length < size:
        word = rng.choice(COMMON) if rng.random() < 0.45 else rng.choice(words)
        if rng.random() < 0.08:
            word += rng.choice((",", ".", ".", ";", "\n"))
        pieces.append(word)
        length += len(word) + 1
    return " ".join(pieces)[:size].strip()


def corpus(count):
    """The texts, the newest first."""
    rng = random.Random(SEED)
    words = make_words(rng)
    for _ in range(count):
        bounds = LARGE_BYTES if rng.random() < LARGE_SHARE else SMALL_BYTES
        yield make_text(rng, words, rng.randint(*bounds))


def make_html(rng, size):
    """HTML of so many bytes that is like no other and cannot be compressed to nothing."""
    frame = b'<div style="%s"></div>'
    room = size - len(frame) + 2
    return frame % base64.b64encode(rng.randbytes(room * 3 // 4 + 3))[:room]


def content_hash(text, html=None):
    rich = hashlib.sha256(html).hexdigest() if html else ""
    return hashlib.sha256(f"text|{text.strip()}|{rich}|".encode()).hexdigest()


def write_store(path, count, newest=NEWEST_MICROSECONDS, html_bytes=0):
    """Adds the corpus to a store that the program has made; returns the bytes of its texts."""
    rng = random.Random(SEED + 1)
    rows = []
    html_rng = random.Random(SEED + 2)
    for index, text in enumerate(corpus(count)):
        copied_at = newest - index * STEP_MICROSECONDS
        identity = str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()
        html = make_html(html_rng, html_bytes) if html_bytes else None
        rows.append((identity, 0, copied_at, "text", text, html, b"[]", b"[]", 0, "local", 0,
                     copied_at, content_hash(text, html)))
    with opened(path) as store:
        store.executemany(
            "INSERT INTO ClipboardHistoryRecord (id, position, timestamp, contentTypeRaw, "
            "stringValue, htmlRepresentation, fileTypesJSON, tagsJSON, isFavorite, "
            "syncStatusRaw, isRemoteClipboard, updatedAt, contentHash) "
            "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)",
            rows)
    return sum(len(row[4]) for row in rows)


def mark_some(path):
    """Makes every tenth entry of a store a favourite, and gives every seventh a tag; returns the
    tags."""
    with opened(path) as store:
        store.execute("UPDATE ClipboardHistoryRecord SET isFavorite = 1 WHERE rowid % 10 = 4")
        store.execute("UPDATE ClipboardHistoryRecord SET tagsJSON = ? WHERE rowid % 7 = 3",
                      (json.dumps([TAG]).encode(),))
    return (TAG,)


def make_some_pictures(path):
    """Makes every tenth entry of a store a picture; returns the names of the files, without their
    ends."""
    with opened(path) as store:
        numbers = [row[0] for row in store.execute(
            "SELECT rowid FROM ClipboardHistoryRecord WHERE rowid % 10 = 6")]
        store.executemany(
            "UPDATE ClipboardHistoryRecord SET contentTypeRaw = 'image', stringValue = NULL, "
            "imageFileName = ?, imageThumbnailFileName = ? WHERE rowid = ?",
            [(f"{number}.jpg", f"{number}_thumb.jpg", number) for number in numbers])
    return [str(number) for number in numbers]


@contextlib.contextmanager
def opened(path):
    """A store of a program that does not run; what is done in the block is kept as a whole."""
    with contextlib.closing(sqlite3.connect(f"file:{path}?mode=rw", uri=True)) as store:
        with store:
            yield store
        store.execute("PRAGMA wal_checkpoint(TRUNCATE)")


def write_settings(path, tags=()):
    """Lets the history hold as much as can be chosen."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "a", encoding="utf-8") as file:
        file.write("[General]\nhistory.limit=10000\n")
        if tags:
            file.write(f"custom.tags={', '.join(tags)}\n")


def main():
    parser = argparse.ArgumentParser(description="Writes the corpus into a store.")
    parser.add_argument("--count", type=int, default=10_000)
    parser.add_argument("--html", type=int, default=0, help="bytes of HTML in each entry")
    parser.add_argument("store", help="made by the program before; it has the schema")
    parser.add_argument("settings", nargs="?")
    options = parser.parse_args()
    size = write_store(options.store, options.count, html_bytes=options.html)
    if options.settings:
        write_settings(options.settings)
    print(f"{options.count} texts, {size / 1e6:.1f} MB")


if __name__ == "__main__":
    main()
