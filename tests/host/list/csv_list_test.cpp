#include "host/list/csv_list.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

using Columns = std::vector<CsvColumn>;

TEST(CsvList, ColumnsAreNamedInAnyCaseAndOrder) {
  EXPECT_EQ(std::get<Columns>(ParseCsvColumns("Subject + date")),
            (Columns{CsvColumn::kSubject, CsvColumn::kDate}));
  EXPECT_EQ(std::get<Columns>(ParseCsvColumns("")).size(), 6u);
  EXPECT_EQ(std::get<std::string>(ParseCsvColumns("date+colour")), "colour");
  EXPECT_EQ(std::get<std::string>(ParseCsvColumns("date+")), "");
}

TEST(CsvList, EveryColumnHasItsOwnName) {
  for (const char* name : {"date", "from", "to", "cc", "subject", "size", "folder", "file", "unread"}) {
    EXPECT_EQ(NameOf(std::get<Columns>(ParseCsvColumns(name)).at(0)), name);
  }
}

TEST(CsvList, AWordThatIsNoColumnNamesThoseThereAre) {
  EXPECT_EQ(NoCsvColumn("sender"),
            "no column 'sender'; there are date, from, to, cc, subject, size, folder, file and unread, with "
            "+ between them");
}

TEST(CsvList, ValuesAreQuotedWhereTheyMustBe) {
  EXPECT_EQ(CsvLine({"a", "b, c", "say \"x\"", "", "two\nlines"}),
            "a,\"b, c\",\"say \"\"x\"\"\",,\"two\nlines\"\r\n");
}

}  // namespace
}  // namespace wrenfold
