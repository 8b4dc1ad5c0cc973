#include "dialog/page_tabs.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QTabBar>

#include "dialog/lengths.h"
#include "dialog/page_access.h"
#include "platform/qt/color_scheme.h"

namespace quillan {
namespace {

constexpr int kDotSize = 120;  // Twips.

QIcon Dot(const QColor& background) {
  const int size = ToPixels(kDotSize);
  constexpr int kScale = 2;
  QPixmap picture(size * kScale, size * kScale);
  picture.setDevicePixelRatio(kScale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Legible(QColor(200, 0, 0), background));
  painter.drawEllipse(0, 0, size, size);
  return picture;
}

}  // namespace

PageTabs::PageTabs(QWidget* parent) : QTabWidget(parent) {
  setObjectName(QStringLiteral("Tabs"));
  setAccessibleName(tr("Pages"));
  findChild<QStackedWidget*>()->setAccessibleName(tr("Page"));
  InstallPageAccess();
  tabBar()->installEventFilter(this);
  focus_.setSingleShot(true);
  connect(&focus_, &QTimer::timeout, this, &PageTabs::TellFocus);
  setIconSize({ToPixels(kDotSize), ToPixels(kDotSize)});
  connect(this, &QTabWidget::currentChanged, this, &PageTabs::FocusPage);
}

void PageTabs::AddPage(SettingsPage* page) {
  const int tab = addTab(page, page->Caption());
  setTabVisible(tab, page->Reachable());
  // The arrow keys pass over tabs that are disabled, not over those that are hidden. The page
  // itself stays enabled.
  tabBar()->setTabEnabled(tab, page->Reachable());
  if (page->OpensFirst()) setCurrentIndex(tab);
  connect(page, &SettingsPage::NeedsAttention, this, [this, page] { setCurrentWidget(page); });
  connect(page, &SettingsPage::PendingChanged, this, [this, tab] { ShowPending(tab); });
}

void PageTabs::FocusPage() {
  if (auto* page = qobject_cast<SettingsPage*>(currentWidget())) page->FirstControl()->setFocus();
}

void PageTabs::SelectNext(int step) {
  int tab = currentIndex();
  do {
    tab = (tab + step + count()) % count();
  } while (!isTabVisible(tab));
  setCurrentIndex(tab);
}

void PageTabs::ShowPending(int tab) {
  const bool pending = static_cast<SettingsPage*>(widget(tab))->PendingCount() > 0;
  if (tabIcon(tab).isNull() == pending) {
    setTabIcon(tab, pending ? Dot(palette().color(QPalette::Window)) : QIcon());
  }
}

bool PageTabs::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && QAccessible::isActive()) focus_.start();
  return QTabWidget::eventFilter(watched, event);
}

// Qt reports to assistive technology that the bar has the focus, but not in which tab.
void PageTabs::TellFocus() {
  if (!tabBar()->hasFocus()) return;
  QAccessibleEvent focus(tabBar(), QAccessible::Focus);
  focus.setChild(currentIndex());
  QAccessible::updateAccessibility(&focus);
}

void PageTabs::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (int tab = 0; tab < count(); ++tab) {
    setTabIcon(tab, {});
    ShowPending(tab);
  }
}

}  // namespace quillan
