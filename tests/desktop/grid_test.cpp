#include <fmt/format.h>

#include <QHeaderView>
#include <QMenu>

#include "desktop/grid_foot.h"
#include "desktop/toy_screen.h"

namespace ktl {
namespace {

enum Column { kPick, kMonth, kId, kAmount };

class GridTest : public ToyTest {
 protected:
  static void Click(QTableView& view, int row, int column) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, Place(view, row, column));
    Settle();
  }
  static QPoint Place(QTableView& view, int row, int column) {
    return view.visualRect(view.model()->index(row, column)).center();
  }
  static void Press(QTableView& view, Qt::Key key) {
    QTest::keyClick(&view, key);
    Settle();
  }
  // Of the cell that is current; nothing where it is locked.
  static QLineEdit* Editor(QTableView& view) {
    QTest::keyClick(&view, Qt::Key_F2);
    return view.viewport()->findChild<QLineEdit*>();
  }
  static QString Shown(QTableView& view, int row, int column) {
    return view.model()->index(row, column).data().toString();
  }
};

TEST_F(GridTest, AClickIsHeardWithItsRowActive) {
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    Click(view, 1, kAmount);
    EXPECT_EQ(screen.fpgRows.activeRow, 1u);
    EXPECT_EQ(screen.heard, Heard{"row 1"});
    Press(view, Qt::Key_Down);
    EXPECT_EQ(screen.heard, (Heard{"row 1", "row 2"}));
    QTest::keyClick(&view, Qt::Key_Return);  // a locked cell
    EXPECT_EQ(screen.heard.back(), "open 2");
  });
}

TEST_F(GridTest, TheRowInWorkStaysInSightWhenTheListGetsLower) {
  WorkAt<QTableView>("fpgRows", [](QTableView& view) {
    const int last = view.model()->rowCount() - 1;
    Click(view, last, kAmount);
    view.setFixedHeight(view.horizontalHeader()->height() + 2 * view.rowHeight(0));
    Settle();
    EXPECT_TRUE(view.viewport()->rect().contains(Place(view, last, kAmount)));
  });
}

TEST_F(GridTest, AnEmptyListAndAColourAreToldInWords) {
  screen.lblHelp.backColour = 0xC0FFC0;
  screen.fpgRows.PaintRow(1, 0xC0FFC0);
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    EXPECT_EQ(view.model()->index(1, kAmount).data(Qt::ToolTipRole), "Help");
    EXPECT_EQ(view.model()->index(0, kAmount).data(Qt::ToolTipRole), "");
    const auto& words = Find<QLabel>(view, "emptyWords");
    EXPECT_FALSE(words.isVisible());
    screen.fpgRows.Clear();
    desk.Refresh();
    EXPECT_TRUE(words.isVisible());
    EXPECT_EQ(words.text(), "Nothing to show here yet.");
  });
}

TEST_F(GridTest, TheFocusAlonePicksNoRow) {
  screen.fpgRows.activeRow = kNoRow;
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    view.clearFocus();
    view.setFocus();
    Settle();
    EXPECT_EQ(screen.heard, Heard{});
    EXPECT_EQ(screen.fpgRows.activeRow, kNoRow);
    QTest::keyClick(&view, Qt::Key_Down);
    Settle();
    EXPECT_EQ(screen.heard, Heard{"row 0"});
  });
}

TEST_F(GridTest, ATickIsTheWholeCellAndTheRowIsClickedFirst) {
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    const QRect cell = view.visualRect(view.model()->index(1, kPick));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(3, 3));
    Settle();
    EXPECT_EQ(screen.heard, (Heard{"row 1", "cell 1 1"}));
    Press(view, Qt::Key_Space);
    EXPECT_EQ(screen.heard.back(), "cell 1 0");
    screen.fpgRows.At(1, kPick).locked = true;
    desk.Refresh();
    Click(view, 1, kPick);
    Press(view, Qt::Key_Space);
    EXPECT_FALSE(screen.fpgRows.IsTicked(1, kPick));
  });
}

TEST_F(GridTest, ATypedCellIsToldAfterItsEditorIsClosed) {
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    Click(view, 0, kMonth);
    screen.heard.clear();
    screen.fpgRows.onCellChange = [this, &view](std::size_t, std::size_t column) {
      screen.heard.push_back(screen.fpgRows.Text(0, column));
      EXPECT_FALSE(view.isPersistentEditorOpen(view.currentIndex()));
      screen.fpgRows.At(0, column).text = "Jul/2026";
    };
    QLineEdit* editor = Editor(view);
    ASSERT_TRUE(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "7/2026");
    QTest::keyClick(editor, Qt::Key_Return);
    Settle();
    EXPECT_EQ(screen.heard.front(), "7/2026");
    EXPECT_EQ(Shown(view, 0, kMonth), "Jul/2026");
    view.setCurrentIndex(view.model()->index(0, kAmount));
    EXPECT_FALSE(Editor(view));  // locked
  });
}

