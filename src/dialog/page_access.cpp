#include "dialog/page_access.h"

#include <vector>

#include <QAccessibleWidget>
#include <QPointer>
#include <QTabBar>

#include "dialog/page_tabs.h"
#include "dialog/settings_page.h"

namespace quillan {
namespace {

class TabAccess final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  TabAccess(QTabBar* bar, int tab) : bar_(bar), tab_(tab) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  bool isValid() const override { return !bar_.isNull() && tab_ < bar_->count(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(bar_);
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    const bool pending = !bar_->tabIcon(tab_).isNull();
    if (kind == QAccessible::Description && pending) return PageTabs::tr("changes not saved");
    if (kind != QAccessible::Name) return {};
    return bar_->tabText(tab_).replace(QLatin1String("&&"), QLatin1String("&"));
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QRect rect() const override {
    return isValid() ? bar_->tabRect(tab_).translated(bar_->mapToGlobal(QPoint())) : QRect();
  }
  QAccessible::Role role() const override { return QAccessible::PageTab; }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    const bool shown = bar_->isTabVisible(tab_);
    state.invisible = state.disabled = !shown;
    state.selectable = state.focusable = shown;
    state.selected = bar_->currentIndex() == tab_;
    state.focused = state.selected && bar_->hasFocus();
    return state;
  }
  QStringList actionNames() const override {
    return isValid() && bar_->isTabVisible(tab_) ? QStringList{pressAction()} : QStringList();
  }
  void doAction(const QString& name) override {
    if (actionNames().contains(name)) bar_->setCurrentIndex(tab_);
  }
  QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

 private:
  QPointer<QTabBar> bar_;
  int tab_;
};

// The tabs, numbered as in the bar; Qt names them by their numbers in what it reports.
class TabBarAccess final : public QAccessibleWidget {
 public:
  explicit TabBarAccess(QTabBar* bar)
      : QAccessibleWidget(bar, QAccessible::PageTabList, PageTabs::tr("Pages")) {}
  ~TabBarAccess() override {
    for (const auto id : tabs_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return Bar().count(); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    while (static_cast<int>(tabs_.size()) <= index) {
      auto* tab = new TabAccess(&Bar(), static_cast<int>(tabs_.size()));
      // Qt owns it from now on, which the analyzer cannot see.
      // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
      tabs_.push_back(QAccessible::registerAccessibleInterface(tab));
    }
    return QAccessible::accessibleInterface(tabs_[static_cast<size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (int tab = 0; tab < childCount(); ++tab) {
      if (this->child(tab) == child) return tab;
    }
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return child(Bar().tabAt(Bar().mapFromGlobal(QPoint(x, y))));
  }

 private:
  QTabBar& Bar() const { return *static_cast<QTabBar*>(object()); }

  mutable std::vector<QAccessible::Id> tabs_;  // As far as they were asked for.
};

class EmptyAccess final : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  int childCount() const override { return 0; }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
};

QAccessibleInterface* Describe(const QString& key, QObject* object) {
  if (key == QLatin1String("QTabBar") && qobject_cast<PageTabs*>(object->parent()) != nullptr) {
    return new TabBarAccess(static_cast<QTabBar*>(object));
  }
  if (key != QLatin1String(SettingsPage::staticMetaObject.className())) return nullptr;
  auto* page = static_cast<SettingsPage*>(object);
  return page->Reachable() ? nullptr : new EmptyAccess(page);
}

}  // namespace

void InstallPageAccess() { QAccessible::installFactory(Describe); }

}  // namespace quillan
