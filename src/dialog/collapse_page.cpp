#include "dialog/collapse_page.h"

#include <QPushButton>

#include "dialog/lengths.h"
#include "dialog/page_parts.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"
#include "platform/text/date_time.h"

namespace quillan {
namespace {

struct LevelDescription {
  const char* caption;
  int minimum;
  int maximum;
  int large_step;
  int initial;
  int fallback;  // What "Restore Defaults" sets.
  const char* initial_text;
  const char* interval_unit;
  bool trigger_in_days;  // Else in hours.
};

constexpr int kRestoreWidth = 1695;  // Twips.
constexpr int kRestoreHeight = 375;

// The texts are the system's own, spelling included.
constexpr std::array<LevelDescription, 3> kDescriptions = {{
    {"Primary data collapsing", 1, 12, 5, 12, 1,
     "Collapse statistics older than xx minutes into 15 minute intevals", " minute intervals",
     false},
    {"Secondary data collapsing", 12, 360, 6, 30, 24,
     "Collapse statistics older than xx hours into 1 hour intevals", " minute intervals", false},
    {"Final data collapsing", 1, 60, 7, 1, 7,
     "Collapse statistics older than xx days into 1day intevals", " hour intervals", true},
}};

const LevelDescription& Describe(int level) {
  return kDescriptions[static_cast<size_t>(level - 1)];
}

QString Indexed(const char* name, int level) {
  return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(level);
}

}  // namespace

CollapsePage::CollapsePage(Settings& settings, MessageBox& messages, QWidget* parent)
    : SettingsPage("SSActiveTabPanel3", tr("Data Collapsing"), parent),
      settings_(settings),
      messages_(messages) {
  QFrame* frame = NewPageFrame(this);
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(NewParagraph(
      tr("Data collapsing is an important part of managing the enourmous amount of NetFlow "
         "statistics. Collapsing of data allows the Zephram database to hold a large amount of "
         "NetFlow statistics without becoming unmanagable."),
      frame));
  for (int level = 1; level <= kLevels; ++level) AddLevel(level, frame, layout);
  layout->addWidget(NewParagraph(
      tr("Data collapsing does not remove data from the Zephram database, it simply groups simliar "
         "statistics for efficiency."),
      frame));
  auto* restore = new QPushButton(tr("Restore Defaults"), frame);
  restore->setObjectName(QStringLiteral("cmdRestoreCollapseDefaults"));
  restore->setAutoDefault(false);
  restore->setFixedSize(ToPixels(kRestoreWidth), ToPixels(kRestoreHeight));
  layout->addWidget(restore, 0, Qt::AlignLeft);
  layout->addStretch();
  connect(restore, &QPushButton::clicked, this, &CollapsePage::RestoreDefaults);
}

void CollapsePage::AddLevel(int level, QWidget* parent, QVBoxLayout* layout) {
  const LevelDescription& description = Describe(level);
  LevelControls& controls = levels_[static_cast<size_t>(level - 1)];
  controls.enable = new QCheckBox(tr(description.caption), parent);
  controls.enable->setObjectName(Indexed("CollapseEnable", level));
  controls.enable->setChecked(level == 1);
  layout->addWidget(controls.enable);

  controls.frame = new QFrame(parent);
  controls.frame->setObjectName(Indexed("CollapseFrame", level));
  controls.frame->setEnabled(level == 1);
  auto* inside = new QVBoxLayout(controls.frame);
  inside->setContentsMargins(20, 0, 0, 6);
  controls.trigger = NewScrollBar(Indexed("CollapseInterval_Scroll", level), description.minimum,
                                  description.maximum, description.large_step, description.initial,
                                  controls.frame);
  controls.trigger->setAccessibleName(tr(description.trigger_in_days
                                             ? "Days until level %1 collapses"
                                             : "Hours until level %1 collapses")
                                          .arg(level));
  inside->addWidget(controls.trigger);
  controls.text = NewParagraph(tr(description.initial_text), controls.frame);
  controls.text->setObjectName(Indexed("CollapseLevel", level));
  inside->addWidget(controls.text);
  layout->addWidget(controls.frame);

  connect(controls.trigger, &QScrollBar::valueChanged, this,
          [this, level](int value) { ShowText(level, value); });
  connect(controls.enable, &QCheckBox::toggled, this,
          [this, level](bool checked) { OnEnableToggled(level, checked); });
}

void CollapsePage::ShowText(int level, int trigger) {
  const LevelDescription& description = Describe(level);
  const std::string age = description.trigger_in_days ? text::DurationText(trigger, 0, 0, 0)
                                                      : text::DurationText(0, trigger, 0, 0);
  Level(level).text->setText(tr("Collapse statistics older than ") + ToQString(age) + tr(" into ") +
                             QString::number(settings_.CollapseInterval(level)) +
                             tr(description.interval_unit));
}

void CollapsePage::OnEnableToggled(int level, bool checked) {
  const LevelControls& controls = Level(level);
  if (level != 1) {
    controls.frame->setEnabled(checked);
  } else if (!checked) {
    messages_.Show(
        "Level 1 data collapsing cannot be disabled. You may change the collapse interval, but you "
        "may not disable it.",
        kDisplayName, MessageButtons::kOk, MessageIcon::kExclamation);
    controls.enable->setChecked(true);
  }
}

void CollapsePage::RestoreDefaults() {
  for (int level = 1; level <= kLevels; ++level) {
    SetScrollValue(*Level(level).trigger, Describe(level).fallback);
  }
}

void CollapsePage::LoadOptions() {
  for (int level = 1; level <= kLevels; ++level) {
    const LevelControls& controls = Level(level);
    controls.enable->setChecked(settings_.CollapseEnable(level));
    SetScrollValue(*controls.trigger, settings_.CollapseTrigger(level));
    controls.frame->setEnabled(controls.enable->isChecked());
  }
}

SaveResult CollapsePage::SaveOptions() {
  if (!ConfirmSave()) return SaveResult::kCancelled;
  for (int level = 1; level <= kLevels; ++level) {
    settings_.SetCollapseEnable(level, Level(level).enable->isChecked());
    settings_.SetCollapseTrigger(level, Level(level).trigger->value());
  }
  return SaveResult::kDone;
}

// Asks about the first level that is switched off; false when the user cancels the save.
bool CollapsePage::ConfirmSave() {
  int level = 2;
  if (Level(level).enable->isChecked()) level = 3;
  if (Level(level).enable->isChecked()) return true;
  const std::string number = std::to_string(level);
  const MessageAnswer answer = messages_.Show(
      "You have disabled Data Collapse Level " + number +
          "\r\nYour Zephram database may grow VERY large without Data Collapsing\r\n\r\n"
          "We strongly reccomend you reenable it.\r\n"
          "Woud you like to reenable Data Collapsing Level " +
          number + " ?",
      kDisplayName, MessageButtons::kYesNoCancel, MessageIcon::kExclamation);
  if (answer == MessageAnswer::kYes) Level(level).enable->setChecked(true);
  return answer != MessageAnswer::kCancel;
}

}  // namespace quillan
