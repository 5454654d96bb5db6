"""What the program has left on the disk, looked at without changing it."""
import collections
import contextlib
import os
import shutil
import sqlite3
import tempfile

StoredRow = collections.namedtuple(
    "StoredRow", "number id timestamp kind content_hash picture thumbnail deleted_at")

ROWS = ("SELECT rowid, id, timestamp, contentTypeRaw, contentHash, imageFileName, "
        "imageThumbnailFileName, deletedAt FROM ClipboardHistoryRecord ORDER BY timestamp DESC")


class StoredHistory:
    """The database and the picture files of a program that does not run.

    The database is read from a copy: whoever opens it first repairs what a crash has left behind,
    and that is to be the program.
    """

    def __init__(self, store_path, images_path):
        self.files = set(os.listdir(images_path))
        with tempfile.TemporaryDirectory() as folder:
            for suffix in ("", "-wal"):
                if os.path.exists(store_path + suffix):
                    shutil.copy(store_path + suffix, os.path.join(folder, "store" + suffix))
            path = os.path.join(folder, "store")
            with contextlib.closing(sqlite3.connect(path)) as store:
                self.integrity = [row[0] for row in store.execute("PRAGMA integrity_check")]
                self.rows = [StoredRow(*row) for row in store.execute(ROWS)]

    @classmethod
    def of(cls, program):
        return cls(program.store_path, program.images_path)

    @property
    def live(self):
        """The rows that are entries of the history, newest first."""
        return [row for row in self.rows if row.deleted_at is None]

    def named_files(self):
        return {name for row in self.live for name in (row.picture, row.thumbnail) if name}

    def missing_files(self):
        """What live rows name and the disk does not have."""
        return self.named_files() - self.files

    def unnamed_files(self):
        """What the disk has and no live row names."""
        return {name for name in self.files if not name.startswith(".")} - self.named_files()
