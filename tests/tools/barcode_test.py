# `pelm barcode`: which check digit of a payment slip is wrong, and the exit status.
import unittest

from pelm_program import run

COLLECTION = "83682000000045001234567890123456789012345678"
BANK = "00193373700000001000500940144816060680935031"
TYPED = "00190500954014481606906809350314337370000000100"


class Barcode(unittest.TestCase):
    def test_right_codes_end_well(self):
        answer = run("barcode", COLLECTION, BANK, TYPED)
        self.assertEqual(0, answer.returncode, answer.stderr)
        self.assertEqual([f"{COLLECTION}: right, barcode of a collection slip",
                          f"{BANK}: right, barcode of a bank slip",
                          f"{TYPED}: right, typed line of a bank slip"], answer.stdout.splitlines())

    def test_punctuation_does_not_count(self):
        answer = run("barcode", "00190.50095 40144.816069 06809.350314 3 37370000000100")
        self.assertEqual(0, answer.returncode, answer.stdout)

    def test_the_failed_check_is_told(self):
        cases = [
            ("83602000000045001234567890123456789012345677", "modulus 10, check digit at position 4"),
            ("00192373700000001000500940144816060680935031", "modulus 11, check digit at position 5"),
            ("1" + TYPED[1:], "modulus 10 of field 1 (check digit at position 10)"),
            (TYPED[:15] + "0" + TYPED[16:], "modulus 10 of field 2 (check digit at position 21)"),
            (TYPED[:31] + "5" + TYPED[32:], "modulus 10 of field 3 (check digit at position 32)"),
            ("1" + TYPED[1:31] + "5" + TYPED[32:],
             "modulus 10 of field 1 (check digit at position 10), 3 (check digit at position 32)"),
        ]
        for code, reason in cases:
            with self.subTest(code):
                answer = run("barcode", code)
                self.assertEqual(1, answer.returncode)
                self.assertIn("WRONG", answer.stdout)
                self.assertTrue(answer.stdout.strip().endswith(reason), answer.stdout)

    def test_what_cannot_be_checked_is_refused(self):
        for code in ["123", COLLECTION + "0", BANK[:-1] + "x", "ação"]:
            with self.subTest(code):
                answer = run("barcode", BANK, code)
                self.assertEqual(2, answer.returncode)
                self.assertIn(f"{code}: not checked", answer.stdout)


if __name__ == "__main__":
    unittest.main()