TEST_F(GridTest, EnterGoesToTheCellBelowWithTheEditTold) {
  screen.fpgRows.onDblClick = {};
  screen.fpgRows.rows[1].hidden = true;
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    Click(view, 0, kMonth);
    screen.heard.clear();
    QLineEdit* editor = Editor(view);
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, "!");
    QTest::keyClick(editor, Qt::Key_Return);
    Settle();
    EXPECT_EQ(screen.heard, (Heard{"cell 0 !", "row 2"}));
    EXPECT_EQ(view.currentIndex(), view.model()->index(2, kMonth));
    Press(view, Qt::Key_Return);  // the last row
    EXPECT_EQ(view.currentIndex().row(), 2);
    view.setCurrentIndex(view.model()->index(0, kAmount));
    Press(view, Qt::Key_Return);
    EXPECT_EQ(view.currentIndex(), view.model()->index(2, kAmount)) << "a locked one";
  });
}

TEST_F(GridTest, TheCurrentCellIsFramedWhereCellsAreEdited) {
  for (const bool edited : {true, false}) {
    for (GridColumn& column : screen.fpgRows.columns) column.locked = !edited;
    WorkAt<QTableView>("fpgRows", [=](QTableView& view) {
      view.setFocus();
      view.setCurrentIndex(view.model()->index(1, kMonth));
      const QRect cell = view.visualRect(view.currentIndex());
      const QColor edge = view.viewport()->grab().toImage().pixelColor(cell.center().x(), cell.top() + 1);
      EXPECT_EQ(edge == view.palette().color(QPalette::Highlight), edited);
    });
  }
}

TEST_F(GridTest, OneRowIsMarkedWhereAClickShowsIt) {
  const auto markTwo = [this] {
    int marked = 0;
    WorkAt<QTableView>("fpgRows", [&marked](QTableView& view) {
      Click(view, 0, kAmount);
      QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, Place(view, 1, kAmount));
      marked = int(view.selectionModel()->selectedRows().size());
    });
    return marked;
  };
  EXPECT_EQ(markTwo(), 1);
  screen.fpgRows.onRowClick = {};
  EXPECT_EQ(markTwo(), 2);
}

TEST_F(GridTest, ABlockGoesWhereItIsMarkedAndComesBackAsItWas) {
  screen.fpgRows.onPaste = [this](const GridRange& range, const std::string& block) {
    screen.heard.push_back(fmt::format("{}-{} {}-{} {}", range.firstRow, range.lastRow, range.firstColumn,
                                       range.lastColumn, block));
  };
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    Click(view, 2, kAmount);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, Place(view, 1, kMonth));
    screen.heard.clear();
    EXPECT_EQ(Copied(view), "May/2026\t200.00\nJun/2026\t300.00");
    QTest::keyClick(&view, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(screen.heard.back(), "1-2 1-3 May/2026\t200.00\nJun/2026\t300.00");
  });
}

TEST_F(GridTest, ShowsWhatTheControlHolds) {
  screen.fpgRows.rows[1].hidden = true;
  screen.fpgRows.activeRow = 2;
  screen.fpgRows.PaintRow(2, 0xC0FFC0);
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    EXPECT_TRUE(view.isColumnHidden(kId));
    EXPECT_TRUE(view.isRowHidden(1));
    EXPECT_EQ(view.currentIndex().row(), 2);
    EXPECT_EQ(view.model()->index(2, kMonth).data(Qt::BackgroundRole).value<QColor>(),
              QColor(0xC0, 0xFF, 0xC0));
    EXPECT_EQ(view.horizontalHeader()->length(), view.viewport()->width());
    screen.fpgRows.rows[1].hidden = false;
    screen.fpgRows.rows.pop_back();
    screen.fpgRows.activeRow = kNoRow;
    desk.Refresh();
    EXPECT_FALSE(view.isRowHidden(1));
    EXPECT_EQ(view.model()->rowCount(), 2);
    EXPECT_FALSE(view.currentIndex().isValid());
  });
}

TEST_F(GridTest, CopiesSelectionOrAll) {
  screen.fpgRows.At(0, kPick).text = "1";
  screen.fpgRows.rows[2].hidden = true;
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    const QString heading = "Pick\tMonth\tAmount\n", second = "No\tMay/2026\t200.00\n";
    const QString all = heading + "Yes\tApr/2026\t100.00\n" + second;
    view.setFocus();
    view.clearSelection();
    EXPECT_EQ(Copied(view), all);
    Click(view, 1, kMonth);
    EXPECT_EQ(Copied(view), "May/2026") << "the framed cell";
    for (GridColumn& column : screen.fpgRows.columns) column.locked = true;
    desk.Refresh();
    Click(view, 1, kMonth);
    EXPECT_EQ(Copied(view), heading + second);
    EXPECT_EQ(Copied(view, Qt::ControlModifier | Qt::ShiftModifier), all);
  });
}

