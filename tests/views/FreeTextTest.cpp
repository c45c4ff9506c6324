
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

class FreeTextFieldTest : public ::testing::Test {
 protected:
  FreeTextFieldTest() { field.show(); }

  void paste(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    field.paste();
  }

  FreeTextField field{PopupTheme::of({}, {}, {}), nullptr};
};

TEST_F(FreeTextFieldTest, RefusesABlankAtTheStartCutsAPasteAndLetsDeleteWhateverIsThere) {
  QTest::keyClicks(&field, " a b ");
  EXPECT_EQ(field.text(), "a b ");
  field.clear();
  paste(QString(200, 'x'));
  EXPECT_EQ(field.text(), QString(150, 'x'));
  QTest::keyClicks(&field, "y");
  EXPECT_EQ(field.text(), QString(150, 'x')) << "a full field takes nothing more";
  QTest::keyClick(&field, Qt::Key_Backspace);
  EXPECT_EQ(field.text().size(), 149);
  field.selectAll();
  QTest::keyClick(&field, Qt::Key_Delete);
  EXPECT_EQ(field.text(), "");
}

TEST_F(FreeTextFieldTest, CountsBytesAndNeverCutsACharacter) {
  paste(QString(75, QChar(0xe9)));  // two bytes each
  EXPECT_EQ(FreeTextRule::count(field.text().toStdString()), "150/150");
  field.clear();
  const QString face = QString::fromUtf8("😀");  // four bytes
  paste(QString("a") + face.repeated(40));
  EXPECT_EQ(field.text(), "a" + face.repeated(37));
  field.clear();
  const QString accented = QString::fromUtf8("e\u0301");  // three bytes, one character
  paste(QString("a") + accented.repeated(60));
  EXPECT_EQ(field.text(), "a" + accented.repeated(49));
}

TEST_F(FreeTextFieldTest, AppendsAtTheEndWhatReachesTheLimit) {
  paste(QString(148, 'x'));
  field.setCursorPosition(0);
  QTest::keyClicks(&field, "y");
  EXPECT_EQ(field.text(), "y" + QString(148, 'x')) << "it still fits";
  field.setCursorPosition(0);
  QTest::keyClicks(&field, "z");
  EXPECT_EQ(field.text(), "y" + QString(148, 'x') + "z");
  EXPECT_EQ(field.cursorPosition(), 150);
}

}  // namespace
}  // namespace kifo
