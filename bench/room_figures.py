"""What the history costs by itself, without a desktop: a choice of what HistoryBench measures."""
import json
import os
import subprocess


class RoomFigures:
    def __init__(self, session, bench_path):
        self.session = session
        self.bench_path = bench_path

    def rows(self):
        return (
            ("addItem of a 200-byte text until the list has it", "0.3 ms",
             lambda: self.median("addUntilListed/{}/list_held:1")),
            ("the same until it is committed in the database", "5 ms",
             lambda: self.median("addUntilCommitted/{}")),
            ("load of the corpus at start", "50 ms", lambda: self.median("start/{}")),
            ("items copy", "1 us", self.items_copy),
            ("clearHistory with compaction", "300 ms", lambda: self.median("clearHistory/{}")),
        )

    def median(self, name):
        run = self.run(name)
        return run if isinstance(run, str) else (
            f"{run['median_ms']:.3g} ms (95 % within {run['p95_ms']:.3g} ms)")

    def items_copy(self):
        run = self.run("itemsCopy/{}")
        return run if isinstance(run, str) else f"{run['real_time']:.0f} {run['time_unit']}"

    def run(self, name):
        """The figures of one benchmark, or a text that tells why there are none."""
        if not os.path.exists(self.bench_path):
            return "build HistoryBench: cmake --preset release -DTESSARINE_BENCH=ON"
        name = name.format(self.session.count)
        printed = subprocess.run(
            [self.bench_path, f"--benchmark_filter=^{name}(/|$)", "--benchmark_format=json"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            check=True, timeout=600).stdout
        return json.loads(printed)["benchmarks"][0]
