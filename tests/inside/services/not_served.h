// Requests of the catalogue that the small host does not serve yet, as forms.h writes them. A test holds the list
// exact and prints it as it should be: whoever serves one takes it out.
#pragma once

namespace services_test {

inline constexpr char kNotServed[] = R"(
)";

}  // namespace services_test
