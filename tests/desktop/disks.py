"""Disks for tests: a small one that can be full, and one that lets nobody write."""
import os
import subprocess
import unittest


def require(*command):
    """Runs a command that needs rights of its own; where they are not given the test is skipped."""
    run = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                         stderr=subprocess.PIPE, check=False, timeout=30)
    if run.returncode != 0:
        raise unittest.SkipTest(f"not permitted here: {' '.join(command)}: "
                                + run.stderr.decode("utf-8", "replace").strip())


class SmallDisk:
    """A disk in memory that holds a few megabytes, at a path of the test's choice."""

    def __init__(self, path, megabytes):
        os.makedirs(path, exist_ok=True)
        require("mount", "-t", "tmpfs", "-o", f"size={megabytes}m", "tessarine-test", path)
        self.path = path
        self.ballast_path = os.path.join(path, "ballast")

    def fill(self):
        """Takes all the room that is left, to the last byte."""
        with open(self.ballast_path, "ab", buffering=0) as ballast:
            size = 1 << 16
            while size:
                try:
                    ballast.write(b"\0" * size)
                except OSError:
                    size //= 2

    def make_room(self):
        os.remove(self.ballast_path)

    def make_read_only(self):
        """Only while nothing is open for writing on it."""
        require("mount", "-o", "remount,ro", self.path)

    def make_writable(self):
        require("mount", "-o", "remount,rw", self.path)

    def remove(self):
        # Lazily: a program that is just ending may still have a file open.
        require("umount", "--lazy", self.path)


class LockedFolder:
    """Lets nobody write into a folder and its files, not even by what is open already, as on a disk
    that went read-only after an error. What memory is mapped from stays writable."""

    def __init__(self, path):
        self.paths = [path] + [
            os.path.join(folder, name) for folder, folders, files in os.walk(path)
            for name in folders + files if not name.endswith("-shm")]
        self.change("+i")
        if os.access(path, os.W_OK):
            self.change("-i")
            raise unittest.SkipTest("the file system of the test knows no immutable files")

    def unlock(self):
        self.change("-i")

    def change(self, flag):
        require("chattr", flag, *self.paths)
