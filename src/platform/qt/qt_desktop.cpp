#include "platform/qt/qt_desktop.h"

#include <signal.h>
#include <unistd.h>

#include <memory>

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>

namespace quillan {
namespace {

// What xdg-open returns when it finds nothing to open a page with (its manual page, "exit codes").
constexpr int kNoTool = 3;

constexpr int kFirstSecond = 1000;

// The first opener of a Debian desktop that is installed, the desktop's own choice first.
QString FindOpener() {
  for (const char* name :
       {"xdg-open", "x-www-browser", "sensible-browser", "firefox", "chromium"}) {
    QString program = QStandardPaths::findExecutable(QLatin1String(name));
    if (!program.isEmpty()) return program;
  }
  return {};
}

QString FileName(const std::filesystem::path& path) { return QFile::decodeName(path.c_str()); }

}  // namespace

QtDesktop::QtDesktop() {
  // A parent may have left it ignored, and then no exit status of a child can be read.
  signal(SIGCHLD, SIG_DFL);
}

bool QtDesktop::StartProgram(const std::filesystem::path& program) {
  return QProcess::startDetached(FileName(program), {}, FileName(program.parent_path()));
}

OpenUrlResult QtDesktop::OpenUrl(const std::string& url) {
  const QString opener = FindOpener();
  if (opener.isEmpty()) return OpenUrlResult::kNoBrowser;
  if (url.starts_with('-')) return OpenUrlResult::kNotOpened;  // It would be read as an option.

  auto process = std::make_unique<QProcess>();
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->setStandardInputFile(QProcess::nullDevice());
  // A browser outlives the terminal from which this program was started.
  process->setChildProcessModifier([] { setsid(); });
  process->start(opener, {QString::fromStdString(url)});
  if (!process->waitForStarted()) return OpenUrlResult::kNotOpened;
  if (!process->waitForFinished(kFirstSecond) && process->state() == QProcess::Running) {
    // The opener has become the browser, which ends with its QProcess: that must stay until then.
    QObject::connect(process.get(), &QProcess::finished, process.get(), &QObject::deleteLater);
    process.release();  // NOLINT(bugprone-unused-return-value)
    return OpenUrlResult::kOpened;
  }
  if (process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0) {
    return OpenUrlResult::kOpened;
  }
  return process->exitCode() == kNoTool ? OpenUrlResult::kNoBrowser : OpenUrlResult::kNotOpened;
}

int QtDesktop::ColorDepth() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->depth() : 0;
}

}  // namespace quillan
