// What a soak finds, and what it counts: lines on standard output, which soak.py reads.
//
//   held: after 2000: 61 handles, 24 GDI objects, 9 USER objects, 0 blocks of memory, 8123 KiB
//   finding: open 1234 (half-body): ...
//   count: 4711 page: whole
#pragma once

#include <string>
#include <vector>

#include "tests/monkey/holdings.h"

namespace soak {

// These three from any thread.
void Find(const std::string& what);
void Count(const std::string& what);
// At once, whole beside the lines of other processes.
void Print(const std::string& line);

// Prints the counts. The exit code: 0 when nothing was found.
int Conclude();

// What the process holds at moments at which it has nothing in hand.
class Flatness {
 public:
  // Where the system does not tell how many USER objects a process has, all of the desktop's are counted: that
  // means something only while no other program makes any.
  enum Company { kAlone, kAmongOthers };
  explicit Flatness(Company company) : company_(company) {}

  // The first measure is taken when caches are filled.
  void Measure(unsigned long long done);
  // Finds what grew from each measure to the next, or in all by more than caches and fragments do.
  void Judge() const;

 private:
  Company company_;
  std::vector<monkey::Holdings> measures_;
};

// Numbers of the command line.
unsigned long long Number(const char* word);

}  // namespace soak