TEST_F(GridTest, GroupsAmountsForReadingOnly) {
  const std::pair<const char*, const char*> shown[] = {
      {"1234567.89", "12,34,567.89"},
      {"-100000.50", "-1,00,000.50"},
      {"999.00", "999.00"},
      {"0.00", "0.00"},
      {"1234567", "1234567"},
      {"12,34,567.89", "12,34,567.89"},
      {"about 5000.00", "about 5000.00"},
      {"", ""},
  };
  screen.fpgRows.rows.clear();
  for (const auto& [text, grouped] : shown) screen.fpgRows.rows.push_back({{{"0"}, {text}, {text}, {text}}});
  screen.fpgRows.columns[kAmount].locked = false;
  WorkAt<QTableView>("fpgRows", [&](QTableView& view) {
    for (int row = 0; row < int(std::size(shown)); ++row) {
      EXPECT_EQ(Shown(view, row, kAmount), shown[row].second);
      EXPECT_EQ(Shown(view, row, kMonth), shown[row].first);  // no number column
    }
    view.setFocus();
    view.setCurrentIndex(view.model()->index(0, kAmount));
    EXPECT_EQ(Copied(view), "1234567.89");
    QLineEdit* editor = Editor(view);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->text(), "1234567.89");
  });
}

TEST_F(GridTest, SumsStandInTheFootAndOfWhatIsMarkedBelow) {
  screen.fpgRows.summed = {kAmount};
  screen.fpgRows.onPaste = [](const GridRange&, const std::string&) {};
  screen.fpgRows.rows[1].cells[kAmount].text = "123456.10";
  Work([this](ScreenWindow& window) {
    auto& view = Find<QTableView>(window, "fpgRows");
    const auto& foot = dynamic_cast<const GridFoot&>(Find<QWidget>(window, "gridFoot"));
    const auto& marked = Find<QLabel>(window, "statusSelection");
    EXPECT_EQ(foot.TextOf(kAmount), "1,23,856.10");
    EXPECT_EQ(foot.TextOf(kMonth), "Total");
    EXPECT_EQ(marked.text(), "3 rows");
    Click(view, 0, kAmount);
    EXPECT_EQ(marked.text(), "1 of 3 rows selected");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, Place(view, 1, kAmount));
    EXPECT_EQ(marked.text(), "2 of 3 rows selected, sum 1,23,556.10");
    screen.fpgRows.rows[1].hidden = true;
    desk.Refresh();
    EXPECT_EQ(foot.TextOf(kAmount), "400.00");
    EXPECT_EQ(marked.text(), "1 of 2 rows selected, sum 100.00");
    screen.fpgRows.visible = false;
    desk.Refresh();
    EXPECT_FALSE(foot.isVisible());
  });
}

TEST_F(GridTest, WholeRowsAreSummedByTheColumnThatWasClicked) {
  screen.fpgRows.onRowClick = nullptr;
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    view.selectAll();
    const auto words = [&view] { return Find<QLabel>(*view.window(), "statusSelection").text(); };
    EXPECT_EQ(words(), "3 of 3 rows selected");
    screen.fpgRows.summed = {kAmount};
    desk.Refresh();
    EXPECT_EQ(words(), "3 of 3 rows selected, Amount 600.00");
  });
}

TEST_F(GridTest, AGridWithoutAnExportOfItsOwnOffersOne) {
  screen.fpgRows.onExport = [this] { screen.heard.push_back("written"); };
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    QTimer::singleShot(20, qApp, [] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_TRUE(menu);
      menu->setActiveAction(menu->actions().last());
      QTest::keyClick(menu, Qt::Key_Return);
    });
    emit view.customContextMenuRequested(Place(view, 0, kMonth));
    EXPECT_EQ(screen.heard, Heard{"written"});
  });
}

TEST_F(GridTest, TheRightButtonOpensTheScreensMenu) {
  WorkAt<QTableView>("fpgRows", [this](QTableView& view) {
    QTimer::singleShot(20, qApp, [] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_TRUE(menu);
      QTest::keyClick(menu, Qt::Key_X);
    });
    emit view.customContextMenuRequested(Place(view, 0, kMonth));
    EXPECT_EQ(screen.heard, Heard{"export"});
  });
}

}  // namespace
}  // namespace ktl
