"""Dates on machines in several zones: TZ is the zone of the small host's machine."""
import calendar
import datetime
import os
import time
import unittest
from unittest import mock

from host import HostTest

# No zone of the system is needed. At any time of the year one of these two has summer time.
NORTH = "PST8PDT,M3.2.0,M11.1.0"
SOUTH = "AEST-10AEDT,M10.1.0,M4.1.0/3"
ZONES = ("UTC0", "JST-9", "IST-5:30", "NST3:30", "MST7", "LINT-14", "BIT12", NORTH, SOUTH)

MOMENT = (2024, 3, 5, 17, 7, 3)  # UTC
TEXTS = ("Tue, 5 Mar 2024 09:07:03 -0800", "Wed, 6 Mar 2024 02:07:03 +0900 (JST)", "2024-03-05T22:37:03+05:30",
         "Tue, 5 Mar 2024 13:37:03 -0330", "Tue Mar  5 17:07:03 GMT 2024", "6 Mar 24 7:07:03 +1400")
# Summer time is in force on one, on the other, and on neither in the zones above.
JULY, JANUARY, APRIL = "1 Jul 2024 12:00:00 GMT", "1 Jan 2024 12:00:00 GMT", "7 Apr 2024 12:00:00 GMT"


class Machine:
    """What the clock of a machine in `zone` shows, by its present distance from UTC."""

    def __init__(self, zone):
        self.zone = zone
        with mock.patch.dict(os.environ, TZ=zone):
            time.tzset()
            self.east_seconds = time.localtime().tm_gmtoff
        time.tzset()

    def zone_text(self):
        minutes = abs(self.east_seconds) // 60
        return ("-" if self.east_seconds < 0 else "+") + "%02d%02d" % divmod(minutes, 60)

    def shown(self, form, *utc):
        return time.strftime(form, time.gmtime(calendar.timegm(utc) + self.east_seconds))


def dates_show_the_machines_clock_and_with_o_their_own(machine):
    here = machine.shown("%Y-%m-%d %H:%M:%S", *MOMENT)
    for text in TEXTS:
        yield f'FormatDate("{text}", "YYYY-MM-DD hh:mm:ss")', here
    yield f'FormatDate("{TEXTS[0]}", "oYYYY-MM-DD hh:mm:ss")', "2024-03-05 09:07:03"
    yield f'FormatDate("{TEXTS[2]}", "ohh:mm")', "22:37"
    yield 'FormatDate("5 Mar 2024 09:07:03", "DD hh:mm")', "05 09:07"
    yield 'FormatDate("5 Mar 2024 09:07:03", "oDD hh:mm")', "05 09:07"


def a_shifted_date_names_its_moment(machine):
    form = "%a, %d %b %Y %H:%M:%S "
    for text in TEXTS:
        yield f'ShiftDate("{text}", 0)', machine.shown(form, *MOMENT) + machine.zone_text()
    new_year = machine.shown(form, 2024, 12, 31, 23, 30, 0) + machine.zone_text()
    yield 'ShiftDate("1 Jan 2025 00:30:00 +0100", 0)', new_year
    yield 'ShiftDate("5 Mar 2024 09:07:03", 1)', "Wed, 06 Mar 2024 09:07:03 " + machine.zone_text()


def differences_do_not_depend_on_zones(machine):
    for text in TEXTS:
        yield f'SubtractDate("{text}", "{TEXTS[0]}", "second")', "0"
        yield f'SubtractDate("{TEXTS[1]}", "{text}", null)', "0"
    yield f'SubtractDate("{JULY}", "{JANUARY}", "hour")', str(182 * 24)
    yield f'SubtractDate("{JANUARY}", "{APRIL}", "hour")', str(-97 * 24)
    yield f'SubtractDate("{JULY}", "{APRIL}", "minute")', str(85 * 24 * 60)
    yield f'SubtractDate("{JULY}", "{JANUARY}", null)', "182"


def days_are_those_of_the_machines_calendar(machine):
    later, earlier = (2024, 3, 1, 1, 0, 0), (2024, 2, 28, 20, 0, 0)  # UTC; a leap day lies between
    dates = [datetime.date.fromisoformat(machine.shown("%Y-%m-%d", *utc)) for utc in (later, earlier)]
    days = (dates[0] - dates[1]).days
    texts = '"1 Mar 2024 10:00:00 +0900"', '"28 Feb 2024 12:00:00 -0800"'
    yield f"SubtractDate({texts[0]}, {texts[1]}, null)", str(days)
    yield f"SubtractDate({texts[1]}, {texts[0]}, null)", str(-days)


class Zones(HostTest):
    def run_in(self, machine, source):
        with mock.patch.dict(os.environ, TZ=machine.zone):
            return self.run_macro(source)

    def assert_prints(self, machine, pairs):
        """Each pair is an expression and what it prints."""
        result = self.run_in(machine, "".join(f"print {expression}\n" for expression, _ in pairs))
        self.assert_success(result)
        printed = list(zip((expression for expression, _ in pairs), result.out.splitlines()))
        self.assertEqual(printed, pairs)

    def test_every_zone_reckons_with_moments(self):
        for machine in map(Machine, ZONES):
            with self.subTest(machine.zone):
                self.assert_prints(machine, [*dates_show_the_machines_clock_and_with_o_their_own(machine),
                                             *a_shifted_date_names_its_moment(machine),
                                             *differences_do_not_depend_on_zones(machine),
                                             *days_are_those_of_the_machines_calendar(machine)])

    def test_the_machine_is_in_the_zone(self):
        for machine in map(Machine, ("IST-5:30", NORTH, SOUTH)):
            with self.subTest(machine.zone):
                result = self.run_in(machine, 'print CurrentDate("")')
                self.assertTrue(result.out.endswith(" " + machine.zone_text() + "\n"), result)

    def test_the_documented_example(self):
        self.assert_prints(Machine("JST-9"), [(f'FormatDate("{TEXTS[0]}", "DD hh:mm")', "06 02:07"),
                                              (f'FormatDate("{TEXTS[0]}", "oDD hh:mm")', "05 09:07"),
                                              (f'ShiftDate("{TEXTS[0]}", 0)', "Wed, 06 Mar 2024 02:07:03 +0900")])


if __name__ == "__main__":
    unittest.main()
