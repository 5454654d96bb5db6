#!/usr/bin/python3
"""Measures the program on a private desktop with openbox, and prints a table.

    figures.py [--program build/release/bin/tessarine] [--counts 1000,10000] [--repeats 15]
               [--only TEXT] [--compositor picom]

With a compositor only the figures with the word "opening" are right: the others look at the screen.
Times are medians, with the shortest and the longest in brackets, and of many the 95th percentile.
The keys come by XTEST, the copies from clients of our own, and the moment from which time counts is
the one at which they are sent.
"""
import argparse
import os
import sys

sys.dont_write_bytecode = True

from session import ROOT, Session
from copy_figures import CopyFigures
from desktop import Desktop
from hostile_figures import HostileFigures
from list_figures import ListFigures
from paste_figures import PasteFigures
from process_figures import ProcessFigures
from room_figures import RoomFigures
from search_figures import SearchFigures
from window_figures import WindowFigures


def numbers(text):
    return [int(part) for part in text.split(",")]


def print_table(session, rows, counts):
    print("| What | Reach |", *(f"{count:,} entries |" for count in counts))
    print("|---|---|" + "---|" * len(counts))
    for what, reach, measure in rows:
        print(f"| {what} | {reach} |", end="", flush=True)
        for session.count in counts:
            print(f" {measure()} |", end="", flush=True)
        print(flush=True)


def main():
    parser = argparse.ArgumentParser(description="Measures the program and prints a table.")
    parser.add_argument("--program", default=os.path.join(ROOT, "build/release/bin/tessarine"))
    parser.add_argument("--counts", type=numbers, default=[1000, 10_000],
                        help="entries of the histories")
    parser.add_argument("--repeats", type=int, default=15)
    parser.add_argument("--idle", type=int, default=60, help="seconds of the idle measurement")
    parser.add_argument("--compositor", help="a compositor that runs besides")
    parser.add_argument("--only", default="", help="measure only the rows with this text")
    options = parser.parse_args()
    program = os.path.abspath(options.program)
    bench = os.path.join(os.path.dirname(program), "HistoryBench")
    with Desktop(compositor=options.compositor) as desktop:
        session = Session(desktop, program, options.repeats)
        parts = (RoomFigures(session, bench), CopyFigures(session), WindowFigures(session),
                 SearchFigures(session), ListFigures(session), PasteFigures(session),
                 ProcessFigures(session, options.idle), HostileFigures(session))
        rows = [row for part in parts for row in part.rows() if options.only in row[0]]
        print_table(session, rows, options.counts)
        session.end()


if __name__ == "__main__":
    main()
