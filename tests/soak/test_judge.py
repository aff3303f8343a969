"""That a soak tells what it is there to tell: mails that vanish, that come twice, that are lost without a reason."""
import unittest

from judge import AFTERLIFE_MS, ENOUGH_FOR_A_DEATH, Kill, Mail, judge, read

KILL = [Kill(1000, 1010)]


class Judging(unittest.TestCase):
    def test_what_may_become_of_a_mail_and_what_not(self):
        cases = [
            ("answered", 900, 950, 1, [], None, "as usual"),
            ("answered", 900, 950, 0, KILL, "answered, and did not arrive", "whatever was killed"),
            ("answered", 900, 950, 2, KILL, "arrived 2 times", "once and no more"),
            ("unanswered, error 0", 900, 1100, 0, KILL, None, "the host died over it"),
            ("unanswered, error 0", 900, 1100, 1, KILL, None, "the host died when it had kept it"),
            ("unanswered, error 0", 900, 1100, 2, KILL, "arrived 2 times", "nor without an answer"),
            ("unanswered, error 0", 900, 990, 0, KILL, "no host was killed meanwhile", "before the kill"),
            ("unanswered, error 0", 1011 + AFTERLIFE_MS, 9000, 0, KILL, "no host was killed meanwhile", "long after it"),
            ("unanswered, error 0", 1010 + AFTERLIFE_MS, 9000, 0, KILL, None, "its window stood for a moment"),
            ("unanswered, error 1460", 900, 11000, 0, [], "no host was killed meanwhile", "a host that hangs"),
            ("not handed over; box: it is lost", 900, 1100, 0, KILL, None, "the host that was found is gone"),
            ("not handed over", 900, 1100, 0, KILL, "not handed over, and nobody was told", "silence"),
            ("not handed over; box: it is lost", 900, 1100, 1, KILL, "not handed over, and arrived", "told for nothing"),
            ("refused; box: it is lost", 900, 950, 0, KILL, "the host could not keep it", "a full disk"),
        ]
        for outcome, began, ended, copies, kills, wrong, why in cases:
            with self.subTest(why):
                judgement = judge([Mail(1, began, ended, outcome)], kills, {1: copies} if copies else {}, [1], 1)
                self.assertEqual(judgement.findings, [f"mail 1 ({outcome}): {wrong}"] if wrong else [])

    def test_each_mail_has_an_end_and_a_sender(self):
        answered = Mail(1, 0, 1, "answered")
        self.assertEqual(judge([answered], [], {1: 1, 7: 1}, [1], 1).findings, ["mail 7: sent by nobody"])
        self.assertEqual(judge([answered], [], {1: 1}, [1, 2], 1).findings, ["mail 2: its caller did not come back"])

    def test_what_is_lost_is_counted_and_told(self):
        mails = [Mail(1, 900, 950, "answered"), Mail(2, 900, 1020, "unanswered, error 0"),
                 Mail(3, 900, 1030, "unanswered, error 0"), Mail(4, 900, 1040, "not handed over; box: it is lost")]
        judgement = judge(mails, KILL, {1: 1, 2: 1}, [1, 2, 3, 4], 2)
        self.assertEqual(judgement.findings, [])
        self.assertEqual(judgement.counts, {"answered": 1, "arrived without an answer": 1, "lost": 2,
                                            "lost: unanswered, error 0": 1,
                                            "lost: not handed over": 1})
        self.assertEqual(judgement.lost, ["mail 3 is lost: unanswered, error 0; 130 ms",
                                          "mail 4 is lost: not handed over; box: it is lost; 140 ms"])

    def test_one_death_takes_one_mail_of_each_caller(self):
        mails = [Mail(number, 900, 1020, "unanswered, error 5") for number in range(3)]
        self.assertEqual(judge(mails, KILL, {}, range(3), 3).findings, [])
        self.assertEqual(judge(mails, KILL, {}, range(3), 2).findings,
                         ["3 mails lost by 1 deaths of a host and 2 callers"])

    def test_a_soak_without_a_death_is_none(self):
        mails = [Mail(number, 900, 950, "answered") for number in range(ENOUGH_FOR_A_DEATH)]
        arrived = dict.fromkeys(range(ENOUGH_FOR_A_DEATH), 1)
        self.assertEqual(judge(mails, [], arrived, arrived, 8).findings, ["no host was killed"])
        self.assertEqual(judge(mails, KILL, arrived, arrived, 8).findings, [])

    def test_lines_of_callers_and_killer_are_read(self):
        printed = ("held: after 2: 3 handles\r\nmail: 17 began 47 ended 49 answered\r\nkill: at 50 to 52 process 320\n"
                   "mail: 18 began 49 ended 60 unanswered, error 1460\n")
        self.assertEqual(read(printed), ([Mail(17, 47, 49, "answered"), Mail(18, 49, 60, "unanswered, error 1460")],
                                         [Kill(50, 52)]))


if __name__ == "__main__":
    unittest.main()
