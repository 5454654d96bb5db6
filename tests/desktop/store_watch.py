"""The database of a running program, watched from outside."""
import sqlite3
import threading
import time


class StoreWatch:
    """Notes when each row was first seen in the database, from a thread of its own."""

    def __init__(self, store_path):
        self.store_path = store_path
        self.ids = set()
        self.seen_at = {}  # The hash or the kind of a row: when the last such row was seen.
        self.last_number = 0
        self.is_closing = False
        self.is_ready = threading.Event()
        self.thread = threading.Thread(target=self.watch, daemon=True)
        self.thread.start()
        self.is_ready.wait(10)

    def watch(self):
        store = sqlite3.connect(f"file:{self.store_path}?mode=ro", uri=True, timeout=5)
        self.look(store)
        self.is_ready.set()
        while not self.is_closing:
            time.sleep(0.0005)
            self.look(store)
        store.close()

    def look(self, store):
        new = store.execute(
            "SELECT rowid, id, contentTypeRaw, contentHash FROM ClipboardHistoryRecord "
            "WHERE rowid > ? ORDER BY rowid", (self.last_number,)).fetchall()
        now = time.monotonic()
        for number, identity, kind, content_hash in new:
            self.last_number = number
            self.ids.add(identity)
            self.seen_at[kind] = self.seen_at[content_hash] = now

    def close(self):
        self.is_closing = True
        self.thread.join(10)
