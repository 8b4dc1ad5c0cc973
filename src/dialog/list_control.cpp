#include "dialog/list_control.h"

#include <algorithm>

#include "dialog/guarded.h"
#include "lists/list_layout.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/twips.h"

namespace quillan {
namespace {

constexpr int kButtonWidth = 2115;  // Twips.
constexpr int kButtonHeight = 375;

}  // namespace

ListControl::ListControl(CheckableList& list, MessageBox& messages, const QString& name,
                         const QString& title, QWidget* parent)
    : QWidget(parent), list_(list), messages_(messages), table_(new GridView(list.Table(), this)) {
  setObjectName(name);
  setAccessibleName(title);
  table_->setAccessibleName(title);
  setFocusProxy(table_);
  for (const ListCommand& command : list_.Commands()) AddButton(command);
  list_.OnRowCommands([this] { EnableRowCommands(); });
  EnableRowCommands();
}

ListControl::~ListControl() { list_.OnRowCommands({}); }

void ListControl::AddButton(const ListCommand& command) {
  auto* button = new QPushButton(ToQString(command.caption), this);
  button->setObjectName(ToQString(command.name));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, run = command.run] { Run(run); });
  buttons_.push_back({button, command.place, command.enabled});
}

void ListControl::Run(const std::function<void()>& command) {
  RunGuarded(messages_, [&] {
    CommitEdit();
    command();
  });
}

void ListControl::Sync() {
  CommitEdit();
  list_.Sync();
}

void ListControl::EnableRowCommands() {
  const bool on_row = list_.RowCommandsEnabled();
  for (const Button& button : buttons_) {
    const bool enable = on_row || button.enabled == CommandEnabled::kAlways;
    // A button that goes dead hands the focus to its list; Qt would pass it on to the dialog's OK.
    if (!enable && window()->focusWidget() == button.widget) {
      table_->setFocus(Qt::MouseFocusReason);
    }
    button.widget->setEnabled(enable);
  }
}

int ListControl::PreferredWidth() const {
  return table_->ColumnsWidth() + ToPixels(kButtonWidth + 2 * kLayoutMargin);
}

void ListControl::resizeEvent(QResizeEvent* /*event*/) {
  const auto top =
      static_cast<int>(std::count_if(buttons_.begin(), buttons_.end(), [](const Button& button) {
        return button.place == CommandPlace::kTop;
      }));
  const ListLayout layout(ToTwips(width()), ToTwips(height()), kButtonWidth, kButtonHeight, top,
                          static_cast<int>(buttons_.size()) - top);
  table_->setGeometry(ToPixels(layout.grid));
  for (size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i].widget->setGeometry(ToPixels(layout.buttons[i]));
  }
}

}  // namespace quillan
