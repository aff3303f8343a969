"""Dates on machines in several zones: TZ is the zone of the small host's machine."""
import calendar
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


class Zones(HostTest):
    def run_in(self, machine, source):
        with mock.patch.dict(os.environ, TZ=machine.zone):
            return self.run_macro(source)

    def assert_prints(self, machine, *pairs):
        """Each pair is an expression and what it prints."""
        source = "".join(f"print {expression}\n" for expression, _ in pairs)
        with self.subTest(machine.zone):
            self.assert_output(self.run_in(machine, source), "".join(f"{value}\n" for _, value in pairs))

    def test_the_machine_is_in_the_zone(self):
        for zone in ZONES:
            machine = Machine(zone)
            with self.subTest(zone):
                result = self.run_in(machine, 'print CurrentDate("")')
                self.assertTrue(result.out.endswith(" " + machine.zone_text() + "\n"), result)

    def test_dates_show_the_machines_clock_and_with_o_their_own(self):
        for machine in map(Machine, ZONES):
            here = machine.shown("%Y-%m-%d %H:%M:%S", *MOMENT)
            self.assert_prints(machine, *((f'FormatDate("{text}", "YYYY-MM-DD hh:mm:ss")', here) for text in TEXTS),
                               (f'FormatDate("{TEXTS[0]}", "oYYYY-MM-DD hh:mm:ss")', "2024-03-05 09:07:03"),
                               (f'FormatDate("{TEXTS[2]}", "ohh:mm")', "22:37"),
                               ('FormatDate("5 Mar 2024 09:07:03", "DD hh:mm")', "05 09:07"),
                               ('FormatDate("5 Mar 2024 09:07:03", "oDD hh:mm")', "05 09:07"))

    def test_a_shifted_date_names_its_moment(self):
        for machine in map(Machine, ZONES):
            here = machine.shown("%a, %d %b %Y %H:%M:%S ", *MOMENT) + machine.zone_text()
            later = machine.shown("%a, %d %b %Y %H:%M:%S ", 2024, 12, 31, 23, 30, 0) + machine.zone_text()
            self.assert_prints(machine, *((f'ShiftDate("{text}", 0)', here) for text in TEXTS),
                               ('ShiftDate("1 Jan 2025 00:30:00 +0100", 0)', later),
                               ('ShiftDate("5 Mar 2024 09:07:03", 1)',
                                "Wed, 06 Mar 2024 09:07:03 " + machine.zone_text()))

    def test_differences_do_not_depend_on_zones(self):
        for machine in map(Machine, ZONES):
            self.assert_prints(machine,
                               *((f'SubtractDate("{one}", "{two}", "second")', 0) for one in TEXTS for two in TEXTS[:2]),
                               *((f'SubtractDate("{one}", "{TEXTS[0]}", null)', 0) for one in TEXTS),
                               (f'SubtractDate("{JULY}", "{JANUARY}", "hour")', 182 * 24),
                               (f'SubtractDate("{JANUARY}", "{APRIL}", "hour")', -97 * 24),
                               (f'SubtractDate("{JULY}", "{APRIL}", "minute")', 85 * 24 * 60),
                               (f'SubtractDate("{JULY}", "{JANUARY}", null)', 182))

    def test_days_are_those_of_the_machines_calendar(self):
        for machine in map(Machine, ZONES):
            one, two = (2024, 3, 1, 1, 0, 0), (2024, 2, 28, 20, 0, 0)  # UTC; a leap day lies between
            days = round((calendar.timegm(time.strptime(machine.shown("%Y-%m-%d", *one), "%Y-%m-%d")) -
                          calendar.timegm(time.strptime(machine.shown("%Y-%m-%d", *two), "%Y-%m-%d"))) / 86400)
            self.assert_prints(machine,
                               ('SubtractDate("1 Mar 2024 10:00:00 +0900", "28 Feb 2024 12:00:00 -0800", null)', days),
                               ('SubtractDate("28 Feb 2024 12:00:00 -0800", "1 Mar 2024 10:00:00 +0900", null)', -days))

    def test_the_documented_example(self):
        machine = Machine("JST-9")
        self.assert_prints(machine, (f'FormatDate("{TEXTS[0]}", "DD hh:mm")', "06 02:07"),
                           (f'ShiftDate("{TEXTS[0]}", 0)', "Wed, 06 Mar 2024 02:07:03 +0900"))


if __name__ == "__main__":
    unittest.main()
