"""Entries made without a copy: such as no copy makes, or so many that copying would take long."""
import hashlib
import os
import sqlite3
import time
import uuid

SECOND = 1_000_000  # In the microseconds of the store.


class MadeEntries:
    """Writes entries into the store of a program that does not run and has run before."""

    def __init__(self, program):
        self.program = program
        # So that none is of the future, and those of a short history go on saying the same of
        # their age: the rows are compared with what they looked like before.
        self.copied_at = time.time_ns() // 1000 - 5400 * SECOND

    def add(self, *entries):
        """Each entry is a dictionary of columns, and is newer than the one before."""
        store = sqlite3.connect(f"file:{self.program.store_path}?mode=rw", uri=True)
        try:
            with store:
                for entry in entries:
                    self.insert(store, entry)
            store.execute("PRAGMA wal_checkpoint(TRUNCATE)")
        finally:
            store.close()

    def insert(self, store, entry):
        self.copied_at += SECOND
        identity = str(uuid.uuid4()).upper()
        row = dict(id=identity, position=0, timestamp=self.copied_at, fileTypesJSON=b"[]",
                   tagsJSON=b"[]", isFavorite=0, isRemoteClipboard=0, updatedAt=self.copied_at,
                   contentHash=hashlib.sha256(identity.encode()).hexdigest()) | entry
        store.execute(f"INSERT INTO ClipboardHistoryRecord ({', '.join(row)}) "
                      f"VALUES ({', '.join('?' * len(row))})", list(row.values()))

    def add_picture(self, name, data):
        """A picture whose stored file has this name and these bytes."""
        os.makedirs(self.program.images_path, exist_ok=True)
        with open(os.path.join(self.program.images_path, name), "wb") as file:
            file.write(data)
        self.add({"contentTypeRaw": "image", "imageFileName": name})
