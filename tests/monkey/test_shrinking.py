"""How the monkey's findings are shortened, and where its seed comes from."""
import random
import unittest

from monkey import came_to_its_end, finding, locale_of, seed_of, shortened
from turns import part_of


def numbers(sequence):
    """The calls that "--only" would make."""
    made = []
    for part in map(str, sequence):
        first, _, last = part.partition("-")
        made += range(int(first), int(last or first) + 1)
    return made


class Shrinking(unittest.TestCase):
    def test_only_the_calls_that_it_takes_are_left(self):
        dice = random.Random(7)
        for takes in [[0], [99], [0, 99], [3, 17, 40], [50, 51, 52, 53], sorted(dice.sample(range(1000), 6))]:
            def happens(sequence, takes=takes):
                return set(takes) <= set(numbers(sequence))

            self.assertEqual(shortened(takes[-1], happens), takes)

    def test_a_finding_is_read_from_what_the_monkey_printed(self):
        self.assertEqual(finding("5 calls\nexception C0000005 in call 12: Beep(null) \n"),
                         ("exception C0000005", 12, "Beep(null) "))
        self.assertEqual(finding("no end in call 3: Wait() "), ("no end", 3, "Wait() "))
        self.assertIsNone(finding("10 calls; handles 3\ngrowth since call 2\n"))

    def test_a_run_that_something_else_ended_is_none(self):
        whole = "5000 calls; GDI 12, USER 4, handles 4, blocks 8, 2 KiB\n608 exports; of the calls 300 in rows\n"
        self.assertTrue(came_to_its_end(whole))
        self.assertFalse(came_to_its_end(whole.splitlines()[0] + "\n"))
        self.assertFalse(came_to_its_end(""))

    def test_each_commit_has_a_seed_of_its_own_and_no_commit_a_fixed_one(self):
        self.assertEqual(seed_of("0123456789abcdef0123456789abcdef01234567")[0], 0x0123456789ab)
        self.assertNotEqual(seed_of("a" * 40), seed_of("b" * 40))
        seed, source = seed_of("")
        self.assertEqual(seed, 1)
        self.assertIn("fixed", source)

    def test_seeds_take_turns_in_the_locales_that_there_are(self):
        self.assertEqual({locale_of(seed) for seed in (6, 7)}, {"ja_JP.UTF-8", "C"})
        self.assertEqual(locale_of(6), locale_of(8))
        self.assertEqual({locale_of(seed, ["C"]) for seed in range(4)}, {"C"})

    def test_every_part_comes_in_every_locale(self):
        taken = {(locale_of(seed), part_of(seed, 6)) for seed in range(1000, 1012)}
        self.assertEqual(taken, {(locale, f"{part}/6") for locale in ("ja_JP.UTF-8", "C") for part in range(6)})


if __name__ == "__main__":
    unittest.main()
