#include <QAccessible>
#include <QTabBar>

#include "dialog/dialog_fixture.h"

namespace quillan {
namespace {

/// The dialog as assistive technology meets it: by names, roles, states and actions.
class AccessibilityTest : public test::DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    FillEveryPage();
    Open();
  }

  // What is on screen below `within`.
  static void Collect(QAccessibleInterface* within, std::vector<QAccessibleInterface*>& found) {
    for (int i = 0; i < within->childCount(); ++i) {
      QAccessibleInterface* child = within->child(i);
      ASSERT_NE(child, nullptr) << qPrintable(within->text(QAccessible::Name)) << i;
      EXPECT_EQ(within->indexOfChild(child), i);
      if (child->state().invisible) continue;
      found.push_back(child);
      Collect(child, found);
    }
  }
  std::vector<QAccessibleInterface*> All() {
    std::vector<QAccessibleInterface*> found;
    Collect(QAccessible::queryAccessibleInterface(form_.get()), found);
    return found;
  }
  QAccessibleInterface* Named(QAccessible::Role role, const char* name) {
    for (QAccessibleInterface* each : All()) {
      if (each->role() == role && each->text(QAccessible::Name) == QLatin1String(name)) return each;
    }
    ADD_FAILURE() << "nothing is named " << name;
    return QAccessible::queryAccessibleInterface(form_.get());
  }
};

TEST_F(AccessibilityTest, EverythingIsNamedAndHiddenPagesStayHidden) {
  QStringList tabs;
  for (const int page : {1, 2, 5, 6}) {
    SelectPage(page);
    tabs.clear();
    for (QAccessibleInterface* each : All()) {
      const QString name = each->text(QAccessible::Name);
      // A label may have nothing to say at the moment.
      if (each->role() == QAccessible::StaticText) continue;
      EXPECT_FALSE(name.isEmpty())
          << each->role() << ' ' << page << ' '
          << (each->object() != nullptr ? qPrintable(each->object()->objectName()) : "");
      if (each->role() == QAccessible::PageTab) tabs += name;
    }
  }
  EXPECT_EQ(tabs.join(QLatin1Char('|')).toStdString(),
            "Application & Service Ports|IP Address Groups|NetFlow Service|NetFlow Sources");
  auto* bar = QAccessible::queryAccessibleInterface(Find<QTabWidget>("Tabs")->tabBar());
  auto* pages = QAccessible::queryAccessibleInterface(Find<QTabWidget>("Tabs")->widget(3));
  bar->child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(Find<QTabWidget>("Tabs")->currentIndex(), 5);
  EXPECT_EQ(pages->childCount(), 0);
  SelectPage(1);
  EXPECT_EQ(Named(QAccessible::Cell, "mine")->text(QAccessible::Description).toStdString(),
            "user-defined");
}

}  // namespace
}  // namespace quillan
