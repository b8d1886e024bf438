# What scripts/bench prints of its rounds: medians, ratios to the floor, and the least where only the
# processor counts.
import json
import subprocess
import tempfile
import unittest
from pathlib import Path

REPORT = Path(__file__).resolve().parents[2] / "bench" / "report.py"


def rounds(name, cpu, clock=None, family=0, **more):
    return [{"run_name": name, "run_type": "iteration", "family_index": family, "time_unit": "ns",
             "cpu_time": c, "real_time": r, **more} for c, r in zip(cpu, clock or cpu)]


class BenchReport(unittest.TestCase):
    def printed(self, *runs):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "runs.json"
            path.write_text(json.dumps({"benchmarks": sum(runs, [])}))
            answer = subprocess.run([REPORT, path], capture_output=True, text=True, check=True)
        return answer.stdout.splitlines()

    def compared(self, then, now):
        with tempfile.TemporaryDirectory() as folder:
            files = {}
            for half, turns in (("then", then), ("now", now)):
                for turn, times in enumerate(turns):
                    path = Path(folder) / f"{half}.{turn}.json"
                    path.write_text(json.dumps({"benchmarks": rounds("novo/memory/c", times)}))
                    files.setdefault(half, []).append(str(path))
            return subprocess.run([REPORT, "--compare", *files["then"], "--", *files["now"]],
                                  capture_output=True, text=True)

    def test_ratios_are_of_medians_and_in_memory_of_the_least_too(self):
        self.assertEqual(
            ["| operation | storage | floor, µs | component |",
             "|---|---|---|---|",
             "| `novo` | memory | 2.00 | 1.50 |",
             "| `novo` | normal | 9.00 | 2.00 |",
             "",
             "| operation | storage | floor, µs | component |",
             "|---|---|---|---|",
             "| `novo` | memory | 1.00 | 2.50 |",
             ""],
            self.printed(rounds("novo/memory/c", [1000, 2000, 9000], [7, 7, 7]),
                         rounds("novo/memory/component", [2500, 3000, 8000]),
                         rounds("novo/normal/c", [1, 1, 1], [8000, 9000, 50000]),
                         rounds("novo/normal/component", [1, 1, 1], [18000, 12000, 60000])))

    def test_without_rounds_in_memory_there_is_one_table(self):
        self.assertEqual(4, len(self.printed(rounds("novo/full/c", [1]), rounds("novo/full/component", [2]))))

    def test_calls_have_the_least_beside_the_median(self):
        self.assertEqual(["| call | ns | least |", "|---|---|---|", "| call/direct | 20 | 10 |", ""],
                         self.printed(rounds("call/direct", [10, 20, 90])))

    def test_texts_have_the_best_beside_the_median(self):
        text = [rounds("left/2kB" + who, [1], bytes_per_second=rate * 1e6)[0]
                for who, rate in (("", 100), ("", 300), ("", 200), ("/literal", 7))]
        self.assertEqual(["| text | MB/s | best | by the literal steps |", "|---|---|---|---|",
                          "| left/2kB | 200 | 300 | 7 |", ""], self.printed(text))

    def test_two_revisions_are_compared_turn_by_turn(self):
        self.assertEqual(["| | then, µs | now, µs | ratio | lowest | highest |", "|---|---|---|---|---|---|",
                          "| novo/memory/c | 2.00 | 1.50 | 0.75 | 0.50 | 1.25 |"],
                         self.compared(then=[[2000], [8000], [1200]],
                                       now=[[1000], [6000], [1500]]).stdout.splitlines())

    def test_what_one_revision_alone_measures_is_left_out_of_a_comparison(self):
        self.assertEqual(2, len(self.compared(then=[[]], now=[[5]]).stdout.splitlines()))

    def test_a_turn_that_measured_nothing_is_told(self):
        answer = self.compared(then=[[5], [5]], now=[[5], []])
        self.assertEqual(1, answer.returncode)
        self.assertIn("novo/memory/c: measured 2 times then and 1 times now", answer.stderr)


if __name__ == "__main__":
    unittest.main()
