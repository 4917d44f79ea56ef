#include "screen/grid_list.h"

#include <gtest/gtest.h>

#include "screen/screen.h"

namespace ktl {
namespace {

struct Person {
  std::string name;
  int age = 0;
};

class GridListTest : public testing::Test {
 protected:
  GridListTest() {
    people.SetColumns({{{"", CellType::Tick, 30}, nullptr},
                       {{"Name"}, &Person::name},
                       {{"Age", CellType::Number}, [](const Person& p) { return std::to_string(p.age); }}});
    people.paint = [this](std::size_t line, const Person& person) {
      grid.PaintRow(line, person.age > 60 ? kToolTipColour : kNoColour);
    };
  }

  Screen screen{"frmPeople"};
  Grid grid{screen, "fpgPeople"};
  GridList<Person> people{grid};
};

TEST_F(GridListTest, ALineShowsItsRow) {
  people.Show({{"Asha Rane", 30}, {"Vikram Desai", 61}});
  ASSERT_EQ(grid.columns.size(), 3u);
  EXPECT_EQ(grid.columns[2].caption, "Age");
  EXPECT_EQ(grid.Text(0, 0) + "|" + grid.Text(0, 1) + "|" + grid.Text(0, 2), "|Asha Rane|30");
  EXPECT_EQ(grid.At(0, 1).backColour, kNoColour);
  EXPECT_EQ(grid.At(1, 1).backColour, kToolTipColour);
  EXPECT_EQ(people.At(1)->age, 61);
  EXPECT_EQ(people.At(2), nullptr);

  people.Rows()[1] = {"Vikram Desai", 59};
  EXPECT_EQ(grid.Text(1, 2), "61");
  people.ShowAgain(1);
  EXPECT_EQ(grid.Text(1, 2), "59");
  EXPECT_EQ(grid.At(1, 1).backColour, kNoColour);
}

TEST_F(GridListTest, TheActiveLineStaysWhileThereAreAsManyLines) {
  people.Show({{"A", 1}, {"B", 2}});
  EXPECT_EQ(people.Active(), nullptr);
  grid.activeRow = 1;
  people.Show({{"C", 3}, {"D", 4}, {"E", 5}});
  ASSERT_NE(people.Active(), nullptr);
  EXPECT_EQ(people.Active()->name, "D");
  people.Show({{"F", 6}});
  EXPECT_EQ(people.Active(), nullptr);
  EXPECT_EQ(grid.activeRow, kNoRow);
}

TEST_F(GridListTest, TickedRowsComeInTheirOrder) {
  people.Show({{"A", 1}, {"B", 2}, {"C", 3}});
  grid.At(2, 0).text = grid.At(0, 0).text = "1";
  grid.At(1, 0).text = "0";
  const auto ticked = people.Ticked(0);
  ASSERT_EQ(ticked.size(), 2u);
  EXPECT_EQ(ticked[0]->name + ticked[1]->name, "AC");
}

}  // namespace
}  // namespace ktl
