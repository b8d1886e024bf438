# `pelm translate`: text in, text out, and no text that would keep it for ever.
import unittest

from pelm_program import run


class Translate(unittest.TestCase):
    def test_sql_server_becomes_oracle(self):
        answer = run("translate", text="select isnull(a,0) from t")
        self.assertEqual((0, "SELECT NVL(A,0) FROM T"), (answer.returncode, answer.stdout))

    def test_a_text_that_would_never_end_is_refused(self):
        answer = run("translate", text="select getdate()")
        self.assertEqual((2, ""), (answer.returncode, answer.stdout))
        self.assertIn("GETDATE(", answer.stderr)
        self.assertIn("never end", answer.stderr)

    def test_a_text_that_cannot_be_taken_apart_fails(self):
        answer = run("translate", text="=* x")
        self.assertEqual((1, ""), (answer.returncode, answer.stdout))
        self.assertIn("cannot be taken apart", answer.stderr)


if __name__ == "__main__":
    unittest.main()
