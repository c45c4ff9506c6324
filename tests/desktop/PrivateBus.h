#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace kifo {

/// A message bus of the test's own, on which nothing is started by itself. It ends with this object.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();

  /// Why there is no bus; empty when there is one.
  [[nodiscard]] const QString& problem() const { return problem_; }
  [[nodiscard]] const QString& address() const { return address_; }
  /// The caller's environment with this bus as the session's.
  [[nodiscard]] QProcessEnvironment environment() const;

 private:
  QTemporaryDir directory_;
  QProcess daemon_;
  QString address_;
  QString problem_;
};

/// Has what `process` starts end with the test, even if the test crashes.
void bindToTest(QProcess& process);

/// Starts `process` and hands back its first line; empty when none came. The line is what programs
/// print once they are ready.
QString startAndReadLine(QProcess& process, const QString& program, const QStringList& arguments);

/// Ends a process that the test started, and waits for it.
void end(QProcess& process);

}  // namespace kifo
