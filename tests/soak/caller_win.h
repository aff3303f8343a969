// A program that sends mails through the system's Simple MAPI, and sees what becomes of each hand-over.
#pragma once

namespace soak {

struct CallerPlan {
  unsigned long long seed;
  unsigned long long first;  // the numbers of its mails: first, first + step, ... below `last`
  unsigned long long last;
  unsigned step;
};

// Prints a line for each mail, as soak.py reads it:
//
//   mail: 17 began 4711000 ended 4711032 answered
//   mail: 18 began 4711040 ended 4712100 unanswered, error 5
//   mail: 19 began 4712105 ended 4712300 not handed over; box: The mail could not be ...
//
// Times are milliseconds of the system's clock.
void SendMails(const CallerPlan& plan);

}  // namespace soak
