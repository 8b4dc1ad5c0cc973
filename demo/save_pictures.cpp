// Pictures of what is not saved, and of every state of a save.

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>

#include "dialog/save_bar.h"
#include "subjects.h"

namespace quillan {
namespace {

void TakePending(Photographer& photographer) {
  SettingsForm& form = photographer.Form();
  photographer.Tabs().setCurrentIndex(4);
  auto* bar = form.findChild<SaveBar*>();
  bar->ShowNote(QStringLiteral(
      "Every user of this computer can read the password in /etc/quillan/TBKelvora.DB."));
  photographer.Take(form, QStringLiteral("48-note-on-the-connection"));
  auto* port = form.findChild<QLineEdit*>(QStringLiteral("ListenPort"));
  port->setText(QStringLiteral("99 96x"));
  photographer.Take(form, QStringLiteral("7-listening-port-note"));
  port->setText(QStringLiteral("9996"));
  photographer.Toggle(0, 2, 4);
  photographer.Toggle(1, 9, 9);
  GridView& groups = photographer.ShowList(1);
  groups.setCurrentIndex(groups.model()->index(7, 1));
  photographer.TakeMessage(
      QStringLiteral("19-delete-question"), [&] { Press("cmdDeleteGroup", form); },
      QMessageBox::Yes);
  groups.setCurrentIndex(groups.model()->index(9, 1));
  photographer.Take(form, QStringLiteral("8-changes-not-saved"));
  photographer.TakeModal(QStringLiteral("9-review"), "cmdClose",
                         [&] { form.findChild<SaveStatus*>()->click(); });
}

// Where the keyboard is.
void TakeFocus(Photographer& photographer) {
  SettingsForm& form = photographer.Form();
  form.setAttribute(Qt::WA_KeyboardFocusChange);  // As Qt does when a key moves the focus.
  const auto take = [&](QWidget* widget, const char* name) {
    widget->setFocus(Qt::TabFocusReason);
    photographer.Take(form, QLatin1String(name));
  };
  take(form.findChild<SaveStatus*>(), "49-focus-on-the-status");
  take(photographer.Tabs().tabBar(), "50-focus-on-a-tab");
  take(form.findChild<QPushButton*>(QStringLiteral("CmdApply")), "51-focus-on-a-button");
}

void TakeConflict(Photographer& photographer, FlowDatabase& other) {
  other.Execute("Update ServicePorts Set ServiceName='renamed by someone else' Where Port < 20");
  photographer.TakeModal(QStringLiteral("10-conflict"), "cmdOverwrite",
                         [&] { Press("CmdApply", photographer.Form()); });
  photographer.Take(photographer.Form(), QStringLiteral("11-saved"));
}

void TakeReport(Photographer& photographer, FlowDatabase& other) {
  SettingsForm& form = photographer.Form();
  photographer.Toggle(0, 2, 4);
  other.Execute(
      "CREATE TRIGGER Refuse BEFORE UPDATE ON ServicePorts WHEN NEW.Port = 11 "
      "BEGIN SELECT RAISE(ABORT, 'This row may not be changed.'); END");
  Press("CmdApply", form);
  photographer.Take(form, QStringLiteral("12-not-all-saved"));
  const QSize size = form.size();
  form.resize(form.minimumSize());
  photographer.Take(form, QStringLiteral("52-not-all-saved-in-a-small-window"));
  form.resize(size);
  photographer.TakeModal(QStringLiteral("13-details"), "cmdClose",
                         [&] { Press("cmdDetails", form); });
  other.Execute("DROP TRIGGER Refuse");
  Press("CmdApply", form);
}

// While another session keeps the database locked.
void TakeTimeout(Photographer& photographer, FlowDatabase& other) {
  SettingsForm& form = photographer.Form();
  photographer.Toggle(0, 2, 4);
  other.Execute("BEGIN IMMEDIATE");
  photographer.TakeMessage(
      QStringLiteral("53-time-out"), [&] { Press("CmdApply", form); }, QMessageBox::No);
  photographer.Take(form, QStringLiteral("54-after-the-time-out"));
  other.Execute("ROLLBACK");
  Press("CmdApply", form);
}

void TakeQuestions(Photographer& photographer) {
  SettingsForm& form = photographer.Form();
  photographer.Toggle(0, 5, 5);
  photographer.TakeMessage(QStringLiteral("20-close-question"), [&] { form.close(); });
  const auto enable = [&](int level, bool enabled) {
    form.findChild<QCheckBox*>(QStringLiteral("CollapseEnable(%1)").arg(level))
        ->setChecked(enabled);
  };
  photographer.TakeMessage(QStringLiteral("21-collapse-level-1"), [&] { enable(1, false); });
  enable(2, false);
  photographer.TakeMessage(QStringLiteral("21-collapse-warning"), [&] { Press("cmdOK", form); });
  enable(2, true);
  Press("CmdApply", form);
}

void TakeProgress(Photographer& photographer) {
  SettingsForm& form = photographer.Form();
  photographer.Toggle(0, 2, 4);
  {
    SaveProgress& progress = form.findChild<SaveBar*>()->Progress();
    const SaveProgress::Work work(progress);
    progress.ShowStep(QStringLiteral("Saving groups"));
    progress.OnProgress(120, 3000);
    auto* stop = form.findChild<QPushButton*>(QStringLiteral("cmdStop"));
    while (!stop->isVisible()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    photographer.Take(form, QStringLiteral("22-progress"));
    stop->click();
    photographer.Take(form, QStringLiteral("55-stopping"));
    Press("CmdApply", form);
  }
  photographer.Take(form, QStringLiteral("56-stopped"));
  Press("CmdApply", form);
}

void TakeUnreadable(Photographer& photographer, FlowDatabase& other) {
  SettingsForm& form = photographer.Form();
  photographer.ShowList(0);
  QWidget& page = *photographer.Tabs().currentWidget();
  other.Execute("ALTER TABLE ServicePorts RENAME TO Elsewhere");
  Press("CmdApply", form);
  page.findChild<QPushButton*>(QStringLiteral("cmdRetry"))->setFocus(Qt::TabFocusReason);
  photographer.Take(form, QStringLiteral("23-not-readable"));
  other.Execute("ALTER TABLE Elsewhere RENAME TO ServicePorts");
  Press("cmdRetry", page);
}

void TakeFailures(Photographer& photographer, FlowDatabase& other) {
  SettingsForm& form = photographer.Form();
  photographer.Tabs().setCurrentIndex(4);
  Type("ListenPort", QStringLiteral("99999999999"), form);
  photographer.TakeMessage(QStringLiteral("24-port-refused"), [&] { Press("CmdApply", form); });
  Type("ListenPort", QStringLiteral("2055"), form);
  other.Execute("ALTER TABLE FlowEngines RENAME TO Elsewhere");
  photographer.TakeMessage(QStringLiteral("25-not-saved"), [&] { Press("CmdApply", form); });
  other.Execute("ALTER TABLE Elsewhere RENAME TO FlowEngines");
  Press("CmdApply", form);
}

void TakeRegrouping(Photographer& photographer) {
  photographer.Toggle(1, 0, 0);
  photographer.TakeMessage(QStringLiteral("27-regrouping"),
                           [&] { Press("CmdApply", photographer.Form()); });
}

}  // namespace

void TakeSaves(Photographer& photographer, FlowDatabase& other) {
  TakePending(photographer);
  TakeFocus(photographer);
  TakeConflict(photographer, other);
  TakeReport(photographer, other);
  TakeTimeout(photographer, other);
  TakeQuestions(photographer);
  TakeProgress(photographer);
  TakeUnreadable(photographer, other);
  TakeFailures(photographer, other);
  TakeRegrouping(photographer);
}

}  // namespace quillan
