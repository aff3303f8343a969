// Requests of the catalogue that the small host does not serve yet, as forms.h writes them. A test holds the list
// exact and prints it as it should be: whoever serves one takes it out.
#pragma once

namespace services_test {

inline constexpr char kNotServed[] = R"(
11 34 35 36 37 41 63 64 65 66 67 70 80 142 148 155 156 164 168 178 179 182 192 254 280 295 296 298
299:0 299:1 304 312 M40003 M40059 M40143 M40144 M40365 M40407 M40443 M40444 M40459
)";

}  // namespace services_test
